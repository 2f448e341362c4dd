#include "upgrade/upgrade_panel_ui.h"

#include <wx/sizer.h>

#include "services/messages.h"

namespace zep::upgrade {
namespace {

using services::NLSFmt;
using services::ToWx;

constexpr int kStepsHeight = 70;  // at least; they take the room that is left

}  // namespace

void UpgradePanel::ReadWriteProgress::ShowStatus(const std::string& status) {
  bar_.ShowText(status);
  services::WindowContext::Call(context_.show_status, status);
}

UpgradePanel::UpgradePanel(wxWindow* parent, services::WindowContext& window_context,
                           const link::Link& link, std::function<void()> on_browse)
    : wxPanel(parent),
      context_(window_context),
      pnlProgress(new services::ProgressPanel(this, window_context)),
      read_write_(*pnlProgress, window_context) {
  const services::Session& session = context_.session;
  const std::string file_label = NLSFmt(session, "Firmware file:");
  auto* file_row = services::LabelGrid(this, on_browse ? 3 : 2);
  file_row->Add(services::MakeLabel(this, file_label), wxSizerFlags().CentreVertical());
  txtBinaryFileName = services::MakeTextBox(this, "txtBinaryFileName", file_label, wxTE_READONLY);
  file_row->Add(txtBinaryFileName, wxSizerFlags(1).Expand());
  if (on_browse) {
    cmdBrowseBinary = services::MakeButton(this, NLSFmt(session, "&Browse..."), "cmdBrowseBinary",
                                           std::move(on_browse));
    file_row->Add(cmdBrowseBinary);
  }

  txtUpgradeSteps = services::MakeTextBox(this, "txtUpgradeSteps", NLSFmt(session, "Steps"),
                                          wxTE_READONLY | wxTE_MULTILINE);
  txtUpgradeSteps->SetMinSize(FromDIP(wxSize(-1, kStepsHeight)));
  pnlTransfer = new firmware::TransferPanel(this, window_context, link);
  cmdStopDownload =
      services::MakeButton(this, NLSFmt(session, "&Stop Download"), "cmdStopDownload", [this] {
        if (transfer_ == nullptr) return;
        transfer_->Cancel();
        if (transfer_->IsStopping()) cmdStopDownload->Disable();
      });
  pnlTransfer->on_cancel_enabled = [this](bool enabled) { cmdStopDownload->Enable(enabled); };
  pnlTransfer->on_status = [this](const std::string& status) {
    services::WindowContext::Call(context_.show_status, status);
  };

  auto* rows = new wxBoxSizer(wxVERTICAL);
  const wxSizerFlags row = wxSizerFlags().Expand().Border(wxBOTTOM, services::Gap(this));
  rows->Add(file_row, row);
  rows->Add(txtUpgradeSteps, wxSizerFlags(1).Expand().Border(wxBOTTOM, services::Gap(this)));
  rows->Add(pnlProgress, row);
  rows->Add(pnlTransfer, row);
  rows->Add(cmdStopDownload, wxSizerFlags().Right());
  SetSizer(rows);
  ShowStep(nullptr);
}

void UpgradePanel::Begin() {
  if (cmdBrowseBinary != nullptr) cmdBrowseBinary->Disable();
  txtUpgradeSteps->Clear();
  ShowStep(nullptr);
}

void UpgradePanel::End(const std::string& result) {
  if (cmdBrowseBinary != nullptr) cmdBrowseBinary->Enable();
  ShowStep(nullptr);
  ShowStatus(result);
}

void UpgradePanel::ShowFirmwareFile(const std::string& full_name) {
  txtBinaryFileName->SetValue(ToWx(full_name));
}

void UpgradePanel::ShowStatus(const std::string& status) {
  txtUpgradeSteps->AppendText(ToWx(status + "\n"));
  services::WindowContext::Call(context_.show_status, status);
}

void UpgradePanel::ShowCancelWaits() {
  ShowStatus(NLSFmt(context_.session,
                    "The upgrade ends when this download is complete. To end it at once, please "
                    "press Stop Download."));
}

radiodb::ReadWriteView& UpgradePanel::ReadWriteWindow() {
  pnlProgress->ShowText("");
  pnlProgress->SetMaximum(1);
  ShowStep(pnlProgress);
  return read_write_;
}

firmware::TransferView& UpgradePanel::TransferWindow() {
  ShowStep(pnlTransfer);
  return *pnlTransfer;
}

void UpgradePanel::WatchTransfer(services::RunningJob* transfer) {
  transfer_ = transfer;
  if (transfer != nullptr) {
    pnlTransfer->Clear();
  } else {
    ShowStep(nullptr);
  }
}

void UpgradePanel::ShowStep(const wxWindow* step) {
  pnlProgress->Show(step == pnlProgress);
  pnlTransfer->Show(step == pnlTransfer);
  cmdStopDownload->Show(step == pnlTransfer);
  services::WindowContext::Call(on_transfer_shown, step == pnlTransfer);
  // The scrolled window around it has to know the new size.
  GetParent()->Layout();
  GetParent()->FitInside();
}

}  // namespace zep::upgrade
