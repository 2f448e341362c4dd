#include "cli/displays.h"

#include "services/messages.h"

namespace zep::cli {

using services::NLSFmt;

ReadWriteDisplay::~ReadWriteDisplay() { program_.progress.EndPhase(); }

void ReadWriteDisplay::SetCaption(const std::string& caption) {
  program_.progress.SetText(caption);
}

void ReadWriteDisplay::ShowStatus(const std::string& status) { program_.progress.SetText(status); }

void ReadWriteDisplay::SetProgressMaximum(int maximum) { program_.progress.SetMaximum(maximum); }

void ReadWriteDisplay::SetProgress(int value) { program_.progress.SetValue(value); }

TransferDisplay::TransferDisplay(Program& program)
    : program_(program), status_prefix_(NLSFmt(program.session, "Status: ")) {}

TransferDisplay::~TransferDisplay() {
  program_.progress.EndPhase();
  program_.user.EnableCancel(true);
}

void TransferDisplay::SetCaption(const std::string& caption) { program_.progress.SetText(caption); }

void TransferDisplay::ShowStatus(const std::string& status) {
  const bool has_prefix = status.starts_with(status_prefix_);
  program_.progress.SetText(has_prefix ? status.substr(status_prefix_.size()) : status);
}

void TransferDisplay::SetProgressMaximum(int maximum) { program_.progress.SetMaximum(maximum); }

void TransferDisplay::SetProgress(int value) { program_.progress.SetValue(value); }

void TransferDisplay::EnableCancel(bool enabled) { program_.user.EnableCancel(enabled); }

void TransferDisplay::SetSlot(int slot, const link::SlotLabels& labels) {
  // A slot that never took part says nothing.
  std::string& shown = shown_[link::Link::Index(slot)];
  if (shown.empty() && !program_.Link().IsActive(slot)) return;
  std::string line =
      NLSFmt(program_.session, "Port %0:s: %1:s", {std::to_string(slot), labels.status});
  for (const std::string& label : {labels.micro, labels.flash}) {
    if (!label.empty()) line += ", " + label;
  }
  if (line == shown) return;
  shown = line;
  program_.progress.ShowLine(line);
}

}  // namespace zep::cli
