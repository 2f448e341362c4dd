#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/command.h"
#include "cli/displays.h"
#include "cli/file_names.h"
#include "cli/identity_report.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using radiodb::TransferKind;
using services::NLSFmt;
using services::NLSText;

struct ReadOptions {
  std::string file;
  std::string calibration_file;
  bool automatic = false;
  std::string database_folder;
  std::string calibration_folder;
};

ExitStatus Read(Program& program, const ReadOptions& options) {
  const int ways = (options.file.empty() ? 0 : 1) + (options.calibration_file.empty() ? 0 : 1) +
                   (options.automatic ? 1 : 0);
  if (ways != 1) {
    return program.UsageError(
        NLSFmt(program.session, "Please give one of FILE, --calibration FILE and --auto."));
  }
  link::Link* link = program.LinkForJob();
  if (link == nullptr) return program.JobStatus(false);
  const link::Job job(*link);

  radiodb::RadioDb db(*link);
  db.transfer_kind = options.automatic                  ? TransferKind::kBoth
                     : options.calibration_file.empty() ? TransferKind::kChosenFile
                                                        : TransferKind::kCalibration;
  db.chosen_calibration_file = options.calibration_file;
  db.database_folder = options.database_folder;
  db.calibration_folder = options.calibration_folder;
  program.user.SetFile(AbsoluteName(options.file));
  bool done = false;
  {
    ReadWriteDisplay display(program);
    done = ReadRadio(db, display);
  }
  if (!done) return program.JobStatus(false);

  for (const std::string& file : {db.data_file, db.calibration_file}) {
    if (file.empty()) continue;
    program.Print(NLSFmt(program.session, "The data of radio %0:s is saved in %1:s.",
                         {RadioName(db.identity), file}) +
                  "\n");
  }
  program.Json()["radio"] = IdentityJson(db.identity);
  if (!db.data_file.empty()) program.Json()["data_file"] = db.data_file;
  if (!db.calibration_file.empty()) program.Json()["calibration_file"] = db.calibration_file;
  return program.JobStatus(true);
}

}  // namespace

Action DeclareRead(CLI::App& app) {
  auto options = std::make_shared<ReadOptions>();
  app.add_option("FILE", options->file,
                 std::string(NLSText("data file to make: .ops, or .omn of a radio with several "
                                     "networks")));
  app.add_option("--calibration", options->calibration_file,
                 std::string(NLSText("read the calibration data instead, into this .ocs file")))
      ->type_name("FILE");
  app.add_flag("--auto", options->automatic,
               std::string(NLSText("read both; the files are named after the radio's serial number "
                                   "and versions")));
  app.add_option("--database-folder", options->database_folder,
                 std::string(NLSText("where --auto puts the data file")))
      ->type_name("DIR");
  app.add_option("--calibration-folder", options->calibration_folder,
                 std::string(NLSText("where --auto puts the calibration file")))
      ->type_name("DIR");
  return [options](Program& program) { return Read(program, *options); };
}

}  // namespace zep::cli
