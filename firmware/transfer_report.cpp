#include "firmware/transfer_report.h"

#include "platform/files.h"
#include "services/messages.h"

namespace zep::firmware {
namespace {

using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;

void ReportPort(services::Session& session, int port, std::string_view text, Icon icon) {
  NLSMsgBox(session, NLSFmt(session, text, {std::to_string(port)}), {.icon = icon});
}

// With one digit behind the point.
std::string Seconds(platform::Duration time) {
  const auto tenths = std::chrono::duration_cast<std::chrono::milliseconds>(time).count() / 100;
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

}  // namespace

void TransferReport(TransferRun& run) {
  services::Session& session = run.job.session;
  const bool download = !run.IsUpload();
  for (const int port : link::kAllPorts) {
    if (run.job.IsActive(port)) {
      ReportPort(
          session, port,
          download ? NLSText("Completed downloading firmware to radio on communication port %0:s")
                   : NLSText("Completed uploading firmware from radio on communication port %0:s"),
          Icon::kInformation);
      if (download) run.view.ShowStatus(NLSFmt(session, "Completed writing data"));
    } else if (run.job.State(port) == link::PortState::kErrorDetected) {
      ReportPort(session, port,
                 download
                     ? NLSText("Error downloading firmware to radio on communication port %0:s")
                     : NLSText("Error uploading firmware from radio on communication port %0:s"),
                 Icon::kCritical);
      if (download) run.view.ShowStatus(NLSFmt(session, "Error writing data"));
    }
  }
}

std::vector<PortReport> PortReports(const link::Link& link, const TransferResult& result) {
  std::vector<PortReport> reports;
  for (const int port : link::kAllPorts) {
    const std::size_t index = link::Link::Index(port);
    const PortFacts& facts = result.ports[index];
    if (!facts.takes_part) continue;
    reports.push_back({.port = port, .device = link.ports[index]->Device(), .facts = facts});
  }
  return reports;
}

std::string FlashText(const services::Session& session, const PortFacts& facts) {
  return facts.micro == MicroType::kUnknown ? std::string() : NLSFmt(session, facts.flash.Name);
}

std::string TransferReportText(const link::Link& link, const TransferResult& result) {
  const services::Session& session = link.session;
  std::string text;
  for (const auto& [port, device, facts] : PortReports(link, result)) {
    text += NLSFmt(session, "Port %0:s (%1:s): %2:s",
                   {std::to_string(port), device, NLSFmt(session, OutcomeText(facts.outcome))});
    for (const std::string& label :
         {std::string(MicroName(facts.micro)), FlashText(session, facts)}) {
      if (!label.empty()) text += ", " + label;
    }
    text += "\n";
  }
  const TransferStatistics& statistics = result.statistics;
  if (text.empty() || statistics.bytes == 0) return text;
  return text +
         NLSFmt(session, "%0:s bytes per radio in %1:s seconds.",
                {std::to_string(statistics.bytes), Seconds(statistics.ended - statistics.began)}) +
         "\n";
}

std::string SavedFlashText(const services::Session& session, const std::string& file) {
  return NLSFmt(session, "The flash memory is saved in %0:s (%1:s bytes).",
                {file, std::to_string(platform::FileSize(file).value_or(0))});
}

}  // namespace zep::firmware
