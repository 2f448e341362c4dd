#include "shell/frmMDI.h"

#include <array>
#include <utility>

#include <wx/app.h>
#include <wx/display.h>
#include <wx/menu.h>
#include <wx/statusbr.h>

#include "firmware/frmDownload.h"
#include "radiodb/frmReadWriteRadio.h"
#include "services/messages.h"
#include "services/resource_ids.h"
#include "shell/frmTranscript.h"
#include "shell/icons.h"

namespace zep::shell {
namespace {

using services::NLSFmt;
using services::NLSText;
using services::ToWx;

constexpr int kFrameWidth = 860;
constexpr int kFrameHeight = 560;
constexpr int kTreePaneWidth = 190;
constexpr int kBetweenEndings = 250;  // ms
enum StatusField { kStatusText, kModeText, kLanguageText };

std::string_view ModeName(const services::Session& session) {
  return session.factory_mode ? NLSText("Factory Mode") : NLSText("Customer Mode");
}

// "English (1)"
std::string LanguageText(const Application& application) {
  const int number = application.UILanguage;
  const bool is_known = number >= 1 && number <= services::kLanguageCount;
  const std::string name =
      is_known ? NLSFmt(application.session,
                        services::Languages()[static_cast<std::size_t>(number - 1)].english) +
                     " ("
               : NLSFmt(application.session, "Unknown (");
  return name + std::to_string(number) + ")";
}

}  // namespace

frmMDI::frmMDI(Application& application)
    : wxAuiMDIParentFrame(nullptr, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                          wxDEFAULT_FRAME_STYLE | wxFRAME_NO_WINDOW_MENU, "frmMDI"),
      application_(application),
      help_(application.context),
      layout_(this) {
  wxTheApp->SetTopWindow(this);
  SetIcons(ApplicationIcons(application.session.paths));
  wxSize size = FromDIP(wxSize(kFrameWidth, kFrameHeight));
  size.DecTo(wxDisplay(this).GetClientArea().GetSize());
  SetSize(size);
  Centre();
  CreateStatusBar(3);
  const std::array widths = {-3, -1, -1};
  SetStatusWidths(static_cast<int>(widths.size()), widths.data());

  GetClientWindow()->SetWindowStyleFlag(wxAUI_NB_TOP);
  main_ = new frmMain(this, application);
  layout_.AddPane(
      main_,
      wxAuiPaneInfo().Left().CaptionVisible(false).CloseButton(false).Floatable(false).BestSize(
          FromDIP(wxSize(kTreePaneWidth, -1))));
  layout_.AddPane(GetClientWindow(), wxAuiPaneInfo().CenterPane().PaneBorder(false));
  layout_.Update();

  services::WindowContext& context = application.context;
  context.show_help = [this](const std::string& page) { help_.ShowPage(page); };
  context.show_status = [this](const std::string& status) {
    if (GetStatusBar()->GetStatusText(kStatusText) != ToWx(status))
      SetStatusText(ToWx(status), kStatusText);
  };
  context.show_transcript = [this] { ShowTranscript(); };
  context.close_task = [this] { CallAfter([this] { main_->CloseForm(); }); };
  application_.session.jobs.on_change = [this](bool running) { OnJob(running); };
  // Not before the handler of the menu that led there is over.
  application.on_language = [this] { CallAfter(&frmMDI::ShowLanguage); };
  Bind(wxEVT_CLOSE_WINDOW, &frmMDI::OnClose, this);
  Bind(wxEVT_CHAR_HOOK, &frmMDI::OnKey, this);
  timEnd.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
    if (is_ending_) {
      EndWithoutAsking();
    } else {
      Close();
    }
  });
  wxTheApp->Bind(wxEVT_QUERY_END_SESSION, &frmMDI::OnQueryEndSession, this);
  wxTheApp->Bind(wxEVT_END_SESSION, &frmMDI::OnEndSession, this);
  MDIForm_Load();
  main_->Form_Load();
  ShowModeAndLanguage();
  main_->FocusTree();
}

frmMDI::~frmMDI() {
  wxTheApp->Unbind(wxEVT_QUERY_END_SESSION, &frmMDI::OnQueryEndSession, this);
  wxTheApp->Unbind(wxEVT_END_SESSION, &frmMDI::OnEndSession, this);
  services::WindowContext& context = application_.context;
  context.show_help = nullptr;
  context.show_status = nullptr;
  context.show_transcript = nullptr;
  context.close_task = nullptr;
  application_.session.jobs.on_change = nullptr;
  application_.on_language = nullptr;
  layout_.UnInit();
}

void frmMDI::MDIForm_Load() {
  BuildMenus();
  ShowModeAndLanguage();
}

void frmMDI::ShowModeAndLanguage() {
  const services::Session& session = application_.session;
  const std::string mode = NLSFmt(session, ModeName(session));
  SetTitle(
      ToWx(NLSFmt(session, session.strings.Get(services::kResApplicationTitle)) + " - " + mode));
  // Chinese characters are higher than the font that the bar is made for.
  GetStatusBar()->SetMinHeight(GetStatusBar()->GetTextExtent(ToWx(mode)).y + services::Gap(this));
  SetStatusText(ToWx(mode), kModeText);
  SetStatusText(ToWx(LanguageText(application_)), kLanguageText);
}

void frmMDI::ShowLanguage() {
  if (application_.session.jobs.IsRunning()) {
    language_changed_ = true;  // when it has ended
    return;
  }
  help_.Reset();
  if (transcript_ != nullptr) transcript_->Close();
  BuildMenus();
  ShowModeAndLanguage();
  SetStatusText("", kStatusText);
  main_->ShowLanguage();
}

void frmMDI::Preferences() {
  application_.ShowPreferences(application_.link, application_.link.CommStates);
  // The ports may have changed.
  auto* download = dynamic_cast<firmware::frmDownload*>(main_->TaskForm());
  if (download != nullptr) download->UpdateOffers();
}

void frmMDI::Read() {
  main_->CloseForm();
  ReadRadioWithWindow(this, application_.context, application_.link, application_.radio);
}

void frmMDI::Program() {
  main_->CloseForm();
  ProgramRadioWithWindow(this, application_.context, application_.link, application_.radio);
}

void frmMDI::ReadFirmware() {
  main_->CloseForm();
  const std::string result = UploadFirmwareToChosenFile(this, application_.context,
                                                        application_.link, application_.firmware);
  if (!result.empty()) NLSMsgBox(application_.session, result);
}

void frmMDI::ChangeMode() {
  application_.session.factory_mode = !application_.session.factory_mode;
  // Not before the entry's own handler is over.
  CallAfter([this] {
    BuildMenus();
    ShowModeAndLanguage();
  });
}

void frmMDI::ShowTranscript() {
  if (transcript_ == nullptr) {
    transcript_ = new frmTranscript(this, application_);
    transcript_->Bind(wxEVT_DESTROY, [this](wxWindowDestroyEvent& event) {
      if (event.GetWindow() == transcript_) transcript_ = nullptr;
      event.Skip();
    });
  }
  transcript_->Show();
  transcript_->Raise();
}

void frmMDI::Exit() {
  const services::Answer answer =
      NLSMsgBox(application_.session, "Are you sure you wish to Exit?     ",
                {.icon = services::Icon::kQuestion, .buttons = services::Buttons::kOkCancel});
  if (answer == services::Answer::kOk) Close();
}

void frmMDI::OnJob(bool running) {
  for (wxMenuItem* entry : idle_entries_) entry->Enable(!running);
  main_->Enable(!running);
  if (running) return;
  SetStatusText("", kStatusText);
  if (std::exchange(language_changed_, false)) CallAfter(&frmMDI::ShowLanguage);
  if (close_after_job_) CallAfter([this] { Close(); });
}

// A job is never left behind: it is stopped first, and the frame closes when it has ended.
void frmMDI::OnClose(wxCloseEvent& event) {
  if (IsBeingDeleted()) return;
  services::Session& session = application_.session;
  if (event.CanVeto() && !application_.session.jobs.IsRunning() &&
      services::HasModalDialog(session)) {
    event.Veto();  // whoever has opened that goes on afterwards
    if (close_after_job_) timEnd.StartOnce(kBetweenEndings);
    return;
  }
  if (!application_.session.jobs.IsRunning()) {
    main_->CloseForm();
    Destroy();
    return;
  }
  if (event.CanVeto()) {
    event.Veto();
    if (close_after_job_) return;
    if (!AskToCancel(session)) return;
  }
  close_after_job_ = application_.session.jobs.IsRunning();
  session.jobs.Stop();
  if (!close_after_job_) CallAfter([this] { Close(); });
}

// The computer is to be shut down or the user logged out: a job holds that up.
void frmMDI::OnQueryEndSession(wxCloseEvent& event) {
  if (application_.session.jobs.IsRunning()) OnClose(event);
}

// It happens all the same: a job stops now, and its handler closes the ports.
void frmMDI::OnEndSession(wxCloseEvent& event) {
  event.Skip(false);
  EndWithoutAsking();
}

void frmMDI::EndWithoutAsking() {
  is_ending_ = true;
  application_.session.jobs.Stop();
  close_after_job_ = true;
  // What waits for an answer goes on without one. The frame may close when nobody waits above it.
  if (services::CloseModalDialog() || application_.session.jobs.IsRunning()) {
    timEnd.StartOnce(kBetweenEndings);
  } else {
    Close(true);
  }
}

void frmMDI::OnKey(wxKeyEvent& event) {
  if (event.GetKeyCode() == WXK_F6) {
    // Between the tree and the task.
    services::TaskWindow* task = main_->TaskForm();
    if (main_->HasTreeFocus() && task != nullptr) {
      task->SetFocus();
    } else {
      main_->FocusTree();
    }
  } else if (event.GetKeyCode() == WXK_ESCAPE && application_.session.jobs.IsRunning()) {
    application_.session.jobs.Cancel();  // when nothing nearer has the focus
  } else if (event.GetKeyCode() == WXK_F1 && !event.HasAnyModifiers()) {
    help_.ShowPage("main_window.htm");
  } else {
    event.Skip();
  }
}

}  // namespace zep::shell
