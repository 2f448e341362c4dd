
#include "cli/command.h"
#include "cli/firmware_jobs.h"
#include "platform/files.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSFmt;
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
    const std::uint64_t size = platform::FileSize(name).value_or(0);
    program.Print(NLSFmt(program.session, "The flash memory is saved in %0:s (%1:s bytes).",
                         {name, std::to_string(size)}) +
                  "\n");
    program.json.Set("file", name);
  }
  return program.JobStatus(done);
}

}  // namespace

Action DeclareFirmwareRead(Arguments& arguments) {
  auto image = std::make_shared<std::string>();
  arguments.AddWord("IMAGE", *image, NLSText("file to make (.bin)"));
  arguments.AddRemark(
      NLSText("One radio is read, 2 megabits of it. What the loaders leave alone in a radio is FF "
              "in the file."));
  return [image](Program& program) { return Read(program, *image); };
}

}  // namespace zep::cli
