#include "cli/firmware_jobs.h"

#include "cli/displays.h"
#include "cli/firmware_words.h"
#include "cli/json_words.h"
#include "firmware/transfer_report.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"
#include "services/text_layout.h"

namespace zep::cli {

using services::NLSFmt;
using services::Table;

services::Outcome FirmwareWindows::ReadRadioData(radiodb::RadioDb& db) {
  ReadWriteDisplay display(context_);
  return ReadRadio(db, display);
}

services::Outcome FirmwareWindows::ProgramRadioData(radiodb::RadioDb& db, const std::string& file) {
  ReadWriteDisplay display(context_);
  services::Outcome outcome = ProgramRadio(db, display, file);
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
  Table table({NLSFmt(session, "Port"), NLSFmt(session, "Device"), NLSFmt(session, "Micro"),
               NLSFmt(session, "Flash"), NLSFmt(session, "Result")});
  Json json = Json::array();
  for (const auto& [port, device, facts] : PortReports(link, result_)) {
    table.AddRow({std::to_string(port), device, std::string(MicroName(facts.micro)),
                  FlashText(session, facts), NLSFmt(session, OutcomeText(facts.outcome))});
    const bool is_known = facts.flash.Size != firmware::FlashSize::kUnknown;
    json.push_back(Json{{"port", port},
                        {"device", device},
                        {"micro", JsonWord(facts.micro)},
                        {"flash_device", is_known ? facts.flash.Name : ""},
                        {"flash_size", JsonWord(facts.flash.Size)},
                        {"result", JsonWord(facts.outcome)}});
  }
  context_.json["radios"] = std::move(json);
  if (!table.IsEmpty()) context_.Print(table.Text());
  const firmware::TransferStatistics& statistics = result_.statistics;
  context_.json["bytes"] = statistics.bytes;
  context_.json["seconds"] =
      std::chrono::duration<double>(statistics.ended - statistics.began).count();
}

}  // namespace zep::cli
