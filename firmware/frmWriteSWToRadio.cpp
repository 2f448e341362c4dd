#include "firmware/frmWriteSWToRadio.h"

#include "link/transcript_button_ui.h"
#include "services/messages.h"

namespace zep::firmware {
namespace {

constexpr int kUntilPainted = 50;  // milliseconds

}  // namespace

frmWriteSWToRadio::frmWriteSWToRadio(wxWindow* parent, services::WindowContext& window_context,
                                     const link::Link& link)
    : wxDialog(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE,
               "frmWriteSWToRadio"),
      context_(window_context),
      timActivateWriteSW(this) {
  pnlTransfer = new TransferPanel(this, context_, link);
  cmdCancel = services::MakeButton(
      this, NLSFmt(context_.session, "&Cancel"), "cmdCancel", [this] { Cancel(); }, wxID_CANCEL);
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

  const int margin = 2 * services::Gap(this);
  auto* rows = new wxBoxSizer(wxVERTICAL);
  rows->Add(pnlTransfer, wxSizerFlags(1).Expand().Border(wxALL, margin));
  rows->Add(services::ButtonRow(this, {link::MakeTranscriptButton(this, context_), cmdCancel}),
            wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
  rows->Add(stbStatus, wxSizerFlags().Expand());
  SetSizer(rows);
  services::FitToScreen(this);

  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
    if (event.CanVeto()) {
      event.Veto();
      Cancel();
    } else {
      context_.session.jobs.Stop();
    }
  });
  Bind(wxEVT_TIMER, [this](wxTimerEvent&) { WriteSW(); });
}

TransferResult frmWriteSWToRadio::Run(link::Job& job, Firmware& firmware, link::Transfer direction,
                                      const TransferOptions& options) {
  TransferRun run(job, firmware, *pnlTransfer, direction, options);
  run_ = &run;
  pnlTransfer->Clear();
  if (LoadTransfer(run)) {
    pnlTransfer->ShowText(firmware.image.BinaryFileName);
    timActivateWriteSW.StartOnce(kUntilPainted);
    ShowModal();
  } else {
    UnloadTransfer(run);
  }
  run_ = nullptr;
  return run.result;
}

void frmWriteSWToRadio::WriteSW() {
  if (run_->job.Asks()) {
    timActivateWriteSW.StartOnce(kUntilPainted);  // after the answer
    return;
  }
  WriteRadioSW(*run_);
  UnloadTransfer(*run_);
  EndModal(wxID_OK);
}

// It needs no second wish, though the ports take their time to close.
void frmWriteSWToRadio::Cancel() {
  context_.session.jobs.Cancel();
  if (context_.session.jobs.IsStopping()) cmdCancel->Disable();
}

}  // namespace zep::firmware
