#include "cli/command.h"
#include "cli/firmware_jobs.h"
#include "cli/image_report.h"
#include "platform/files.h"
#include "radiodb/data_file.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSFmt;
using services::NLSText;

struct WriteOptions {
  std::string image;
  bool at_once = false;
  bool save_data = false;
  std::string data_file;
};

firmware::DownloadChoices Choices(const WriteOptions& options, firmware::SharedImage contents) {
  const std::string image = platform::AbsolutePath(options.image);
  const std::string data_file = platform::AbsolutePath(options.data_file);
  return {.BinaryFileName = services::FileTitleOf(image),
          .BinaryFilePath = services::FolderOf(image),
          .DataFileName = services::FileTitleOf(data_file),
          .DataFilePath = services::FolderOf(data_file),
          .auto_save = options.save_data,
          .image = std::move(contents)};
}

ExitStatus Write(CommandContext& context, const WriteOptions& options) {
  if (options.save_data && !options.data_file.empty()) {
    return context.UsageError(
        NLSFmt(context.session, "Please give one of --save-data and --data, not both."));
  }
  const firmware::SharedImage image = firmware::ReadFirmwareImage(options.image);
  context.json["image"] = ImageJson(context.session, *image, options.image);
  if (!IsUsableImage(context, *image)) return ExitStatus::kFile;
  // Both are better found out before the firmware is replaced.
  if (!options.data_file.empty()) {
    const auto data = radiodb::ReadDataFile(options.data_file);
    if (!data) return context.WorkStatus(TellRefusal(context.session, data.error()));
  }
  if (!options.data_file.empty() && !context.user.CanAnswer()) {
    return context.UsageError(
        NLSFmt(context.session,
               "Nobody can be asked here whether %0:s is to be programmed. Please give --yes.",
               {options.data_file}));
  }

  // Data is saved of one radio at a time, and programmed into one.
  const bool has_data = options.save_data || !options.data_file.empty();
  link::Link* link =
      has_data ? context.LinkForOneRadio(link::Transfer::kProgram) : context.LinkForJob();
  if (link == nullptr) return context.LinkStatus();
  firmware::Firmware firmware;
  radiodb::LastRadio radio;
  firmware::TransferOptions transfer;
  if (options.at_once) transfer.at_once = true;
  FirmwareWindows windows(context, transfer);
  const services::Outcome outcome =
      DownloadFirmwareAndData({*link, firmware, radio, windows}, Choices(options, image));
  windows.Report(*link);
  if (options.data_file.empty()) return context.JobStatus(outcome);
  context.json["data_programmed"] = windows.HasProgrammed();
  // The user may have said No.
  return outcome.Done() && !windows.HasProgrammed() ? ExitStatus::kRefused
                                                    : context.JobStatus(outcome);
}

}  // namespace

Action DeclareFirmwareWrite(Arguments& arguments) {
  auto options = std::make_shared<WriteOptions>();
  arguments.AddWord("IMAGE", options->image, NLSText("firmware image (.bin)"));
  arguments.AddFlag("--at-once", options->at_once,
                    NLSText("send each block to all radios together: four take the time of "
                            "one"));
  arguments.AddFlag("--save-data", options->save_data,
                    NLSText("save the radio's data first and write it back afterwards"));
  arguments.AddOption("--data", "FILE", options->data_file,
                      NLSText("program this data file afterwards, if you say Yes"));
  arguments.AddRemark(
      NLSText("All radios named with -p, up to four, get the image. Their loaders bs.tsk and "
              "dl.tsk must be in the application folder."));
  return [options](CommandContext& context) { return Write(context, *options); };
}

}  // namespace zep::cli
