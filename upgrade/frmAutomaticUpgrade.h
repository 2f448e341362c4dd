// The automatic upgrade: one button that saves a radio's data, programs the firmware that it needs,
// and writes its data back in the new version.
#pragma once

#include "services/window_kit_ui.h"
#include "upgrade/automatic_upgrade.h"
#include "upgrade/upgrade_panel_ui.h"

namespace zep::upgrade {

class frmAutomaticUpgrade : public services::TaskWindow {
 public:
  frmAutomaticUpgrade(wxWindow* parent, services::WindowContext& window_context,
                      link::Link& program_link, firmware::Firmware& firmware,
                      radiodb::LastRadio& last_radio);

 private:
  void Upgrade();

  link::Link& link_;
  firmware::Firmware& firmware_;
  radiodb::LastRadio& radio_;
  UpgradePanel* panel_ = nullptr;
  wxButton* cmdUpgrade = nullptr;
  wxButton* cmdCancel = nullptr;
};

}  // namespace zep::upgrade
