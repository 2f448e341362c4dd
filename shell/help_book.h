// The help book in the interface language.
#pragma once

#include <memory>
#include <string>

#include <wx/html/helpctrl.h>

#include "services/session.h"

namespace zep::shell {

class HelpBook {
 public:
  // The session outlives the book.
  explicit HelpBook(services::Session& session) : session_(session) {}
  ~HelpBook();

  void ShowPage(const std::string& page);  // "download.htm"
  void ShowContents();
  void ShowSearch();

  // The language has changed: the next call opens the new book.
  void Reset();

 private:
  // The help window, made and filled when it is first wanted; null, and the user has been told,
  // when there is no book.
  wxHtmlHelpController* Controller();
  // The book of the interface language, else the English one; empty when there is none.
  std::string FindBook() const;

  services::Session& session_;
  std::unique_ptr<wxHtmlHelpController> controller_;
};

}  // namespace zep::shell
