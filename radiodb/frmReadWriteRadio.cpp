#include "radiodb/frmReadWriteRadio.h"

#include <optional>

#include "link/transcript_button_ui.h"
#include "radiodb/data_files.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"
#include "services/resource_ids.h"

namespace zep::radiodb {
namespace {

using services::NLSFmt;
using services::Session;

// Multi-network files are offered unless the radio read last can have one network only.
int DataFileFilter(const RadioIdentity& identity) {
  const bool may_be_several = identity.model_string.empty() || identity.IsTrunked();
  return may_be_several ? services::kResAnyDataFileFilter : services::kResDataFileFilter;
}

std::optional<std::string> ChooseFileToProgram(Session& session, LastRadio& radio) {
  std::optional<std::string> file = session.user.AskOpenFile(
      {.title = NLSFmt(session, "Select Data File"),
       .filter = NLSFmt(session, session.strings.Get(DataFileFilter(radio.identity))),
       .folder = DefaultDataFilePath(session),
       .name = services::FileTitleOf(radio.data_file)});
  if (!file) return file;
  radio.data_file = *file;
  SaveDefaultDataFilePath(session, *file);
  return file;
}

}  // namespace

frmReadWriteRadio::frmReadWriteRadio(wxWindow* parent, services::WindowContext& window_context)
    : wxDialog(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE,
               "frmReadWriteRadio"),
      context_(window_context) {
  pnlProgress = new services::ProgressPanel(this, context_);
  wxButton* transcript = link::MakeTranscriptButton(this, context_);
  cmdCancel = services::MakeButton(
      this, NLSFmt(context_.session, "&Cancel"), "cmdCancel", [this] { Cancel(); }, wxID_CANCEL);
  SetEscapeId(wxID_CANCEL);
  services::SetHelpPage(this, context_, "read_write.htm");

  const int margin = 2 * services::Gap(this);
  auto* rows = new wxBoxSizer(wxVERTICAL);
  rows->Add(pnlProgress, wxSizerFlags(1).Expand().Border(wxALL, margin));
  rows->Add(services::ButtonRow(this, {transcript, cmdCancel}),
            wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
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
  Bind(wxEVT_INIT_DIALOG, [this](wxInitDialogEvent& event) {
    event.Skip();
    CallAfter(&frmReadWriteRadio::RunJob);  // the window is on the screen by then
  });
}

services::Outcome frmReadWriteRadio::Run(
    const std::function<services::Outcome(ReadWriteView&)>& job) {
  job_ = job;
  ShowModal();
  services::WindowContext::Call(context_.show_status, std::string());
  return outcome_;
}

void frmReadWriteRadio::RunJob() {
  outcome_ = job_(*this);
  EndModal(wxID_OK);
}

void frmReadWriteRadio::Cancel() {
  context_.session.jobs.Cancel();
  if (context_.session.jobs.IsStopping()) cmdCancel->Disable();
}

void frmReadWriteRadio::SetCaption(const std::string& caption) {
  SetTitle(services::ToWx(caption));
  pnlProgress->ShowText(caption);
}

void frmReadWriteRadio::ShowStatus(const std::string& status) {
  pnlProgress->ShowText(status);
  services::WindowContext::Call(context_.show_status, status);
}

void frmReadWriteRadio::SetProgressMaximum(int maximum) { pnlProgress->SetMaximum(maximum); }

void frmReadWriteRadio::SetProgress(int value) { pnlProgress->SetValue(value); }

void ReadRadioWithWindow(wxWindow* parent, services::WindowContext& context, link::Link& link,
                         LastRadio& radio) {
  if (context.session.jobs.IsRunning()) return;
  std::string done;
  {
    link::Job job(link);
    RadioDb db(job, radio);
    frmReadWriteRadio window(parent, context);
    if (window.Run([&db](ReadWriteView& view) { return ReadRadio(db, view); }).Done())
      done = SavedText(db, db.data_file);
  }
  if (!done.empty()) NLSMsgBox(context.session, done);
}

void ProgramRadioWithWindow(wxWindow* parent, services::WindowContext& context, link::Link& link,
                            LastRadio& radio) {
  if (context.session.jobs.IsRunning()) return;
  const std::optional<std::string> path = ChooseFileToProgram(context.session, radio);
  if (!path) return;
  // A file that cannot be read is no reason to trouble a radio.
  const tl::expected<DataFile, services::Problem> file = ReadDataFile(*path);
  if (!file) {
    TellRefusal(context.session, file.error());
    return;
  }
  std::string done;
  {
    link::Job job(link);
    RadioDb db(job, radio);
    db.transfer_kind = TransferKindOf(*file);
    frmReadWriteRadio window(parent, context);
    if (window.Run([&](ReadWriteView& view) { return ProgramRadio(db, view, *file); }).Done())
      done = ProgrammedText(db, *path);
  }
  if (!done.empty()) NLSMsgBox(context.session, done);
}

}  // namespace zep::radiodb
