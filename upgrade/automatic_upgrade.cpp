#include "upgrade/automatic_upgrade.h"

#include <exception>

#include "link/byte_exchange.h"
#include "platform/files.h"
#include "radiodb/data_files.h"
#include "radiodb/radio_models.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"
#include "services/paths.h"
#include "upgrade/data_conversion.h"

namespace zep::upgrade {
namespace {

using radiodb::VersionNumber;
using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;

std::string NumberText(const std::string& version) {
  return std::to_string(VersionNumber(version));
}

}  // namespace

std::string_view FinalReport(UpgradeOutcome outcome) {
  switch (outcome) {
    case UpgradeOutcome::kAborted:
      return NLSText("The upgrade process was aborted");
    case UpgradeOutcome::kCommsError:
      return NLSText("There was a comms error - The upgrade process did not complete");
    case UpgradeOutcome::kSucceeded:
      return NLSText("The upgrade process has completed successfully");
    case UpgradeOutcome::kUpToDate:
      return NLSText("Firmware already up-to-date. Upgrade not required.");
    case UpgradeOutcome::kFailed:
      break;
  }
  return NLSText("The upgrade process did not complete successfully");
}

AutomaticUpgrade::AutomaticUpgrade(const UpgradeWork& work, const UpgradeFiles& given_files)
    : firmware_(work.firmware),
      view_(work.view),
      job_(work.link),
      session_(job_.session),
      db_(job_, work.radio),
      log_(session_, UpgradeLogFile(session_)),
      run_(job_, view_),
      selection_{.file = {}, .folder = {}, .given_file = given_files.image},
      given_default_settings_(given_files.default_settings) {}

UpgradeOutcome AutomaticUpgrade::Upgrade() {
  UpgradeOutcome outcome = UpgradeOutcome::kFailed;
  try {
    outcome = RunSteps();
  } catch (const std::exception& error) {
    ReportUnexpectedError(job_, log_, error);
    if (download_started_) TellOfSavedData(session_, log_, saved_);
  }
  if (outcome == UpgradeOutcome::kSucceeded) {
    EndNotes(session_, saved_);
  } else if (!download_started_) {
    DropNote(saved_);
  }
  LeaveNote(saved_);
  const bool done = outcome == UpgradeOutcome::kSucceeded || outcome == UpgradeOutcome::kUpToDate;
  cause_ = job_.Ended(done);
  if (outcome == UpgradeOutcome::kAborted) cause_.failure = Failure::kCancelled;
  TidyUp(job_);
  return outcome;
}

UpgradeOutcome AutomaticUpgrade::RunSteps() {
  log_.Log("Upgrade process started.");
  TellOfUnfinishedUpgrades(session_, log_);
  job_.TransferMode = link::Transfer::kProgram;
  // One radio's data goes through this run, so only that radio gets the firmware.
  if (!link::SelectSinglePort(job_) || !link::InitialiseComms(job_)) {
    return Report(FailWith("Could not initialise comms", Failure::kPort));
  }
  view_.ShowFirmwareFile("");
  link::ClearInputBuffers(job_.link);
  view_.ShowStatus(NLSFmt(session_, "Locating firmware file"));
  switch (LocateFirmwareFile(db_, log_, view_, selection_, firmware_.image)) {
    case LocateResult::kUpToDate:
      return UpgradeOutcome::kUpToDate;
    case LocateResult::kFailed:
      return Report(false);
    case LocateResult::kSelected:
      break;
  }
  return Report(run_.MayGoOn() && Save() && run_.MayGoOn() && Download() && run_.MayGoOn() &&
                Convert() && run_.MayGoOn() && Reprogram());
}

bool AutomaticUpgrade::Save() {
  Begin(NLSText("Saving personality and calibration data"));
  db_.transfer_kind = radiodb::TransferKind::kBoth;
  db_.database_folder = radiodb::DatabaseFolder(session_);
  db_.calibration_folder = radiodb::CalibrationFolder(session_);
  if (!PrepareToSave(db_, log_)) return false;
  if (!radiodb::ReadRadio(db_, view_.ReadWriteWindow()).Done()) {
    return FailWith(
        job_.DownloadError ? "Could not save personality data" : "The radio's data was not saved",
        Failure::kFile);
  }
  saved_ = {.data_file = db_.data_file, .calibration_file = db_.calibration_file};
  saved_model_code_ = db_.identity.model_code;
  saved_serial_number_ = db_.identity.serial_number;
  old_database_version_ = db_.identity.database_version;
  old_calibration_version_ = db_.identity.calibration_version;
  view_.ShowStatus(NLSFmt(session_, "Checking the saved data"));
  if (!SecureSavedData(db_, saved_)) {
    if (job_.CancelRequested) return false;
    return FailWith(job_.DownloadError ? "Could not save personality data"
                                       : "The saved data could not be verified",
                    Failure::kFile);
  }
  personality_ = std::move(db_.data);
  calibration_ = std::move(db_.calibration);
  log_.Log("Personality data saved as: " + services::FileTitleOf(saved_.data_file));
  log_.Log("Calibration data saved as: " + services::FileTitleOf(saved_.calibration_file));
  return CheckSavedCalibration() && CheckDefaultSettings();
}

// A conversion that is bound to fail is to do so before the firmware is in the radio.
bool AutomaticUpgrade::CheckSavedCalibration() {
  const std::string item =
      conversion::CalibrationItemIn(calibration_, {db_.identity.tier, db_.identity.type});
  const std::string data = conversion::GetCalibrationData(calibration_, item);
  const int version = VersionNumber(old_calibration_version_);
  if (conversion::CalibrationVersionOf(data) == version) return true;
  const bool is_known =
      version >= conversion::kOldestCalibration && version <= conversion::kNewestCalibration;
  Refuse(job_,
         is_known ? NLSFmt(session_,
                           "The radio's calibration data is not that of its calibration version "
                           "%0:s: it has %1:s bytes. The radio keeps its firmware. Please upgrade "
                           "it manually.",
                           {std::to_string(version), std::to_string(data.size() / 2)})
                  : NLSFmt(session_,
                           "This application does not know the radio's calibration version %0:s. "
                           "The radio keeps its firmware. Please upgrade it manually.",
                           {std::to_string(version)}),
         Failure::kRefused);
  return FailWith("The calibration data cannot be converted", Failure::kRefused);
}

// Without them there would be no way back once the firmware is in the radio.
bool AutomaticUpgrade::CheckDefaultSettings() {
  Expected<DefaultSettings> settings = ReadDefaultSettings(session_, log_, given_default_settings_);
  if (!settings) return FailWith({}, settings.error());
  default_settings_ = *std::move(settings);
  return true;
}

bool AutomaticUpgrade::Download() {
  log_.Log("Starting firmware download. Version is currently v" + db_.identity.software_version);
  view_.ShowStatus(NLSFmt(session_, "Downloading radio firmware"));
  download_started_ = true;
  const firmware::TransferOptions options{.at_once = std::nullopt, .automatic_upgrade = true};
  if (!run_.TransferFirmware(firmware_, options).succeeded)
    return FailWith("Firmware download failed", Failure::kRefused);
  if (radiodb::SwitchesOffAfterDownload(db_.identity.tier)) {
    NLSMsgBox(session_, "Please turn the radio on so that it can be programmed.",
              {.notice = services::Notice::kAwaitsAction});
  }
  if (!radiodb::ReadSpecification(db_).Done()) {
    return FailWith("Could not read radio configuration", Failure::kNoAnswer);
  }
  log_.Log("Firmware download complete. Version is now v" + db_.identity.software_version);
  return true;
}

bool AutomaticUpgrade::Convert() {
  view_.ShowStatus(NLSFmt(session_, "Converting the radio's data"));
  if (!CheckRadioIsTheSame()) return false;
  Expected<ConvertedPersonality> converted =
      ConvertPersonalityData(session_, log_,
                             {.old_version = old_database_version_,
                              .new_version = db_.identity.database_version,
                              .saved = personality_,
                              .converted_file = ConvertedFileOf(session_, saved_.data_file),
                              .defaults = &default_settings_});
  if (!converted) return FailWith({}, converted.error());
  for (const conversion::Remark& remark : converted->remarks)
    view_.ShowStatus(NLSFmt(session_, remark.text));
  if (!run_.MayGoOn() || !ConvertCalibration(converted->file)) return false;
  if (const auto written = WriteConvertedFile(session_, converted->file, "WriteDatabase"); !written)
    return FailWith("Could not write " + converted->file.Path(), written.error());
  saved_.converted_file = converted->file.Path();
  NoteConvertedFiles(log_, saved_);
  converted_ = std::move(converted->file);
  return true;
}

// What came back after the download has to be able to take the saved data.
bool AutomaticUpgrade::CheckRadioIsTheSame() {
  const radiodb::RadioIdentity& radio = db_.identity;
  if (radio.model_code != saved_model_code_) {
    const auto saved_model =
        radiodb::FindRadioModel(saved_model_code_).value_or(radiodb::RadioModel{});
    NLSMsgBox(session_,
              NLSFmt(session_, "Can not program a %0:s as a %1:s",
                     {radiodb::AppGetRadioModel(session_, saved_model.tier), radio.model_name}),
              {.icon = Icon::kCritical});
    return FailWith("The radio is not the one whose data was saved: its model code is " +
                        radio.model_code + " instead of " + saved_model_code_,
                    Failure::kRefused);
  }
  if (!MayBeSameRadio(job_, saved_serial_number_, radio.serial_number)) {
    return FailWith("The radio is not the one whose data was saved: its serial number is " +
                        radio.serial_number + " instead of " + saved_serial_number_,
                    Failure::kRefused);
  }
  if (VersionNumber(radio.database_version) >= VersionNumber(old_database_version_)) return true;
  const std::string question =
      NLSFmt(session_,
             "The radio's database version is now %0:s, older than the %1:s of its saved data, "
             "which cannot be converted back. Program the data as it is?",
             {NumberText(radio.database_version), NumberText(old_database_version_)});
  if (NLSMsgBox(
          session_, question,
          {.icon = Icon::kQuestion, .buttons = services::Buttons::kYesNo, .cautious = true}) ==
      services::Answer::kYes) {
    return true;
  }
  return FailWith("The radio's database version is older than that of its saved data",
                  Failure::kRefused);
}

bool AutomaticUpgrade::ConvertCalibration(radiodb::DataFile& data_file) {
  const std::string old_text = NumberText(old_calibration_version_);
  const std::string new_text = NumberText(db_.identity.calibration_version);
  log_.Log("Upgrading calibration data v" + old_text + " -> v" + new_text);
  if (old_text == new_text) {
    log_.Log("Calibration data is up-to-date");
    return true;
  }
  // Programmed by hand, a data file leaves calibration alone, so there is a file of it, too.
  const Expected<conversion::CalibrationResult> converted =
      ConvertAndWriteCalibration(session_,
                                 {.old_version = VersionNumber(old_calibration_version_),
                                  .new_version = VersionNumber(db_.identity.calibration_version),
                                  .path = ConvertedFileOf(session_, saved_.calibration_file)},
                                 calibration_);
  if (!converted) return FailWith("Could not upgrade calibration data", converted.error());
  log_.Log("Calibration data version is now " + new_text);
  conversion::AddCalibrationDataToFile(converted->item, converted->data, data_file);
  saved_.converted_calibration = converted->file.Path();
  return true;
}

bool AutomaticUpgrade::Reprogram() {
  Begin(NLSText("Attempting to reprogram personality"));
  constexpr std::string_view kFailed = "Could not reprogram personality";
  if (platform::FileSize(converted_.Path()).value_or(0) == 0)
    return FailWith(kFailed, Failure::kFile);
  firmware::AskToTurnOn(session_, firmware_.image);
  db_.transfer_kind = radiodb::TransferKind::kBoth;
  if (!radiodb::ProgramRadio(db_, view_.ReadWriteWindow(), converted_).Done()) {
    return FailWith(kFailed, Failure::kRefused);
  }
  log_.Log("Radio personality has been reprogrammed");
  return true;
}

UpgradeOutcome AutomaticUpgrade::Report(bool succeeded) {
  UpgradeOutcome outcome = succeeded ? UpgradeOutcome::kSucceeded : UpgradeOutcome::kFailed;
  if (job_.DownloadError) outcome = UpgradeOutcome::kCommsError;
  if (run_.IsAborted()) outcome = UpgradeOutcome::kAborted;
  log_.Log(FinalReport(outcome));
  NLSMsgBox(session_, FinalReport(outcome));
  if (outcome != UpgradeOutcome::kSucceeded && download_started_) {
    TellOfSavedData(session_, log_, saved_);
  }
  return outcome;
}

void AutomaticUpgrade::Begin(std::string_view text) {
  log_.Log(text);
  view_.ShowStatus(NLSFmt(session_, text));
}

bool AutomaticUpgrade::FailWith(std::string_view line, Failure why) {
  if (!line.empty()) log_.Log(line);
  job_.KeepCause(why);
  return false;
}

}  // namespace zep::upgrade
