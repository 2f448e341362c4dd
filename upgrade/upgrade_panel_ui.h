// What both upgrade windows show while an upgrade runs: the firmware file, each step as it comes,
// and the progress of the step. The steps can be copied.
#pragma once

#include <functional>
#include <string>

#include <wx/panel.h>
#include <wx/textctrl.h>

#include "firmware/transfer_panel_ui.h"
#include "services/progress_panel_ui.h"
#include "upgrade/upgrade_view.h"

namespace zep::upgrade {

class UpgradePanel : public wxPanel, public UpgradeView {
 public:
  // With on_browse there is a button beside the firmware file.
  UpgradePanel(wxWindow* parent, services::WindowContext& window_context, const link::Link& link,
               std::function<void()> on_browse = {});

  // The button beside the firmware file; null when there is none.
  wxButton* BrowseButton() const { return cmdBrowseBinary; }

  // A new run begins: the steps of the last one are cleared.
  void Begin();
  // The run is over; how it ended is the last of the steps.
  void End(const std::string& result);

  // Told when the download's rows are shown and when they go, for the window to make room.
  std::function<void(bool shown)> on_transfer_shown;

  void ShowFirmwareFile(const std::string& full_name) override;
  void ShowStatus(const std::string& status) override;
  void ShowCancelWaits() override;
  radiodb::ReadWriteView& ReadWriteWindow() override;
  firmware::TransferView& TransferWindow() override;
  void WatchTransfer(services::RunningJob* transfer) override;

 private:
  // Reading and programming, shown by the progress bar.
  class ReadWriteProgress final : public radiodb::ReadWriteView {
   public:
    ReadWriteProgress(services::ProgressPanel& bar, const services::WindowContext& window_context)
        : bar_(bar), context_(window_context) {}

    void SetCaption(const std::string& caption) override { bar_.ShowText(caption); }
    void ShowStatus(const std::string& status) override;
    void SetProgressMaximum(int maximum) override { bar_.SetMaximum(maximum); }
    void SetProgress(int value) override { bar_.SetValue(value); }

   private:
    services::ProgressPanel& bar_;
    const services::WindowContext& context_;
  };

  // Shows one of the two, or neither, and makes room for it.
  void ShowStep(const wxWindow* step);

  services::WindowContext& context_;
  services::RunningJob* transfer_ = nullptr;

  wxTextCtrl* txtBinaryFileName = nullptr;
  wxButton* cmdBrowseBinary = nullptr;
  wxTextCtrl* txtUpgradeSteps = nullptr;
  services::ProgressPanel* pnlProgress = nullptr;
  ReadWriteProgress read_write_;
  firmware::TransferPanel* pnlTransfer = nullptr;
  wxButton* cmdStopDownload = nullptr;
};

}  // namespace zep::upgrade
