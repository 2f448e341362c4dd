#include "upgrade/frmUpgrade.h"

#include <wx/sizer.h>

#include "firmware/download.h"
#include "services/messages.h"
#include "services/resource_ids.h"
#include "upgrade/automatic_upgrade.h"

namespace zep::upgrade {
namespace {

using services::NLSFmt;

constexpr const char* kHelpPage = "upgrade.htm";

}  // namespace

frmUpgrade::frmUpgrade(wxWindow* parent, services::WindowContext& window_context,
                       link::Link& program_link, firmware::Firmware& firmware,
                       radiodb::LastRadio& last_radio)
    : TaskWindow(parent, window_context, "frmUpgrade", kHelpPage),
      link_(program_link),
      firmware_(firmware),
      radio_(last_radio),
      panel_(new UpgradePanel(this, window_context, program_link, [this] { Browse(); })) {
  const services::Session& session = context.session;
  chkSaveMain = services::MakeCheckBox(
      this, NLSFmt(session, "Read, save then reprogram radio main database"), "chkSaveMain");
  chkSaveCalibration = services::MakeCheckBox(
      this, NLSFmt(session, "Read, save then reprogram radio calibration database"),
      "chkSaveCalibration");
  chkUpgradeCalibration = services::MakeCheckBox(
      this, NLSFmt(session, "Automatically update calibration database, if required"),
      "chkUpgradeCalibration");
  chkAppLaunchExe = services::MakeCheckBox(
      this, NLSFmt(session, "Launch programming application, if database incompatibilty found"),
      "chkAppLaunchExe");
  // No default button, and the keyboard begins at Browse: Enter starts no upgrade by accident.
  cmdUpgrade =
      services::MakeButton(this, NLSFmt(session, "&Upgrade"), "cmdUpgrade", [this] { Upgrade(); });
  cmdCancel = MakeCancelButton();
  first_focus = panel_->BrowseButton();

  auto* rows = new wxBoxSizer(wxVERTICAL);
  const wxSizerFlags row = wxSizerFlags().Border(wxBOTTOM, services::Gap(this));
  for (wxCheckBox* box : {chkSaveMain, chkSaveCalibration, chkUpgradeCalibration, chkAppLaunchExe})
    rows->Add(box, row);
  panel_->on_transfer_shown = [this](bool shown) {
    for (wxCheckBox* box :
         {chkSaveMain, chkSaveCalibration, chkUpgradeCalibration, chkAppLaunchExe})
      box->Show(!shown);
  };
  rows->Add(panel_, wxSizerFlags(1).Expand());
  rows->Add(services::ButtonRow(
                this, {cmdUpgrade, cmdCancel, services::MakeHelpButton(this, context, kHelpPage)}),
            wxSizerFlags().Expand().Border(wxTOP, services::Gap(this)));
  panel_->MoveAfterInTabOrder(chkAppLaunchExe);
  SetContents(rows);

  const UpgradeSelections selections = LoadUpgradeSelections(session);
  chkSaveMain->SetValue(selections.SaveMain);
  chkSaveCalibration->SetValue(selections.SaveCalibration);
  chkUpgradeCalibration->SetValue(selections.UpgradeCalibration);
  chkAppLaunchExe->SetValue(selections.AppLaunchExe);
  const firmware::DownloadChoices choices = firmware::LoadDownloadChoices(session);
  firmware_.image.BinaryFilePath = choices.BinaryFilePath;
  firmware_.image.BinaryFileName = choices.BinaryFileName;
  if (!choices.BinaryFileName.empty()) panel_->ShowFirmwareFile(firmware_.image.FullName());
}

frmUpgrade::~frmUpgrade() { SaveUpgradeSelections(context.session, Selections()); }

UpgradeSelections frmUpgrade::Selections() const {
  return {.SaveMain = chkSaveMain->GetValue(),
          .SaveCalibration = chkSaveCalibration->GetValue(),
          .UpgradeCalibration = chkUpgradeCalibration->GetValue(),
          .AppLaunchExe = chkAppLaunchExe->GetValue()};
}

void frmUpgrade::Browse() {
  firmware::DownloadChoices choices = firmware::LoadDownloadChoices(context.session);
  if (!firmware::BrowseBinary(context.session, firmware_.image, choices)) return;
  panel_->ShowFirmwareFile(firmware_.image.FullName());
}

void frmUpgrade::Upgrade() {
  if (context.session.jobs.IsRunning()) return;
  panel_->Begin();
  const auto enable = [this](bool enabled) {
    for (wxWindow* control : std::initializer_list<wxWindow*>{
             cmdUpgrade, chkSaveMain, chkSaveCalibration, chkUpgradeCalibration, chkAppLaunchExe})
      control->Enable(enabled);
  };
  cmdCancel->SetFocus();
  enable(false);
  const services::Outcome ended =
      RunManualUpgrade({link_, firmware_, radio_, *panel_}, Selections());
  const UpgradeOutcome outcome = ended.Done()           ? UpgradeOutcome::kSucceeded
                                 : ended.WasCancelled() ? UpgradeOutcome::kAborted
                                                        : UpgradeOutcome::kFailed;
  panel_->End(NLSFmt(context.session, FinalReport(outcome)));
  enable(true);
  cmdUpgrade->SetFocus();
}

}  // namespace zep::upgrade
