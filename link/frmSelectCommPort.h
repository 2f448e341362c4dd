// The port selection: which one of several Active ports, or all of them, an operation works on.
#pragma once

#include <array>

#include <wx/dialog.h>
#include <wx/radiobut.h>

#include "link/port_set.h"
#include "services/frmKit.h"

namespace zep::link {

struct PortSelectionOptions {
  bool takes_all_ports = false;  // the operation can work on all ports side by side
};

class frmSelectCommPort : public wxDialog {
 public:
  frmSelectCommPort(wxWindow* parent, services::WindowContext& window_context, Link& shown_link,
                    const PortSelectionOptions& options);

  // Shows the window until OK; closing it otherwise cancels the operation.
  void Run();

 private:
  services::WindowContext& context_;
  Link& link_;
};

}  // namespace zep::link
