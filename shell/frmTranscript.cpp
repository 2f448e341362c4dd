#include "shell/frmTranscript.h"

#include <wx/panel.h>
#include <wx/weakref.h>

#include "platform/files.h"
#include "services/messages.h"
#include "shell/icons.h"

namespace zep::shell {
namespace {

using services::Gap;
using services::MakeButton;
using services::NLSFmt;
using services::Session;
using services::ToWx;

constexpr int kRefreshMilliseconds = 500;
constexpr int kWidth = 760;
constexpr int kHeight = 420;
constexpr const char* kHelpPage = "transcript.htm";

}  // namespace

frmTranscript::frmTranscript(wxWindow* parent, Application& application)
    : wxFrame(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
              wxDEFAULT_FRAME_STYLE | wxTAB_TRAVERSAL, "frmTranscript"),
      application_(application),
      timRefresh(this) {
  const Session& session = application.session;
  const std::string title = NLSFmt(session, "Wire Transcript");
  SetTitle(ToWx(title));
  SetIcons(ApplicationIcons(session.paths));
  services::SetHelpPage(this, application.context, kHelpPage);

  auto* panel = new wxPanel(this);
  txtTranscript = services::MakeTextBox(
      panel, "txtTranscript", title,
      wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP | wxTE_RICH2 | wxTE_NOHIDESEL);
  txtTranscript->SetFont(
      wxFont(wxFontInfo(GetFont().GetFractionalPointSize()).Family(wxFONTFAMILY_TELETYPE)));
  auto* contents = new wxBoxSizer(wxVERTICAL);
  contents->Add(txtTranscript, wxSizerFlags(1).Expand().Border(wxBOTTOM, Gap(this)));
  contents->Add(MakeButtons(panel), wxSizerFlags().Expand());
  services::SetContents(panel, contents);
  SetMinClientSize(panel->GetSizer()->GetMinSize());
  SetClientSize(FromDIP(wxSize(kWidth, kHeight)));

  Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTimer(); });
  Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_ESCAPE) {
      Close();
    } else {
      event.Skip();
    }
  });
  services::StandBesideDialogs(this);
  Refresh();
  timRefresh.Start(kRefreshMilliseconds);
}

wxSizer* frmTranscript::MakeButtons(wxWindow* panel) {
  const Session& session = application_.session;
  auto* rows = new wxBoxSizer(wxVERTICAL);
  auto* status = new wxBoxSizer(wxHORIZONTAL);
  chkFollow = services::MakeCheckBox(panel, NLSFmt(session, "&Follow the end"), "chkFollow");
  chkFollow->SetValue(true);
  lblStatus = services::MakeLabel(panel, "", "lblStatus");
  status->Add(chkFollow, wxSizerFlags().Border(wxRIGHT, 2 * Gap(this)));
  status->Add(lblStatus, wxSizerFlags(1).CentreVertical());
  rows->Add(status, wxSizerFlags().Expand().Border(wxBOTTOM, Gap(this)));

  wxButton* copy = MakeButton(panel, NLSFmt(session, "&Copy"), "cmdCopy", [this] { Copy(); });
  cmdSave = MakeButton(panel, NLSFmt(session, "&Save..."), "cmdSave", [this] { Save(); });
  wxButton* clear = MakeButton(panel, NLSFmt(session, "C&lear"), "cmdClear", [this] { Clear(); });
  wxButton* close = MakeButton(panel, NLSFmt(session, "Cl&ose"), "cmdClose", [this] { Close(); });
  wxButton* help = services::MakeHelpButton(panel, application_.context, kHelpPage);
  rows->Add(services::ButtonRow(panel, {copy, cmdSave, clear, close, help}),
            wxSizerFlags().Expand());
  close->SetDefault();
  return rows;
}

void frmTranscript::OnTimer() {
  // A file dialog would keep the job, and the radio, waiting.
  cmdSave->Enable(!application_.session.jobs.IsRunning());
  if (chkFollow->GetValue() && !txtTranscript->HasSelection()) Refresh();
}

void frmTranscript::Refresh() {
  const WireLog& log = application_.wire_log;
  if (log.Version() == version_) return;
  version_ = log.Version();
  if (log.First() >= shown_end_) {
    txtTranscript->ChangeValue(ToWx(log.Text()));
    txtTranscript->SetInsertionPointEnd();
  } else {
    txtTranscript->AppendText(ToWx(log.TextFrom(shown_end_)));
    DropOldLines(log.First() - shown_first_);
  }
  shown_first_ = log.First();
  shown_end_ = log.End();
}

// Building the text anew would take much longer.
void frmTranscript::DropOldLines(std::uint64_t bytes) {
  if (bytes == 0) return;
  // So many characters are at least so many bytes.
  const auto count = static_cast<std::size_t>(bytes);
  const std::string start = services::FromWx(txtTranscript->GetRange(0, static_cast<long>(count)));
  txtTranscript->Remove(0, static_cast<long>(ToWx(start.substr(0, count)).length()));
}

void frmTranscript::Copy() {
  const bool copied = services::CopyText(application_.wire_log.Text());
  lblStatus->SetLabelText(
      ToWx(copied ? NLSFmt(application_.session, "Copied.")
                  : NLSFmt(application_.session, "The clipboard cannot be used.")));
}

void frmTranscript::Save() {
  Application& application = application_;
  Session& session = application.session;
  if (application.session.jobs.IsRunning()) return;
  // This window can be closed while the dialogs are open.
  const wxWeakRef<frmTranscript> window(this);
  const auto file =
      session.user.AskSaveFile({.title = NLSFmt(session, "Save Wire Transcript"),
                                .filter = NLSFmt(session, "Text Files (*.txt)|*.txt|All Files|*.*"),
                                .folder = session.paths.application_folder,
                                .name = "transcript.txt"});
  if (!file || !MayWriteFile(session, *file)) return;
  if (const auto error = platform::WriteWholeFile(*file, application.wire_log.Text())) {
    ReportError(session, error, "cmdSave");
  } else if (window) {
    lblStatus->SetLabelText(ToWx(NLSFmt(session, "Saved as %0:s.", {*file})));
  }
}

void frmTranscript::Clear() {
  application_.wire_log.Clear();
  lblStatus->SetLabelText("");
  Refresh();
}

}  // namespace zep::shell
