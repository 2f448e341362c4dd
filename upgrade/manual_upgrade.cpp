#include "upgrade/manual_upgrade.h"

#include "firmware/transfer_engine.h"
#include "link/byte_exchange.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "radiodb/data_files.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"
#include "services/paths.h"
#include "upgrade/calibration_conversion.h"
#include "upgrade/saved_data.h"
#include "upgrade/upgrade_log.h"

namespace zep::upgrade {
namespace {

using radiodb::TransferKind;
using radiodb::VersionNumber;
using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::Session;

struct Setting {
  std::string_view name;
  bool UpgradeSelections::*value;
};
constexpr Setting kSettings[] = {
    {"SaveMain", &UpgradeSelections::SaveMain},
    {"SaveCalibration", &UpgradeSelections::SaveCalibration},
    {"UpgradeCalibration", &UpgradeSelections::UpgradeCalibration},
    {"AppLaunchExe", &UpgradeSelections::AppLaunchExe},
};

// The tier whose radios switch off after a firmware download.
constexpr int kSwitchesOff = 3;

bool Refuse(Session& session, const std::string& text, Failure why) {
  NLSMsgBox(session, text, {.icon = Icon::kCritical});
  if (session.failure == Failure::kNone) session.failure = why;
  return false;
}

// One run of the dialog's work.
struct Run {
  firmware::Firmware& firmware;
  radiodb::RadioDb& db;
  UpgradeView& view;
  const UpgradeSelections& selections;

  Session& session = db.link.session;
  SavedData saved = {};
  radiodb::RadioIdentity identity_before = {};

  bool HasData() const { return selections.SaveMain || selections.SaveCalibration; }
};

bool Save(Run& run) {
  UpgradeLog log(run.session, UpgradeLogFile(run.session));
  TellOfUnfinishedUpgrades(run.session, log);
  if (!PrepareToSave(run.db, log)) return false;
  run.db.transfer_kind = !run.selections.SaveCalibration ? TransferKind::kAutoSave
                         : run.selections.SaveMain       ? TransferKind::kBoth
                                                         : TransferKind::kCalibration;
  if (!radiodb::ReadRadio(run.db, run.view.ReadWriteWindow())) return false;
  run.saved = {run.db.data_file, run.db.calibration_file};
  run.identity_before = run.db.identity;
  return SecureSavedData(run.db, run.saved);
}

bool TransferFirmware(Run& run) {
  run.session.TransferMode = services::Transfer::kProgram;
  firmware::TransferRun transfer(run.firmware, run.view.TransferWindow());
  run.view.WatchTransfer(&transfer);
  const firmware::TransferResult result = firmware::RunTransfer(transfer);
  run.view.WatchTransfer(nullptr);
  return result.succeeded && !run.session.Stopped();
}

// The programming application knows how to convert personality data, or where to get what does.
void OfferProgrammingApplication(Run& run) {
  Session& session = run.session;
  if (NLSMsgBox(session, "Start the programming application to convert the saved data?",
                {.icon = Icon::kQuestion, .buttons = services::Buttons::kYesNo}) !=
      services::Answer::kYes) {
    return;
  }
  services::AppLocation location;
  const bool found = session.settings.AppGetAppLocation(
      run.db.identity.IsTrunked() ? services::AppType::kTrunked : services::AppType::kConventional,
      location);
  const std::string program = services::AppMakePath(location.folder, location.executable);
  if (!found) {
    Refuse(session,
           NLSFmt(session,
                  "The programming application was not found: there is no %0:s. Please install it "
                  "and open %1:s with it.",
                  {program, run.saved.data_file}),
           Failure::kFile);
  } else if (const platform::SystemError error = platform::StartProgram(program, {})) {
    services::ReportError(session, error, "StartProgram");
  }
}

bool WriteBackPersonality(Run& run) {
  run.db.transfer_kind = TransferKind::kAutoSave;
  if (radiodb::ProgramRadio(run.db, run.view.ReadWriteWindow(), run.saved.data_file)) return true;
  const bool is_other_version = VersionNumber(run.db.identity.database_version) !=
                                VersionNumber(run.identity_before.database_version);
  if (is_other_version && run.selections.AppLaunchExe && !run.session.Stopped()) {
    OfferProgrammingApplication(run);
  }
  return false;
}

// The calibration file for the radio's version: as saved, or converted. Empty when there is none.
std::string CalibrationForRadio(Run& run) {
  Session& session = run.session;
  const int before = VersionNumber(run.identity_before.calibration_version);
  const int now = VersionNumber(run.db.identity.calibration_version);
  if (before == now) return run.saved.calibration_file;
  if (!run.selections.UpgradeCalibration) {
    Refuse(session,
           NLSFmt(session,
                  "The radio's calibration version is now %0:s, so its saved calibration data of "
                  "version %1:s was not written back. It is in %2:s.",
                  {std::to_string(now), std::to_string(before), run.saved.calibration_file}),
           Failure::kRefused);
    return {};
  }
  const CalibrationRequest request{
      .saved_file = run.saved.calibration_file,
      .converted_file = UpgradeFolder(session) + services::FileTitleOf(run.saved.calibration_file),
      .old_version = before,
      .new_version = now,
  };
  return ConvertCalibrationFile(session, request) ? request.converted_file : std::string();
}

bool WriteBackCalibration(Run& run) {
  const std::string file = CalibrationForRadio(run);
  if (file.empty()) return false;
  run.db.transfer_kind = TransferKind::kCalibration;
  return radiodb::ProgramRadio(run.db, run.view.ReadWriteWindow(), file);
}

bool WriteBack(Run& run) {
  if (run.firmware.image.FirmwareRadioModel == kSwitchesOff) {
    NLSMsgBox(run.session, "Please turn radio on so data may be programmed.",
              {.notice = services::Notice::kAwaitsAction});
  }
  if (!radiodb::ReadSpecification(run.db) ||
      !MayBeSameRadio(run.session, run.identity_before.serial_number,
                      run.db.identity.serial_number)) {
    return false;
  }
  const bool personality = !run.selections.SaveMain || WriteBackPersonality(run);
  const bool calibration =
      !run.selections.SaveCalibration || (!run.session.Stopped() && WriteBackCalibration(run));
  if (!personality || !calibration) return false;
  RemoveNote(run.session, run.saved);
  return true;
}

bool DoAll(Run& run) {
  Session& session = run.session;
  link::Link& link = run.db.link;
  if ((run.HasData() && !link::SelectSinglePort(link)) || !link::InitialiseComms(link)) {
    if (session.failure == Failure::kNone) session.failure = Failure::kPort;
    return false;
  }
  link::ClearInputBuffers(link);
  run.db.database_folder = radiodb::DatabaseFolder(session);
  run.db.calibration_folder = radiodb::CalibrationFolder(session);
  if (!firmware::CheckForValidFile(session, run.firmware.image)) {
    return Refuse(session, NLSFmt(session, "Please select a valid file to down load."),
                  Failure::kFile);
  }
  if (run.HasData() && !Save(run)) return false;
  if (session.Stopped()) return false;
  if (TransferFirmware(run) && (!run.HasData() || WriteBack(run))) return true;
  if (run.HasData()) {
    UpgradeLog log(session, UpgradeLogFile(session));
    TellOfSavedData(session, log, run.saved);
  }
  return false;
}

}  // namespace

UpgradeSelections LoadUpgradeSelections(const Session& session) {
  UpgradeSelections selections;
  for (const Setting& setting : kSettings) {
    selections.*setting.value =
        session.settings.AppGetUserNumber(session.settings.OwnType(), setting.name, 1) != 0;
  }
  return selections;
}

void SaveUpgradeSelections(Session& session, const UpgradeSelections& selections) {
  for (const Setting& setting : kSettings) {
    session.settings.AppSaveUserSetting(session.settings.OwnType(), setting.name,
                                        selections.*setting.value ? "1" : "0");
  }
}

bool UpgradeManually(firmware::Firmware& firmware, radiodb::RadioDb& db, UpgradeView& view,
                     const UpgradeSelections& selections) {
  bool done = false;
  {
    const link::Job job(db.link);
    Run run{firmware, db, view, selections};
    done = DoAll(run);
    if (!done && db.link.session.failure == Failure::kNone) {
      db.link.session.failure = Failure::kRefused;
    }
  }
  db.link.session.DownloadError = false;
  return done;
}

}  // namespace zep::upgrade
