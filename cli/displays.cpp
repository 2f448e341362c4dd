#include "cli/displays.h"

#include "firmware/transfer_report.h"
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

TransferDisplay::~TransferDisplay() { context_.progress.EndPhase(); }

void TransferDisplay::SetCaption(const std::string& caption) { context_.progress.SetText(caption); }

void TransferDisplay::ShowStatus(const std::string& status) {
  const bool has_prefix = status.starts_with(status_prefix_);
  context_.progress.SetText(has_prefix ? status.substr(status_prefix_.size()) : status);
}

void TransferDisplay::SetProgressMaximum(int maximum) { context_.progress.SetMaximum(maximum); }

void TransferDisplay::SetProgress(int value) { context_.progress.SetValue(value); }

void TransferDisplay::SetPort(int port, const firmware::PortFacts& facts) {
  const services::Session& session = context_.session;
  // A port that never took part says nothing.
  std::string& shown = shown_[link::Link::Index(port)];
  if (shown.empty() && facts.state != link::PortState::kActive) return;
  std::string line = NLSFmt(session, "Port %0:s: %1:s",
                            {std::to_string(port), NLSFmt(session, PortStateText(facts.state))});
  for (const std::string& label :
       {std::string(MicroName(facts.micro)), FlashText(session, facts)}) {
    if (!label.empty()) line += ", " + label;
  }
  if (line == shown) return;
  shown = line;
  context_.progress.ShowLine(line);
}

}  // namespace zep::cli
