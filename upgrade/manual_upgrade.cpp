#include "upgrade/manual_upgrade.h"

#include <exception>
#include <sstream>
#include <utility>

#include "firmware/transfer_report.h"
#include "link/byte_exchange.h"
#include "platform/files.h"
#include "radiodb/data_files.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"
#include "services/paths.h"
#include "upgrade/data_conversion.h"
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

// One run of the dialog's work.
struct Work {
  Work(const UpgradeWork& work, const UpgradeSelections& the_selections)
      : firmware(work.firmware),
        view(work.view),
        selections(the_selections),
        job(work.link),
        db(job, work.radio) {}

  firmware::Firmware& firmware;
  UpgradeView& view;
  const UpgradeSelections& selections;
  link::Job job;
  radiodb::RadioDb db;
  UpgradeRun run{job, view};

  Session& session = job.session;
  UpgradeLog log{session, UpgradeLogFile(session)};
  bool download_started = false;
  SavedData saved = {};
  radiodb::DataFile personality = {};
  radiodb::DataFile calibration = {};
  radiodb::RadioIdentity identity_before = {};

  bool HasData() const { return selections.SaveMain || selections.SaveCalibration; }
};

TransferKind KindOf(const UpgradeSelections& selections) {
  if (selections.SaveMain) {
    return selections.SaveCalibration ? TransferKind::kBoth : TransferKind::kAutoSave;
  }
  return selections.SaveCalibration ? TransferKind::kCalibration : TransferKind::kChosenFile;
}

bool Save(Work& work) {
  TellOfUnfinishedUpgrades(work.session, work.log);
  if (!PrepareToSave(work.db, work.log)) return false;
  work.view.ShowStatus(NLSFmt(work.session, "Saving personality and calibration data"));
  if (!radiodb::ReadRadio(work.db, work.view.ReadWriteWindow()).Done()) return false;
  work.saved = {.data_file = work.db.data_file, .calibration_file = work.db.calibration_file};
  work.identity_before = work.db.identity;
  work.view.ShowStatus(NLSFmt(work.session, "Checking the saved data"));
  if (!SecureSavedData(work.db, work.saved)) return false;
  work.personality = std::move(work.db.data);
  work.calibration = std::move(work.db.calibration);
  return true;
}

// The programming application knows how to convert personality data, or where to get what does.
void OfferProgrammingApplication(Work& work) {
  Session& session = work.session;
  if (NLSMsgBox(session, "Start the programming application to convert the saved data?",
                {.icon = Icon::kQuestion, .buttons = services::Buttons::kYesNo}) !=
      services::Answer::kYes) {
    return;
  }
  services::AppLocation location;
  const bool found = session.settings.AppGetAppLocation(
      work.db.identity.IsTrunked() ? services::AppType::kTrunked : services::AppType::kConventional,
      location);
  const std::string program = services::AppMakePath(location.folder, location.executable);
  if (!found) {
    Refuse(work.job,
           NLSFmt(session,
                  "The programming application was not found: there is no %0:s. Please install it "
                  "and open %1:s with it.",
                  {program, work.saved.data_file}),
           Failure::kFile);
  } else if (const platform::SystemError error = session.start_program(program)) {
    services::ReportError(session, error, "StartProgram");
  }
}

bool WriteBackPersonality(Work& work) {
  work.db.transfer_kind = TransferKind::kAutoSave;
  if (radiodb::ProgramRadio(work.db, work.view.ReadWriteWindow(), work.personality).Done())
    return true;
  const bool is_other_version = VersionNumber(work.db.identity.database_version) !=
                                VersionNumber(work.identity_before.database_version);
  if (is_other_version && work.selections.AppLaunchExe && !work.job.Stopped()) {
    OfferProgrammingApplication(work);
  }
  return false;
}

// The calibration data for the radio's version: as saved, or converted. Nothing when there is none.
std::optional<radiodb::DataFile> CalibrationForRadio(Work& work) {
  Session& session = work.session;
  const int before = VersionNumber(work.identity_before.calibration_version);
  const int now = VersionNumber(work.db.identity.calibration_version);
  if (before == now) return work.calibration;
  if (!work.selections.UpgradeCalibration) {
    Refuse(work.job,
           NLSFmt(session,
                  "The radio's calibration version is now %0:s, so its saved calibration data of "
                  "version %1:s was not written back. It is in %2:s.",
                  {std::to_string(now), std::to_string(before), work.saved.calibration_file}),
           Failure::kRefused);
    return std::nullopt;
  }
  Expected<conversion::CalibrationResult> converted =
      ConvertAndWriteCalibration(session,
                                 {.old_version = before,
                                  .new_version = now,
                                  .path = ConvertedFileOf(session, work.saved.calibration_file)},
                                 work.calibration);
  if (!converted) {
    work.job.KeepCause(converted.error());
    return std::nullopt;
  }
  work.saved.converted_calibration = converted->file.Path();
  NoteConvertedFiles(work.log, work.saved);
  return std::move(converted->file);
}

bool WriteBackCalibration(Work& work) {
  const std::optional<radiodb::DataFile> file = CalibrationForRadio(work);
  if (!file) return false;
  work.db.transfer_kind = TransferKind::kCalibration;
  return radiodb::ProgramRadio(work.db, work.view.ReadWriteWindow(), *file).Done();
}

bool WriteBack(Work& work) {
  work.view.ShowStatus(NLSFmt(work.session, "Writing the saved data back"));
  firmware::AskToTurnOn(work.session, work.firmware.image);
  if (!radiodb::ReadSpecification(work.db).Done() ||
      !MayBeSameRadio(work.job, work.identity_before.serial_number,
                      work.db.identity.serial_number)) {
    return false;
  }
  const bool personality = !work.selections.SaveMain || WriteBackPersonality(work);
  const bool calibration =
      !work.selections.SaveCalibration || (!work.job.Stopped() && WriteBackCalibration(work));
  if (!personality || !calibration) return false;
  EndNotes(work.session, work.saved);
  return true;
}

// Opens the link and checks the image.
bool Prepare(Work& work) {
  Session& session = work.session;
  link::Job& job = work.job;
  job.TransferMode = link::Transfer::kProgram;
  if ((work.HasData() && !link::SelectSinglePort(job)) || !link::InitialiseComms(job)) {
    job.KeepCause(Failure::kPort);
    return false;
  }
  link::ClearInputBuffers(job.link);
  work.db.database_folder = radiodb::DatabaseFolder(session);
  work.db.calibration_folder = radiodb::CalibrationFolder(session);
  firmware::ChosenImage& image = work.firmware.image;
  return (!image.BinaryFileName.empty() && firmware::CheckForValidFile(session, image)) ||
         Refuse(job, NLSFmt(session, "Please select a valid file to down load."), Failure::kFile);
}

// The image into every radio; how each of them ended is one of the steps.
bool Download(Work& work) {
  const firmware::TransferResult result = work.run.TransferFirmware(work.firmware, {});
  std::istringstream lines(firmware::TransferReportText(work.job.link, result));
  for (std::string line; std::getline(lines, line);) work.view.ShowStatus(line);
  return result.AllDone();
}

bool DoAll(Work& work) {
  work.db.transfer_kind = KindOf(work.selections);
  if (!Prepare(work)) {
    work.db.transfer_kind = TransferKind::kChosenFile;
    return false;
  }
  if (work.HasData() && (!Save(work) || !firmware::IsForModel(work.session, work.firmware.image,
                                                              work.identity_before.tier))) {
    return false;
  }
  if (!work.run.MayGoOn()) return false;
  work.download_started = true;
  work.view.ShowStatus(NLSFmt(work.session, "Downloading radio firmware"));
  return Download(work) && !work.job.Stopped() &&
         (!work.HasData() || (work.run.MayGoOn() && WriteBack(work)));
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

services::Outcome RunManualUpgrade(const UpgradeWork& upgrade,
                                   const UpgradeSelections& selections) {
  Work work(upgrade, selections);
  bool done = false;
  try {
    done = DoAll(work);
  } catch (const std::exception& error) {
    ReportUnexpectedError(work.job, work.log, error);
  }
  if (!done && !work.download_started) DropNote(work.saved);
  LeaveNote(work.saved);
  if (!done && work.download_started && work.HasData()) {
    TellOfSavedData(work.session, work.log, work.saved);
  }
  services::Outcome outcome = work.job.Ended(done);
  if (!done && work.run.IsAborted()) outcome.failure = Failure::kCancelled;
  TidyUp(work.job);
  return outcome;
}

}  // namespace zep::upgrade
