#include "firmware/frmWriteSWToRadio.h"

#include "link/transcript_button_ui.h"
#include "services/messages.h"

namespace zep::firmware {
namespace {

constexpr int kUntilPainted = 50;  // milliseconds

}  // namespace

frmWriteSWToRadio::frmWriteSWToRadio(wxWindow* parent, services::WindowContext& window_context,
                                     Firmware& program_firmware)
    : wxDialog(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE,
               "frmWriteSWToRadio"),
      context_(window_context),
      firmware_(program_firmware),
      timActivateWriteSW(this) {
  pnlTransfer = new TransferPanel(this, context_, firmware_.link);
  cmdCancel = services::MakeButton(
      this, NLSFmt(context_.session, "&Cancel"), "cmdCancel", [this] { pnlTransfer->Cancel(); },
      wxID_CANCEL);
  stbStatus = new wxStatusBar(this, wxID_ANY, 0, "stbStatus");
  SetEscapeId(wxID_CANCEL);
  services::SetHelpPage(this, context_, "engine.htm");

  pnlTransfer->on_caption = [this](const std::string& caption) {
    SetTitle(services::ToWx(caption));
  };
  pnlTransfer->on_status = [this](const std::string& status) {
    stbStatus->SetStatusText(services::ToWx(status));
  };
  pnlTransfer->on_cancel_enabled = [this](bool enabled) { cmdCancel->Enable(enabled); };
  pnlTransfer->on_cancel_shown = [this](bool shown) {
    cmdCancel->Show(shown);
    Layout();
  };
  pnlTransfer->on_cancel = [this] {
    if (run_ != nullptr) firmware::Cancel(*run_);
  };

  const int margin = 2 * services::Gap(this);
  auto* rows = new wxBoxSizer(wxVERTICAL);
  rows->Add(pnlTransfer, wxSizerFlags(1).Expand().Border(wxALL, margin));
  rows->Add(services::ButtonRow(this, {link::MakeTranscriptButton(this, context_), cmdCancel}),
            wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
  rows->Add(stbStatus, wxSizerFlags().Expand());
  SetSizer(rows);
  services::FitToScreen(this);

  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
    if (!event.CanVeto()) {
      context_.session.RequestCancel();
      return;
    }
    event.Veto();
    pnlTransfer->Cancel();
  });
  Bind(wxEVT_TIMER, [this](wxTimerEvent&) { WriteSW(); });
}

TransferResult frmWriteSWToRadio::Run(const TransferOptions& options) {
  TransferRun run(firmware_, *pnlTransfer, options);
  run_ = &run;
  const services::JobControl::Scope scope(context_.job, [this] { pnlTransfer->Cancel(); });
  pnlTransfer->Clear();
  if (LoadTransfer(run)) {
    pnlTransfer->ShowText(firmware_.image.BinaryFileName);
    timActivateWriteSW.StartOnce(kUntilPainted);
    ShowModal();
  } else {
    UnloadTransfer(run);
  }
  run_ = nullptr;
  return run.result;
}

void frmWriteSWToRadio::WriteSW() {
  if (run_->asking_to_cancel) {
    timActivateWriteSW.StartOnce(kUntilPainted);  // after the answer
    return;
  }
  WriteRadioSW(*run_);
  UnloadTransfer(*run_);
  EndModal(wxID_OK);
}

}  // namespace zep::firmware
