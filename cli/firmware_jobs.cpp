#include "cli/firmware_jobs.h"

#include "cli/displays.h"
#include "cli/text_layout.h"
#include "firmware/transfer_report.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"

namespace zep::cli {

using services::NLSFmt;

services::Outcome FirmwareWindows::ReadRadioData(radiodb::RadioDb& db) {
  ReadWriteDisplay display(context_);
  return ReadRadio(db, display);
}

services::Outcome FirmwareWindows::ProgramRadioData(radiodb::RadioDb& db, const std::string& file) {
  ReadWriteDisplay display(context_);
  const services::Outcome outcome = ProgramRadio(db, display, file);
  has_programmed_ = outcome.Done();
  return outcome;
}

firmware::TransferResult FirmwareWindows::TransferFirmware(link::Job& job,
                                                           firmware::Firmware& firmware,
                                                           link::Transfer direction) {
  TransferDisplay display(context_);
  firmware::TransferRun run(job, firmware, display, direction, options_);
  return result_ = RunTransfer(run);
}

void FirmwareWindows::Report(const link::Link& link) {
  const services::Session& session = context_.session;
  Table table({NLSFmt(session, "Slot"), NLSFmt(session, "Device"), NLSFmt(session, "Micro"),
               NLSFmt(session, "Flash"), NLSFmt(session, "Result")});
  Json json = Json::List();
  for (const auto& [port, device, facts] : PortReports(link, result_)) {
    const std::string_view outcome = OutcomeText(facts.outcome);
    const std::string flash = FlashText(session, facts);
    table.AddRow({std::to_string(port), device, std::string(MicroName(facts.micro)), flash,
                  NLSFmt(session, outcome)});
    json.Add(Json()
                 .Set("slot", port)
                 .Set("device", device)
                 .Set("micro", MicroName(facts.micro))
                 .Set("flash", flash)
                 .Set("result", outcome));
  }
  context_.json.Set("radios", std::move(json));
  if (!table.IsEmpty()) context_.Print(table.Text());
  const firmware::TransferStatistics& statistics = result_.statistics;
  context_.json.Set("bytes", statistics.bytes);
  context_.json.Set("seconds",
                    std::chrono::duration<double>(statistics.ended - statistics.began).count());
}

}  // namespace zep::cli
