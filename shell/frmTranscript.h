// The wire transcript: what goes over the wires, as it happens, to be read, copied and saved.
#pragma once

#include <cstdint>

#include <wx/frame.h>
#include <wx/timer.h>

#include "shell/application.h"

namespace zep::shell {

class frmTranscript : public wxFrame {
 public:
  frmTranscript(wxWindow* parent, Application& application);

 private:
  wxSizer* MakeButtons(wxWindow* panel);

  // Shows what is new, twice a second. The text stands still while the user reads or marks it.
  void OnTimer();
  void Refresh();
  void DropOldLines(std::uint64_t bytes);

  void Copy();
  void Save();
  void Clear();

  Application& application_;
  std::uint64_t version_ = 0;      // of the log, as it is shown
  std::uint64_t shown_first_ = 0;  // the part of the log that is shown
  std::uint64_t shown_end_ = 0;
  wxTimer timRefresh;

  wxTextCtrl* txtTranscript = nullptr;
  wxCheckBox* chkFollow = nullptr;
  wxStaticText* lblStatus = nullptr;
  wxButton* cmdSave = nullptr;
};

}  // namespace zep::shell
