// The upgrade dialog: a firmware file of the user's choice, and what is done with the radio's
// databases around the download.
#pragma once

#include <wx/checkbox.h>

#include "services/window_kit_ui.h"
#include "upgrade/manual_upgrade.h"
#include "upgrade/upgrade_panel_ui.h"

namespace zep::upgrade {

class frmUpgrade : public services::TaskWindow {
 public:
  frmUpgrade(wxWindow* parent, services::WindowContext& window_context, link::Link& program_link,
             firmware::Firmware& firmware, radiodb::LastRadio& last_radio);
  // Stores the check boxes.
  ~frmUpgrade() override;

 private:
  UpgradeSelections Selections() const;
  void Browse();
  void Upgrade();

  link::Link& link_;
  firmware::Firmware& firmware_;
  radiodb::LastRadio& radio_;
  UpgradePanel* panel_ = nullptr;
  wxCheckBox* chkSaveMain = nullptr;
  wxCheckBox* chkSaveCalibration = nullptr;
  wxCheckBox* chkUpgradeCalibration = nullptr;
  wxCheckBox* chkAppLaunchExe = nullptr;
  wxButton* cmdUpgrade = nullptr;
  wxButton* cmdCancel = nullptr;
};

}  // namespace zep::upgrade
