// The upgrade dialog's work: a firmware file of the user's choice, and what is done with the
// radio's data around the download.
#pragma once

#include "firmware/firmware.h"
#include "radiodb/radio_db.h"
#include "services/session.h"
#include "upgrade/upgrade_run.h"
#include "upgrade/upgrade_view.h"

namespace zep::upgrade {

// The dialog's check boxes, kept as settings of the same names.
struct UpgradeSelections {
  bool SaveMain = true;            // read, save, then reprogram the personality database
  bool SaveCalibration = true;     // the same for the calibration database
  bool UpgradeCalibration = true;  // convert it when the radio has a new calibration version
  bool AppLaunchExe = true;        // offer the programming application for an incompatible database
};

UpgradeSelections LoadUpgradeSelections(const services::Session& session);
void SaveUpgradeSelections(services::Session& session, const UpgradeSelections& selections);

class ManualUpgrade {
 public:
  // All three outlive the upgrade.
  ManualUpgrade(firmware::Firmware& firmware, radiodb::RadioDb& db, UpgradeView& view);

  // The Upgrade button: saves what is selected, downloads the image chosen in firmware.image, and
  // writes the saved data back. With data of a radio selected it works on one radio, else on all
  // that are Active. The link's job and its end are part of it. True when all that was asked for is
  // done, else session.failure is set.
  bool Upgrade(const UpgradeSelections& selections);

  // The Cancel button and the closing of the dialog, in a turn of the user interface (see
  // UpgradeRun). A dialog may close when no run is on.
  void Cancel() { run_.Cancel(); }
  bool IsRunning() const { return run_.IsRunning(); }

 private:
  firmware::Firmware& firmware_;
  radiodb::RadioDb& db_;
  UpgradeView& view_;
  UpgradeRun run_;
};

}  // namespace zep::upgrade
