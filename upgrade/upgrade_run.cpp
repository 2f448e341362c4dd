#include "upgrade/upgrade_run.h"

#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "services/messages.h"

namespace zep::upgrade {
namespace {

using services::Failure;

// A transfer that can be seen from outside, until it has ended in whatever way.
class ShownTransfer {
 public:
  ShownTransfer(UpgradeView& view, firmware::TransferRun& run, bool& transferring)
      : view_(view), transferring_(transferring) {
    transferring_ = true;
    view_.WatchTransfer(&run);
  }
  ~ShownTransfer() {
    view_.WatchTransfer(nullptr);
    transferring_ = false;
  }
  ShownTransfer(const ShownTransfer&) = delete;
  ShownTransfer& operator=(const ShownTransfer&) = delete;

 private:
  UpgradeView& view_;
  bool& transferring_;
};

}  // namespace

void UpgradeRun::Cancel() {
  if (!running_) return;
  aborted_ = true;
  if (!transferring_) session_.RequestCancel();
}

bool UpgradeRun::IsAborted() {
  if (session_.CancelRequested && session_.failure == Failure::kCancelled) aborted_ = true;
  return aborted_;
}

firmware::TransferResult UpgradeRun::TransferFirmware(firmware::Firmware& firmware,
                                                      UpgradeView& view,
                                                      const firmware::TransferOptions& options) {
  session_.TransferMode = services::Transfer::kProgram;
  firmware::TransferRun run(firmware, view.TransferWindow(), options);
  const ShownTransfer shown(view, run, transferring_);
  return firmware::RunTransfer(run);
}

void TidyUp(link::Link& link) {
  ResetRadio(link);
  link::CloseAllComms(link);
  link.session.DownloadError = false;
}

void ResetRadio(link::Link& link) { link::ReleaseFromProgMode(link); }

void ReportUnexpectedError(services::Session& session, UpgradeLog& log,
                           const std::exception& error) {
  constexpr std::string_view kText = services::NLSText("An unexpected error has occured");
  session.KeepCause(Failure::kRefused);
  session.log.Error(error.what());
  log.Log(kText);
  services::NLSMsgBox(session, kText, {.icon = services::Icon::kCritical});
}

}  // namespace zep::upgrade
