#include "cli/firmware_jobs.h"

#include "cli/displays.h"
#include "cli/json_words.h"
#include "cli/outcome_words.h"
#include "firmware/transfer_report.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"
#include "services/text_layout.h"

namespace zep::cli {

using services::NLSFmt;
using services::Table;

bool FirmwareWindows::ReadRadioData(radiodb::RadioDb& db) {
  ReadWriteDisplay display(context_);
  return ReadRadio(db, display);
}

bool FirmwareWindows::ProgramRadioData(radiodb::RadioDb& db, const std::string& file) {
  ReadWriteDisplay display(context_);
  has_programmed_ = ProgramRadio(db, display, file);
  return has_programmed_;
}

void FirmwareWindows::TransferFirmware(firmware::Firmware& firmware) {
  TransferDisplay display(context_);
  firmware::TransferRun run(firmware, display, options_);
  context_.user.SetCancelAction([&run] { Cancel(run); });
  result_ = RunTransfer(run);
  context_.user.SetCancelAction(nullptr);
}

void FirmwareWindows::Report(const firmware::Firmware& firmware) {
  const services::Session& session = context_.session;
  Table table({NLSFmt(session, "Port"), NLSFmt(session, "Device"), NLSFmt(session, "Micro"),
               NLSFmt(session, "Flash"), NLSFmt(session, "Result")});
  Json json = Json::array();
  for (const firmware::SlotReport& report : SlotReports(firmware, result_)) {
    table.AddRow({std::to_string(report.slot), report.device, report.micro, report.flash,
                  NLSFmt(session, OutcomeText(report.outcome))});
    const firmware::FlashDevice& flash = firmware.flash_devices[link::Link::Index(report.slot)];
    const bool is_known = flash.Size != firmware::kFlashUnknown;
    json.push_back(Json{{"port", report.slot},
                        {"device", report.device},
                        {"micro", MicroWord(report.micro)},
                        {"flash_device", is_known ? flash.Name : ""},
                        {"flash_size", FlashSizeWord(flash.Size)},
                        {"result", JsonWord(report.outcome)}});
  }
  context_.json["radios"] = std::move(json);
  if (!table.IsEmpty()) context_.Print(table.Text());
  const firmware::TransferStatistics& statistics = result_.statistics;
  context_.json["bytes"] = statistics.bytes;
  context_.json["seconds"] =
      std::chrono::duration<double>(statistics.ended - statistics.began).count();
}

}  // namespace zep::cli
