#include "services/progress_panel_ui.h"

#include <algorithm>

#include <wx/sizer.h>

#include "services/messages.h"

namespace zep::services {
namespace {

// Drawing costs more than the job's steps, so the bar moves ten times a second at most.
constexpr platform::Duration kBetweenDrawings = std::chrono::milliseconds(100);
constexpr int kBarWidth = 380;
constexpr int kBarHeight = 18;

}  // namespace

ProgressPanel::ProgressPanel(wxWindow* parent, const WindowContext& window_context)
    : wxPanel(parent),
      context_(window_context),
      rate_(window_context.session, window_context.bytes_on_the_wire) {
  lblProgressText = MakeLabel(this, "", "lblProgressText");
  prgProgress =
      new wxGauge(this, wxID_ANY, 1, wxDefaultPosition, FromDIP(wxSize(kBarWidth, kBarHeight)));
  NameControl(prgProgress, "prgProgress", NLSFmt(context_.session, "Progress"));
  lblProgressRate = MakeLabel(this, "", "lblProgressRate");
  auto* rows = new wxBoxSizer(wxVERTICAL);
  const wxSizerFlags row = wxSizerFlags().Expand().Border(wxBOTTOM, Gap(this) / 2);
  rows->Add(lblProgressText, row);
  rows->Add(prgProgress, row);
  rows->Add(lblProgressRate, row);
  SetSizer(rows);
}

void ProgressPanel::ShowText(const std::string& text) {
  const wxString shown = ToWx(text);
  if (lblProgressText->GetLabelText() != shown) lblProgressText->SetLabelText(shown);
}

void ProgressPanel::SetMaximum(int maximum) {
  rate_.Restart(maximum);
  prgProgress->SetRange(std::max(maximum, 1));
  Draw();
}

void ProgressPanel::SetValue(int value) {
  rate_.SetValue(value);
  const bool is_due = context_.session.clock.Now() - drawn_ >= kBetweenDrawings;
  if (is_due || rate_.Value() == rate_.Maximum()) Draw();
}

void ProgressPanel::ShowBar(bool shown) {
  prgProgress->Show(shown);
  lblProgressRate->Show(shown);
  Layout();
}

void ProgressPanel::Draw() {
  drawn_ = context_.session.clock.Now();
  prgProgress->SetValue(rate_.Value());
  wxString text;
  if (rate_.IsMoving()) text = wxString::Format("%d %%  ", rate_.Percent());
  text += ToWx(rate_.Text(false));
  if (lblProgressRate->GetLabelText() != text) lblProgressRate->SetLabelText(text);
}

}  // namespace zep::services
