#include "shell/help_book.h"

#include <wx/fs_zip.h>
#include <wx/html/helpfrm.h>
#include <wx/html/helpwnd.h>
#include <wx/notebook.h>
#include <wx/sysopt.h>

#include "platform/files.h"
#include "services/frmKit.h"
#include "services/messages.h"

namespace zep::shell {
namespace {

using services::NLSFmt;
using services::ToWx;

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

HelpBook::~HelpBook() { Reset(); }

void HelpBook::Reset() {
  if (controller_) controller_->Quit();
  controller_.reset();
}

std::string HelpBook::FindBook() const {
  for (const services::Language language :
       {session_.translation.GetLanguage(), services::Language::kEnglish}) {
    std::string path = FindApplicationFile(session_.paths, BookName(language));
    if (platform::FileExists(path)) return path;
  }
  return {};
}

wxHtmlHelpController* HelpBook::Controller() {
  if (controller_) return controller_.get();
  const std::string book = FindBook();
  AddZipFileSystem();
  auto controller = std::make_unique<wxHtmlHelpController>(wxHF_DEFAULT_STYLE);
  controller->SetShouldPreventAppExit(false);
  if (book.empty() || !controller->AddBook(wxFileName(ToWx(book)), false)) {
    NLSMsgBox(
        session_,
        NLSFmt(session_, "The help book %0:s cannot be opened. Please reinstall this application.",
               {book.empty() ? BookName(services::Language::kEnglish) : book}),
        {.icon = services::Icon::kCritical});
    return nullptr;
  }
  const bool is_translated = book.ends_with(BookName(session_.translation.GetLanguage()));
  if (!is_translated)
    NLSMsgBox(session_, "There is no help book in your language; the English one is shown.");
  controller->SetTitleFormat("%s");
  controller_ = std::move(controller);
  return controller_.get();
}

void HelpBook::ShowPage(const std::string& page) {
  wxHtmlHelpController* controller = Controller();
  if (controller == nullptr) return;
  const bool has_frame = controller->GetFrame() != nullptr;
  controller->Display(ToWx(page));
  if (!has_frame) services::StandBesideDialogs(controller->GetFrame());
  controller->GetFrame()->Raise();
}

void HelpBook::ShowContents() {
  if (wxHtmlHelpController* controller = Controller()) controller->DisplayContents();
}

void HelpBook::ShowSearch() {
  wxHtmlHelpController* controller = Controller();
  if (controller == nullptr) return;
  controller->DisplayContents();
  // The search page is the last one of the navigation pane.
  for (wxWindow* child : controller->GetHelpWindow()->GetChildren()) {
    for (wxWindow* pane : child->GetChildren()) {
      auto* notebook = dynamic_cast<wxNotebook*>(pane);
      if (notebook == nullptr && !pane->GetChildren().empty())
        notebook = dynamic_cast<wxNotebook*>(pane->GetChildren().GetFirst()->GetData());
      if (notebook != nullptr) notebook->SetSelection(notebook->GetPageCount() - 1);
    }
  }
}

}  // namespace zep::shell
