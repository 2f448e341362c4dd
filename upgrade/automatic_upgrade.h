// The automatic upgrade: one radio from an older firmware and database version to the current one
// in a single run. Its data is saved, the firmware downloaded, the saved data converted to the
// radio's new database versions and programmed back.
//
// The steps, each with its lines in upgrade.log; what failed or was cancelled ends the run at the
// next one:
//
//   locate     reads who the radio is, selects the image, finds and checks it
//   save       reads everything into a data file and a calibration file and checks both: from now
//              on they are the only copy
//   download   the firmware, then who the radio is now
//   convert    personality and calibration data into a data file in the folder "upgrade"
//   reprogram  that file into the radio
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "firmware/firmware.h"
#include "link/job.h"
#include "radiodb/radio_db.h"
#include "services/session.h"
#include "upgrade/data_conversion.h"
#include "upgrade/firmware_selection.h"
#include "upgrade/saved_data.h"
#include "upgrade/upgrade_log.h"
#include "upgrade/upgrade_run.h"
#include "upgrade/upgrade_view.h"

namespace zep::upgrade {

enum class UpgradeOutcome {
  kSucceeded,
  kUpToDate,  // nothing was to be done
  kFailed,
  kCommsError,
  kAborted,
};

// How a run ended, in words for the user, untranslated.
std::string_view FinalReport(UpgradeOutcome outcome);

// Files that the user names, by their full names; empty ones are looked for.
struct UpgradeFiles {
  std::string image;
  std::string default_settings;
};

// What an upgrade works on.
struct UpgradeWork {
  link::Link& link;
  firmware::Firmware& firmware;
  radiodb::LastRadio& radio;
  UpgradeView& view;
};

// One run.
class AutomaticUpgrade {
 public:
  explicit AutomaticUpgrade(const UpgradeWork& work, const UpgradeFiles& given_files = {});

  // The Upgrade button: the whole run, with its final report.
  UpgradeOutcome Upgrade();

  // The cause of any outcome but kSucceeded and kUpToDate.
  const services::Outcome& Cause() const { return cause_; }
  // The firmware that was selected, and the files of the run.
  const FirmwareSelection& Selection() const { return selection_; }
  const SavedData& Saved() const { return saved_; }

 private:
  UpgradeOutcome RunSteps();
  bool Save();
  bool CheckSavedCalibration();
  bool CheckDefaultSettings();
  bool Download();
  bool Convert();
  bool CheckRadioIsTheSame();
  // Adds the converted calibration data to the converted data file, too.
  bool ConvertCalibration(radiodb::DataFile& data_file);
  bool Reprogram();

  UpgradeOutcome Report(bool succeeded);

  // Shows the status and logs it.
  void Begin(std::string_view text);
  bool FailWith(std::string_view line, services::Failure why);

  firmware::Firmware& firmware_;
  UpgradeView& view_;
  link::Job job_;
  services::Session& session_;
  radiodb::RadioDb db_;
  UpgradeLog log_;
  UpgradeRun run_;
  FirmwareSelection selection_;
  const std::string given_default_settings_;
  services::Outcome cause_;

  SavedData saved_;
  // What is in those files: each is read back once, when it is saved, and not again.
  radiodb::DataFile personality_;
  radiodb::DataFile calibration_;
  radiodb::DataFile converted_;
  std::string saved_model_code_;
  std::string saved_serial_number_;
  DefaultSettings default_settings_;
  std::string old_database_version_;
  std::string old_calibration_version_;
  bool download_started_ = false;
};

}  // namespace zep::upgrade
