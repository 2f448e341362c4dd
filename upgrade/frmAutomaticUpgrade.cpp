#include "upgrade/frmAutomaticUpgrade.h"

#include <wx/sizer.h>

#include "services/messages.h"

namespace zep::upgrade {
namespace {

using services::NLSFmt;

constexpr int kTextWidth = 520;

}  // namespace

frmAutomaticUpgrade::frmAutomaticUpgrade(wxWindow* parent, services::WindowContext& window_context,
                                         link::Link& program_link, firmware::Firmware& firmware,
                                         radiodb::LastRadio& last_radio)
    : TaskWindow(parent, window_context, "frmAutomaticUpgrade", "automatic_upgrade.htm"),
      link_(program_link),
      firmware_(firmware),
      radio_(last_radio),
      panel_(new UpgradePanel(this, window_context, program_link)) {
  const services::Session& session = context.session;
  auto* explanation = services::MakeLabel(
      this, NLSFmt(session,
                   "Saves the radio's data, programs the firmware that the radio needs, and writes "
                   "the data back in the new version. Leave the radio connected and switched on "
                   "until the end."));
  explanation->Wrap(FromDIP(kTextWidth));
  panel_->on_transfer_shown = [explanation](bool shown) { explanation->Show(!shown); };
  // No default button, and the keyboard begins at Cancel: Enter starts no upgrade by accident.
  cmdUpgrade =
      services::MakeButton(this, NLSFmt(session, "&Upgrade"), "cmdUpgrade", [this] { Upgrade(); });
  cmdCancel = MakeCancelButton();
  first_focus = cmdCancel;
  auto* rows = new wxBoxSizer(wxVERTICAL);
  rows->Add(explanation, wxSizerFlags().Border(wxBOTTOM, services::Gap(this)));
  rows->Add(panel_, wxSizerFlags(1).Expand());
  rows->Add(
      services::ButtonRow(this, {cmdUpgrade, cmdCancel,
                                 services::MakeHelpButton(this, context, "automatic_upgrade.htm")}),
      wxSizerFlags().Expand().Border(wxTOP, services::Gap(this)));
  SetContents(rows);
}

void frmAutomaticUpgrade::Upgrade() {
  if (context.session.jobs.IsRunning()) return;
  panel_->Begin();
  cmdCancel->SetFocus();
  cmdUpgrade->Disable();
  const UpgradeOutcome outcome = AutomaticUpgrade({link_, firmware_, radio_, *panel_}).Upgrade();
  panel_->End(NLSFmt(context.session, FinalReport(outcome)));
  cmdUpgrade->Enable();
  cmdUpgrade->SetFocus();
}

}  // namespace zep::upgrade
