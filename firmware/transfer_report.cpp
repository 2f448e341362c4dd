#include "firmware/transfer_report.h"

#include "platform/files.h"
#include "services/messages.h"

namespace zep::firmware {
namespace {

using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;

void ReportPort(link::Link& link, int port, std::string_view text, Icon icon) {
  NLSMsgBox(link.session, NLSFmt(link.session, text, {std::to_string(port)}), {.icon = icon});
}

// With one digit behind the point.
std::string Seconds(platform::Duration time) {
  const auto tenths = std::chrono::duration_cast<std::chrono::milliseconds>(time).count() / 100;
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

}  // namespace

void TransferReport(link::Link& link, TransferView& view) {
  const bool download = link.session.TransferMode == services::Transfer::kProgram;
  for (const int port : link::kAllPorts) {
    if (link.State(port) == link::PortState::kActive) {
      ReportPort(
          link, port,
          download ? NLSText("Completed downloading firmware to radio on communication port %0:s")
                   : NLSText("Completed uploading firmware from radio on communication port %0:s"),
          Icon::kInformation);
      if (download) view.ShowStatus(NLSFmt(link.session, "Completed writing data"));
    } else if (link.State(port) == link::PortState::kErrorDetected) {
      ReportPort(link, port,
                 download
                     ? NLSText("Error downloading firmware to radio on communication port %0:s")
                     : NLSText("Error uploading firmware from radio on communication port %0:s"),
                 Icon::kCritical);
      if (download) view.ShowStatus(NLSFmt(link.session, "Error writing data"));
    }
  }
}

std::vector<SlotReport> SlotReports(const Firmware& firmware, const TransferResult& result) {
  std::vector<SlotReport> reports;
  for (const int slot : link::kAllPorts) {
    const std::size_t index = link::Link::Index(slot);
    if (result.outcomes[index] == SlotOutcome::kNotUsed) continue;
    const SlotLabels& labels = firmware.labels[index];
    reports.push_back({.slot = slot,
                       .device = firmware.link.ports[index]->Device(),
                       .micro = labels.micro,
                       .flash = labels.flash,
                       .outcome = result.outcomes[index]});
  }
  return reports;
}

std::string TransferReportText(const Firmware& firmware, const TransferResult& result) {
  const services::Session& session = firmware.link.session;
  std::string text;
  for (const SlotReport& report : SlotReports(firmware, result)) {
    text += NLSFmt(
        session, "Slot %0:s (%1:s): %2:s",
        {std::to_string(report.slot), report.device, NLSFmt(session, OutcomeText(report.outcome))});
    for (const std::string& label : {report.micro, report.flash}) {
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
