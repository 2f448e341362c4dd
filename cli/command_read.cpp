#include "cli/command.h"
#include "cli/displays.h"
#include "cli/identity_report.h"
#include "platform/files.h"
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

ExitStatus Read(CommandContext& context, const ReadOptions& options) {
  const int ways = (options.file.empty() ? 0 : 1) + (options.calibration_file.empty() ? 0 : 1) +
                   (options.automatic ? 1 : 0);
  if (ways != 1) {
    return context.UsageError(
        NLSFmt(context.session, "Please give one of FILE, --calibration FILE and --auto."));
  }
  link::Link* link = context.LinkForOneRadio(link::Transfer::kRead);
  if (link == nullptr) return context.LinkStatus();
  link::Job job(*link);
  radiodb::LastRadio radio;
  radiodb::RadioDb db(job, radio);
  db.transfer_kind = options.automatic                  ? TransferKind::kBoth
                     : options.calibration_file.empty() ? TransferKind::kChosenFile
                                                        : TransferKind::kCalibration;
  db.chosen_calibration_file = options.calibration_file;
  db.database_folder = options.database_folder;
  db.calibration_folder = options.calibration_folder;
  context.user.SetFile(platform::AbsolutePath(options.file));
  services::Outcome outcome;
  {
    ReadWriteDisplay display(context);
    outcome = ReadRadio(db, display);
  }
  if (!outcome.Done()) return context.JobStatus(outcome);

  for (const std::string& file : {db.data_file, db.calibration_file}) {
    if (!file.empty()) context.Print(SavedText(db, file) + "\n");
  }
  context.json["radio"] = IdentityJson(db.identity);
  if (!db.data_file.empty()) context.json["data_file"] = db.data_file;
  if (!db.calibration_file.empty()) context.json["calibration_file"] = db.calibration_file;
  return context.JobStatus(outcome);
}

}  // namespace

Action DeclareRead(Arguments& arguments) {
  auto options = std::make_shared<ReadOptions>();
  arguments.AddOptionalWord("FILE", options->file,
                            NLSText("data file to make: .ops, or .omn of a radio with several "
                                    "networks"));
  arguments.AddOption("--calibration", "FILE", options->calibration_file,
                      NLSText("read the calibration data instead, into this .ocs file"));
  arguments.AddFlag("--auto", options->automatic,
                    NLSText("read both; the files are named after the radio's serial number "
                            "and versions"));
  arguments.AddOption("--database-folder", "DIR", options->database_folder,
                      NLSText("where --auto puts the data file"));
  arguments.AddOption("--calibration-folder", "DIR", options->calibration_folder,
                      NLSText("where --auto puts the calibration file"));
  return [options](CommandContext& context) { return Read(context, *options); };
}

}  // namespace zep::cli
