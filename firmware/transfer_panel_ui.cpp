#include "firmware/transfer_panel_ui.h"

#include <algorithm>
#include <utility>

#include "firmware/transfer_report.h"
#include "services/messages.h"

namespace zep::firmware {
namespace {

using services::NLSFmt;
using services::NLSText;
using services::ToWx;
using services::WindowContext;

constexpr int kDeviceWidth = 170;
constexpr int kHintWidth = 520;

// Texts that a column must have room for before they are known.
constexpr std::string_view kLongestFlash = "SST29EE020 2MBit";

int WidestState(const wxWindow* window, const services::Session& session) {
  int widest = 0;
  for (const auto state : {link::PortState::kActive, link::PortState::kAvailable,
                           link::PortState::kNotAvailable, link::PortState::kErrorDetected}) {
    const wxString text = ToWx(NLSFmt(session, PortStateText(state)));
    widest = std::max(widest, window->GetTextExtent(text).x);
  }
  return widest;
}

void SetText(wxStaticText* label, const std::string& text) {
  const wxString shown = ToWx(text);
  if (label->GetLabelText() != shown) label->SetLabelText(shown);
}

}  // namespace

TransferPanel::TransferPanel(wxWindow* parent, const services::WindowContext& window_context,
                             const link::Link& shown_link)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlTransfer"),
      context_(window_context),
      link_(shown_link) {
  wxSizer* grid = MakeRows();
  lblBootstrapHint =
      new wxStaticText(this, wxID_ANY,
                       ToWx(NLSFmt(context_.session,
                                   "The first loader goes into the radios now. "
                                   "Please leave them as they are; this step cannot "
                                   "be cancelled.")),
                       wxDefaultPosition, wxDefaultSize, wxST_NO_AUTORESIZE, "lblBootstrapHint");
  lblBootstrapHint->Wrap(FromDIP(kHintWidth));
  lblBootstrapHint->InvalidateBestSize();
  lblBootstrapHint->SetMinSize(lblBootstrapHint->GetBestSize());
  hint_ = lblBootstrapHint->GetLabel();
  ShowBootstrapHint(false);
  pnlProgress = new services::ProgressPanel(this, context_);

  const wxSizerFlags below = wxSizerFlags().Expand().Border(wxTOP, services::Gap(this));
  auto* contents = new wxBoxSizer(wxVERTICAL);
  contents->Add(grid, wxSizerFlags().Expand());
  contents->Add(lblBootstrapHint, wxSizerFlags(below));
  contents->Add(pnlProgress, wxSizerFlags(below));
  SetSizer(contents);
  Clear();
}

wxSizer* TransferPanel::MakeRows() {
  const services::Session& session = context_.session;
  auto* grid = services::LabelGrid(this, 6, 1);
  for (const std::string_view heading : {NLSText("Port"), NLSText("Device"), NLSText("Micro"),
                                         NLSText("Flash"), NLSText("Status"), NLSText("Result")}) {
    wxStaticText* label = services::MakeLabel(this, NLSFmt(session, heading));
    label->SetFont(label->GetFont().Bold());
    grid->Add(label);
  }
  for (const int port : link::kAllPorts) {
    Row& row = rows_[link::Link::Index(port)];
    row = MakeRow(port);
    for (wxStaticText* label :
         {row.lblPort, row.lblDevice, row.lblMicro, row.lblFlash, row.lblStatus, row.lblOutcome}) {
      grid->Add(label, wxSizerFlags().Expand());
    }
  }
  return grid;
}

TransferPanel::Row TransferPanel::MakeRow(int port) {
  const std::string number = std::to_string(port);
  const auto label = [&](const char* name, int width, long style = 0) {
    return new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, {width, -1},
                            style | wxST_NO_AUTORESIZE, name + number);
  };
  const auto width = [&](std::string_view text) {
    return GetTextExtent(ToWx(NLSFmt(context_.session, text))).x;
  };
  Row row{.lblPort = label("lblPort", width("Port")),
          .lblDevice = label("lblDevice", FromDIP(kDeviceWidth), wxST_ELLIPSIZE_START),
          .lblMicro = label("lblMicro", width("Micro")),
          .lblFlash = label("lblFlash", width(kLongestFlash)),
          .lblStatus = label("lblStatus", WidestState(this, context_.session)),
          .lblOutcome = label("lblOutcome", std::max(width(OutcomeText(RadioOutcome::kDone)),
                                                     width(OutcomeText(RadioOutcome::kFailed))))};
  SetText(row.lblPort, number);
  return row;
}

void TransferPanel::Clear() {
  EnableCancel(true);
  pnlProgress->ShowText("");
  pnlProgress->SetMaximum(1);
  for (const int port : link::kAllPorts) {
    const std::size_t index = link::Link::Index(port);
    const std::string device = link_.ports[index]->Device();
    SetText(rows_[index].lblDevice, device);
    rows_[index].lblDevice->SetToolTip(ToWx(device));
    PortFacts facts;
    facts.state = link_.CommStates[index];
    SetPort(port, facts);
  }
}

void TransferPanel::EnableCancel(bool enabled) { WindowContext::Call(on_cancel_enabled, enabled); }

void TransferPanel::SetCaption(const std::string& caption) {
  WindowContext::Call(on_caption, caption);
}

void TransferPanel::ShowStatus(const std::string& status) {
  WindowContext::Call(on_status, status);
}

void TransferPanel::SetProgressMaximum(int maximum) { pnlProgress->SetMaximum(maximum); }

void TransferPanel::SetProgress(int value) { pnlProgress->SetValue(value); }

void TransferPanel::ShowProgress(bool shown) { pnlProgress->ShowBar(shown); }

void TransferPanel::ShowCancel(bool shown) { WindowContext::Call(on_cancel_shown, shown); }

// The label keeps its place: a label that comes and goes is not drawn before the next turn, and
// while the first loader is sent there may be none.
void TransferPanel::ShowBootstrapHint(bool shown) {
  lblBootstrapHint->SetLabel(shown ? hint_ : wxString());
}

void TransferPanel::SetPort(int port, const PortFacts& facts) {
  const services::Session& session = context_.session;
  const bool failed = facts.state == link::PortState::kErrorDetected;
  const Row& row = rows_[link::Link::Index(port)];
  SetText(row.lblMicro, std::string(MicroName(facts.micro)));
  SetText(row.lblFlash, FlashText(session, facts));
  SetText(row.lblStatus, NLSFmt(session, PortStateText(facts.state)));
  SetText(row.lblOutcome,
          NLSFmt(session, OutcomeText(failed ? RadioOutcome::kFailed : facts.outcome)));
  for (wxStaticText* label :
       {row.lblPort, row.lblDevice, row.lblMicro, row.lblFlash, row.lblStatus, row.lblOutcome}) {
    label->Enable(!facts.left_out);
  }
}

// Drawn at once: what follows may keep the program from drawing for a while.
void TransferPanel::Repaint() {
  wxWindow* window = wxGetTopLevelParent(this);
  window->Refresh();
  window->Update();
}

}  // namespace zep::firmware
