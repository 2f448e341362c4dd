#include "cli/displays.h"

#include "services/messages.h"

namespace zep::cli {

using services::NLSFmt;

ReadWriteDisplay::~ReadWriteDisplay() { context_.progress.EndPhase(); }

void ReadWriteDisplay::SetCaption(const std::string& caption) {
  context_.progress.SetText(caption);
}

void ReadWriteDisplay::ShowStatus(const std::string& status) { context_.progress.SetText(status); }

void ReadWriteDisplay::SetProgressMaximum(int maximum) { context_.progress.SetMaximum(maximum); }

void ReadWriteDisplay::SetProgress(int value) { context_.progress.SetValue(value); }

TransferDisplay::TransferDisplay(CommandContext& context)
    : context_(context), status_prefix_(NLSFmt(context.session, "Status: ")) {}

TransferDisplay::~TransferDisplay() {
  context_.progress.EndPhase();
  context_.user.EnableCancel(true);
}

void TransferDisplay::SetCaption(const std::string& caption) { context_.progress.SetText(caption); }

void TransferDisplay::ShowStatus(const std::string& status) {
  const bool has_prefix = status.starts_with(status_prefix_);
  context_.progress.SetText(has_prefix ? status.substr(status_prefix_.size()) : status);
}

void TransferDisplay::SetProgressMaximum(int maximum) { context_.progress.SetMaximum(maximum); }

void TransferDisplay::SetProgress(int value) { context_.progress.SetValue(value); }

void TransferDisplay::EnableCancel(bool enabled) { context_.user.EnableCancel(enabled); }

void TransferDisplay::SetSlot(int port, const firmware::SlotLabels& labels) {
  // A port that never took part says nothing.
  std::string& shown = shown_[link::Link::Index(port)];
  if (shown.empty() && !context_.Link().IsActive(port)) return;
  std::string line =
      NLSFmt(context_.session, "Port %0:s: %1:s", {std::to_string(port), labels.status});
  for (const std::string& label : {labels.micro, labels.flash}) {
    if (!label.empty()) line += ", " + label;
  }
  if (line == shown) return;
  shown = line;
  context_.progress.ShowLine(line);
}

}  // namespace zep::cli
