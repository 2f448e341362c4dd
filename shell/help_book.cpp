#include "shell/help_book.h"

#include <utility>

#include <wx/display.h>
#include <wx/fs_zip.h>
#include <wx/html/helpctrl.h>
#include <wx/html/helpfrm.h>
#include <wx/html/helpwnd.h>
#include <wx/log.h>
#include <wx/notebook.h>
#include <wx/splitter.h>
#include <wx/sysopt.h>
#include <wx/treectrl.h>

#include "platform/files.h"
#include "services/messages.h"
#include "services/window_kit_ui.h"

namespace zep::shell {
namespace {

using services::NLSFmt;
using services::ToWx;

const wxSize kSize(900, 640);
constexpr int kTitlesWidth = 330;

std::string BookName(services::Language language) {
  return "help/zepdlca_" + std::string(LanguageCode(language)) + ".zip";
}

void AddZipFileSystem() {
  // Pages are recognised by their extension. The system's own table of types may know them as a
  // kind that the help window shows as plain text.
  wxSystemOptions::SetOption("filesys.no-mimetypesmanager", 1);
  if (!wxFileSystem::HasHandlerForPath("book.zip#zip:page.htm"))
    wxFileSystem::AddHandler(new wxZipFSHandler);
}

}  // namespace

// The toolkit's own calls to show a page make the help window modal above a dialog: the dialog and
// the job behind it would stand still until the help window is closed.
class HelpBook::Viewer final : public wxHtmlHelpController {
 public:
  explicit Viewer(const services::JobControl& job) : job_(job) {
    SetShouldPreventAppExit(false);
    SetTitleFormat("%s");
  }
  // At once: the frame uses the book's data until it has gone.
  ~Viewer() override { delete std::exchange(m_helpFrame, nullptr); }

  // The help window, opened or brought to the front.
  wxHtmlHelpWindow& Window() {
    const bool is_new = GetFrame() == nullptr;
    CreateHelpWindow();
    if (is_new) Arrange();
    return *GetHelpWindow();
  }

 private:
  wxHtmlHelpFrame* CreateHelpFrame(wxHtmlHelpData* data) override {
    wxHtmlHelpFrame* frame = wxHtmlHelpController::CreateHelpFrame(data);
    services::StandBesideDialogs(frame);
    frame->Bind(wxEVT_CHAR_HOOK, [frame](wxKeyEvent& event) {
      if (event.GetKeyCode() == WXK_ESCAPE) {
        frame->Close();
      } else {
        event.Skip();
      }
    });
    // These open dialogs, which would keep a job, and the radio, waiting.
    for (const int id :
         {wxID_HTML_PRINT, wxID_HTML_OPTIONS, wxID_HTML_SEARCHTEXT, wxID_HTML_SEARCHBUTTON})
      frame->Bind(
          wxEVT_UPDATE_UI, [this](wxUpdateUIEvent& event) { event.Enable(!job_.IsRunning()); }, id);
    return frame;
  }

  // With the titles of all pages in sight.
  void Arrange() {
    wxHtmlHelpFrame& frame = *GetFrame();
    wxSize size = frame.FromDIP(kSize);
    size.DecTo(wxDisplay(&frame).GetClientArea().GetSize());
    frame.SetSize(size);
    GetHelpWindow()->GetTreeCtrl()->ExpandAll();
    GetHelpWindow()->GetSplitterWindow()->SetSashPosition(frame.FromDIP(kTitlesWidth));
  }

  const services::JobControl& job_;
};

HelpBook::HelpBook(const services::WindowContext& context) : context_(context) {}

HelpBook::~HelpBook() = default;

void HelpBook::Reset() { viewer_.reset(); }

HelpBook::Viewer* HelpBook::OpenViewer() {
  if (viewer_) return viewer_.get();
  AddZipFileSystem();
  const wxLogNull no_boxes_of_the_toolkit;
  const services::Session& session = context_.session;
  const services::Language wanted = session.translation.GetLanguage();
  std::string book = BookName(services::Language::kEnglish);
  for (const services::Language language : {wanted, services::Language::kEnglish}) {
    const std::string path = FindApplicationFile(session.paths, BookName(language));
    if (!platform::FileExists(path)) continue;
    book = path;
    auto viewer = std::make_unique<Viewer>(context_.session.jobs);
    if (!viewer->AddBook(wxFileName(ToWx(path)), false)) continue;
    if (language != wanted)
      Tell(NLSFmt(session, "There is no help book in your language; the English one is shown."),
           services::Icon::kInformation);
    viewer_ = std::move(viewer);
    return viewer_.get();
  }
  Tell(NLSFmt(session, "The help book %0:s cannot be opened. Please reinstall this application.",
              {book}),
       services::Icon::kCritical);
  return nullptr;
}

void HelpBook::Tell(const std::string& text, services::Icon icon) const {
  if (context_.session.jobs.IsRunning()) {
    services::WindowContext::Call(context_.show_status, text);
  } else {
    NLSMsgBox(context_.session, text, {.icon = icon});
  }
}

void HelpBook::ShowPage(const std::string& page) {
  if (Viewer* viewer = OpenViewer()) viewer->Window().Display(ToWx(page));
}

void HelpBook::ShowContents() {
  if (Viewer* viewer = OpenViewer()) viewer->Window().DisplayContents();
}

void HelpBook::ShowSearch() {
  Viewer* viewer = OpenViewer();
  if (viewer == nullptr) return;
  viewer->Window().DisplayContents();
  auto* pages = dynamic_cast<wxNotebook*>(viewer->Window().FindWindow(wxID_HTML_NOTEBOOK));
  if (pages == nullptr) return;
  pages->SetSelection(pages->GetPageCount() - 1);
  viewer->Window().FindWindow(wxID_HTML_SEARCHTEXT)->SetFocus();
}

}  // namespace zep::shell
