#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/file_names.h"
#include "cli/firmware_jobs.h"
#include "cli/image_report.h"
#include "radiodb/data_file_reader.h"
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

firmware::DownloadChoices Choices(const WriteOptions& options) {
  const std::string image = AbsoluteName(options.image);
  const std::string data_file = AbsoluteName(options.data_file);
  return {.BinaryFileName = services::FileTitleOf(image),
          .BinaryFilePath = services::FolderOf(image),
          .DataFileName = services::FileTitleOf(data_file),
          .DataFilePath = services::FolderOf(data_file),
          .auto_save = options.save_data};
}

ExitStatus Write(Program& program, const WriteOptions& options) {
  if (options.save_data && !options.data_file.empty()) {
    return program.UsageError(
        NLSFmt(program.session, "Please give one of --save-data and --data, not both."));
  }
  const firmware::ImageInspection image = firmware::InspectImage(options.image);
  program.Json()["image"] = ImageJson(program.session, image, options.image);
  if (!IsUsableImage(program, image)) return ExitStatus::kFile;
  // A mistyped name is better found out before the firmware is replaced.
  if (!options.data_file.empty() && !radiodb::ReadDataFile(program.session, options.data_file))
    return program.JobStatus(false);

  link::Link* link = program.LinkForJob();
  if (link == nullptr) return program.JobStatus(false);
  if (options.save_data && !firmware::OffersAutoSave(*link)) {
    NLSMsgBox(program.session,
              "The data of one radio at a time can be saved. Please name one port with -p.",
              {.icon = services::Icon::kCritical});
    return ExitStatus::kRefused;
  }
  firmware::Firmware firmware(*link);
  radiodb::RadioDb db(*link);
  firmware::TransferOptions transfer;
  if (options.at_once) transfer.at_once = true;
  FirmwareWindows windows(program, transfer);
  bool done = DownloadFirmwareAndData(firmware, db, Choices(options), windows);
  windows.Report(firmware);
  if (!options.data_file.empty()) {
    program.Json()["data_programmed"] = windows.HasProgrammed();
    done = done && windows.HasProgrammed();
  }
  return program.JobStatus(done && windows.AllDone());
}

}  // namespace

Action DeclareFirmwareWrite(CLI::App& app) {
  auto options = std::make_shared<WriteOptions>();
  app.add_option("IMAGE", options->image, std::string(NLSText("firmware image (.bin)")))
      ->required();
  app.add_flag("--at-once", options->at_once,
               std::string(NLSText("send each block to all radios together: four take the time of "
                                   "one")));
  app.add_flag("--save-data", options->save_data,
               std::string(NLSText("save the radio's data first and write it back afterwards")));
  app.add_option("--data", options->data_file,
                 std::string(NLSText("program this data file afterwards, if you say Yes")))
      ->type_name("FILE");
  app.footer(std::string(
      NLSText("All radios named with -p, up to four, get the image. Their loaders bs.tsk and "
              "dl.tsk must be in the application folder.")));
  return [options](Program& program) { return Write(program, *options); };
}

}  // namespace zep::cli
