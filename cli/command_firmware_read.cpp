#include "cli/command.h"
#include "cli/firmware_jobs.h"
#include "firmware/transfer_report.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSText;

ExitStatus Read(CommandContext& context, const std::string& name) {
  link::Link* link = context.LinkForOneRadio(link::Transfer::kRead);
  if (link == nullptr) return context.LinkStatus();
  if (!services::MayWriteFile(context.session, name))
    return context.WorkStatus(services::Failure::kRefused);
  firmware::Firmware firmware;
  radiodb::LastRadio radio;
  FirmwareWindows windows(context, {});
  const services::Outcome outcome =
      firmware::UploadFirmware({*link, firmware, radio, windows}, name);
  windows.Report(*link);
  if (outcome.Done()) {
    context.Print(firmware::SavedFlashText(context.session, name) + "\n");
    context.json["file"] = name;
  }
  return context.JobStatus(outcome);
}

}  // namespace

Action DeclareFirmwareRead(Arguments& arguments) {
  auto image = std::make_shared<std::string>();
  arguments.AddWord("IMAGE", *image, NLSText("file to make (.bin)"));
  arguments.AddRemark(
      NLSText("One radio is read, 2 megabits of it; one with a flash of 1 megabit cannot be read. "
              "What the loaders leave alone in a radio is FF in the file."));
  return [image](CommandContext& context) { return Read(context, *image); };
}

}  // namespace zep::cli
