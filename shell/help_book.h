// The help book in the interface language.
#pragma once

#include <memory>
#include <string>

#include "services/window_kit_ui.h"

namespace zep::shell {

class HelpBook {
 public:
  // The context outlives the book.
  explicit HelpBook(const services::WindowContext& context);
  ~HelpBook();

  void ShowPage(const std::string& page);  // "download.htm"
  void ShowContents();
  void ShowSearch();

  // The language has changed: the next call opens the new book.
  void Reset();

 private:
  class Viewer;

  // With the book in it, made when it is first wanted; null, and the user has been told, when there
  // is no book.
  Viewer* OpenViewer();
  // In a box; during a job, which a box would keep waiting, in the status bar.
  void Tell(const std::string& text, services::Icon icon) const;

  const services::WindowContext& context_;
  std::unique_ptr<Viewer> viewer_;
};

}  // namespace zep::shell
