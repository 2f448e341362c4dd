// The upgrade dialog's work: a firmware file of the user's choice, and what is done with the
// radio's data around the download.
#pragma once

#include "services/outcome.h"
#include "services/session.h"
#include "upgrade/automatic_upgrade.h"

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

// The Upgrade button: saves what is selected, downloads the image chosen in firmware.image, and
// writes the saved data back. With data of a radio selected it works on one radio, else on all that
// are Active. Done when all that was asked for is done.
services::Outcome RunManualUpgrade(const UpgradeWork& work, const UpgradeSelections& selections);

}  // namespace zep::upgrade
