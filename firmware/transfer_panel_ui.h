// A firmware transfer as it is watched in a window: a row for each of the four ports, what the user
// has to do at the radios, and how far it is.
#pragma once

#include <array>
#include <functional>
#include <string>

#include <wx/panel.h>
#include <wx/stattext.h>

#include "firmware/transfer_engine.h"
#include "firmware/transfer_view.h"
#include "services/progress_panel_ui.h"
#include "services/window_kit_ui.h"

namespace zep::firmware {

class TransferPanel final : public wxPanel, public TransferView {
 public:
  TransferPanel(wxWindow* parent, const services::WindowContext& window_context,
                const link::Link& shown_link);

  // What the window around the panel does for it; each may be empty.
  std::function<void(const std::string& caption)> on_caption;
  std::function<void(const std::string& status)> on_status;  // "Status: " and the phase
  std::function<void(bool enabled)> on_cancel_enabled;       // its Cancel button
  std::function<void(bool shown)> on_cancel_shown;

  // A new run begins: rows without what was known of earlier radios.
  void Clear();
  // A line above the progress bar.
  void ShowText(const std::string& text) { pnlProgress->ShowText(text); }

  void SetCaption(const std::string& caption) override;
  void ShowStatus(const std::string& status) override;
  void SetProgressMaximum(int maximum) override;
  void SetProgress(int value) override;
  void ShowProgress(bool shown) override;
  void EnableCancel(bool enabled) override;
  void ShowCancel(bool shown) override;
  void ShowBootstrapHint(bool shown) override;
  void SetPort(int port, const PortFacts& facts) override;
  void Repaint() override;

 private:
  struct Row {
    wxStaticText* lblPort = nullptr;
    wxStaticText* lblDevice = nullptr;
    wxStaticText* lblMicro = nullptr;
    wxStaticText* lblFlash = nullptr;
    wxStaticText* lblStatus = nullptr;
    wxStaticText* lblOutcome = nullptr;
  };

  wxSizer* MakeRows();
  Row MakeRow(int port);

  const services::WindowContext& context_;
  const link::Link& link_;

  std::array<Row, link::kPortCount> rows_{};
  wxStaticText* lblBootstrapHint = nullptr;
  wxString hint_;  // its text while it is to be seen
  services::ProgressPanel* pnlProgress = nullptr;
};

}  // namespace zep::firmware
