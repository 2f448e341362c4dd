// The engine's window: firmware goes into the radios on all Active ports, or out of one radio. It
// shows each port, the phase and how far it is, and Cancel, which asks first.
#pragma once

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/statusbr.h>
#include <wx/timer.h>

#include "firmware/transfer_engine.h"
#include "firmware/transfer_panel_ui.h"
#include "services/window_kit_ui.h"

namespace zep::firmware {

class frmWriteSWToRadio : public wxDialog {
 public:
  frmWriteSWToRadio(wxWindow* parent, services::WindowContext& window_context,
                    const link::Link& link);

  // One run; the window closes at its end. Closing it earlier is Cancel. When the ports cannot be
  // opened it is not shown at all.
  TransferResult Run(link::Job& job, Firmware& firmware, link::Transfer direction,
                     const TransferOptions& options = {});

 private:
  void WriteSW();
  void Cancel();

  services::WindowContext& context_;
  TransferRun* run_ = nullptr;

  wxTimer timActivateWriteSW;
  TransferPanel* pnlTransfer = nullptr;
  wxButton* cmdCancel = nullptr;
  wxStatusBar* stbStatus = nullptr;
};

}  // namespace zep::firmware
