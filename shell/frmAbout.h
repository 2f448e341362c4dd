// The About window: what this program is and what it runs on, to be copied for whoever helps.
#pragma once

#include <string>

#include <wx/dialog.h>

#include "shell/application.h"

namespace zep::shell {

// The options that are on, a letter each: "UIH" for all three, "I"; "None", translated, for none.
std::string OptionLetters(const services::Session& session);

class frmAbout : public wxDialog {
 public:
  frmAbout(wxWindow* parent, Application& application);

 private:
  wxSizer* MakeFacts();
  void Copy();

  Application& application_;
  std::string text_;  // all that is shown, a line each
};

}  // namespace zep::shell
