
#include "cli/command.h"
#include "cli/firmware_jobs.h"
#include "firmware/transfer_report.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSText;

ExitStatus Read(Program& program, const std::string& name) {
  link::Link* link = program.LinkForOneRadio(services::Transfer::kRead);
  if (link == nullptr) return program.JobStatus(false);
  if (!services::MayWriteFile(program.session, name)) return program.JobStatus(false);
  firmware::Firmware firmware(*link);
  FirmwareWindows windows(program, {});
  const bool done = UploadFirmware(firmware, name, windows);
  windows.Report(firmware);
  if (done) {
    program.Print(firmware::SavedFlashText(program.session, name) + "\n");
    program.json.Set("file", name);
  }
  return program.JobStatus(done);
}

}  // namespace

Action DeclareFirmwareRead(Arguments& arguments) {
  auto image = std::make_shared<std::string>();
  arguments.AddWord("IMAGE", *image, NLSText("file to make (.bin)"));
  arguments.AddRemark(
      NLSText("One radio is read, 2 megabits of it; one with a flash of 1 megabit cannot be read. "
              "What the loaders leave alone in a radio is FF in the file."));
  return [image](Program& program) { return Read(program, *image); };
}

}  // namespace zep::cli
