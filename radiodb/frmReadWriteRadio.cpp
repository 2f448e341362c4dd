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

std::optional<std::string> ChooseFileToProgram(RadioDb& db) {
  Session& session = db.link.session;
  std::optional<std::string> file = session.user.AskOpenFile(
      {.title = NLSFmt(session, "Select Data File"),
       .filter = NLSFmt(session, session.strings.Get(DataFileFilter(db.identity))),
       .folder = DefaultDataFilePath(session),
       .name = services::FileTitleOf(db.data_file)});
  if (!file) return file;
  db.data_file = *file;
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
    if (!event.CanVeto()) {
      Stop();
      return;
    }
    event.Veto();
    AskAndStop();
  });
  Bind(wxEVT_INIT_DIALOG, [this](wxInitDialogEvent& event) {
    event.Skip();
    CallAfter(&frmReadWriteRadio::RunJob);  // the window is on the screen by then
  });
}

bool frmReadWriteRadio::Run(const std::function<bool(ReadWriteView&)>& job) {
  const services::JobControl::Scope scope(context_.job, [this] { Cancel(); });
  job_ = job;
  succeeded_ = false;
  ShowModal();
  services::WindowContext::Call(context_.show_status, std::string());
  return succeeded_;
}

void frmReadWriteRadio::RunJob() {
  succeeded_ = job_(*this);
  EndModal(wxID_OK);
}

// Half a database in the radio is worse than half a file on the disk.
void frmReadWriteRadio::Cancel() {
  if (context_.session.TransferMode == services::Transfer::kProgram) {
    AskAndStop();
  } else {
    Stop();
  }
}

void frmReadWriteRadio::AskAndStop() {
  if (asking_ || context_.session.Stopped()) return;
  asking_ = true;
  const bool stops = AskToCancel(context_.session);
  asking_ = false;
  if (stops) Stop();
}

void frmReadWriteRadio::Stop() {
  context_.session.RequestCancel();
  cmdCancel->Disable();
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

void ReadRadioWithWindow(wxWindow* parent, services::WindowContext& context, RadioDb& db) {
  if (context.job.IsRunning()) return;
  bool done = false;
  {
    const link::Job job(db.link);
    db.transfer_kind = TransferKind::kChosenFile;
    frmReadWriteRadio window(parent, context);
    done = window.Run([&db](ReadWriteView& view) { return ReadRadio(db, view); });
  }
  if (!done) return;
  NLSMsgBox(context.session, SavedText(db, db.data_file));
}

void ProgramRadioWithWindow(wxWindow* parent, services::WindowContext& context, RadioDb& db) {
  if (context.job.IsRunning()) return;
  const std::optional<std::string> path = ChooseFileToProgram(db);
  if (!path) return;
  // A file that cannot be read is no reason to trouble a radio.
  const tl::expected<DataFile, services::Problem> file = ReadDataFile(*path);
  if (!file) {
    Refuse(context.session, file.error());
    return;
  }
  bool done = false;
  {
    const link::Job job(db.link);
    db.transfer_kind = TransferKindOf(*file);
    frmReadWriteRadio window(parent, context);
    done = window.Run([&](ReadWriteView& view) { return ProgramRadio(db, view, *file); });
  }
  if (!done) return;
  NLSMsgBox(context.session, ProgrammedText(db, *path));
}

}  // namespace zep::radiodb
