// The port selection: which one of several Active ports, or all of them, an operation works on.
#pragma once

#include <array>

#include <wx/dialog.h>
#include <wx/radiobut.h>
#include <wx/statbox.h>

#include "link/job.h"
#include "services/window_kit_ui.h"

namespace zep::link {

struct PortSelectionOptions {
  bool takes_all_ports = false;  // the operation can work on all ports side by side
};

class frmSelectCommPort : public wxDialog {
 public:
  frmSelectCommPort(wxWindow* parent, services::WindowContext& window_context, Job& the_job,
                    const PortSelectionOptions& options);

  // Shows the window until OK; closing it otherwise cancels the operation, and the ports are as
  // they were.
  void Run();

 private:
  // The number of the choice that takes all ports; the others have those of their ports.
  static constexpr int kAllPortsChoice = 6;

  wxSizer* MakeChoices(const PortSelectionOptions& options);
  void AddChoice(int number, const std::string& label, bool enabled, wxSizer* rows);
  void Choose(int number);

  services::WindowContext& context_;
  Job& job_;

  wxStaticBox* fraSelect = nullptr;
  std::array<wxRadioButton*, kAllPortsChoice> optCommSelect{};  // by number, counted from 1
};

}  // namespace zep::link
