// The window that stays open while a radio's data is read or programmed: what is being done, how
// far it is, and Cancel.
#pragma once

#include <functional>
#include <string>

#include <wx/button.h>
#include <wx/dialog.h>

#include "radiodb/radio_db.h"
#include "radiodb/read_write_view.h"
#include "services/progress_panel_ui.h"
#include "services/window_kit_ui.h"

namespace zep::radiodb {

class frmReadWriteRadio : public wxDialog, public ReadWriteView {
 public:
  frmReadWriteRadio(wxWindow* parent, services::WindowContext& window_context);

  // Shows the window, runs a step of the caller's job in it, closes it and returns how the step
  // ended. Cancel and closing the window cancel the job.
  services::Outcome Run(const std::function<services::Outcome(ReadWriteView&)>& job);

  void SetCaption(const std::string& caption) override;
  void ShowStatus(const std::string& status) override;
  void SetProgressMaximum(int maximum) override;
  void SetProgress(int value) override;

 private:
  void RunJob();
  void Cancel();

  services::WindowContext& context_;
  std::function<services::Outcome(ReadWriteView&)> job_;
  services::Outcome outcome_;

  services::ProgressPanel* pnlProgress = nullptr;
  wxButton* cmdCancel = nullptr;
};

// The menu entry "Read": reads a radio into a data file that the user chooses, and tells where the
// data is. Does nothing while a job runs.
void ReadRadioWithWindow(wxWindow* parent, services::WindowContext& context, link::Link& link,
                         LastRadio& radio);

// The menu entry "Program": has the user choose a data file or a calibration file, programs the
// radio with it and tells so. Does nothing while a job runs.
void ProgramRadioWithWindow(wxWindow* parent, services::WindowContext& context, link::Link& link,
                            LastRadio& radio);

}  // namespace zep::radiodb
