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
  ShownTransfer(UpgradeView& view, link::Job& job, bool& transferring)
      : view_(view), transferring_(transferring) {
    transferring_ = true;
    view_.WatchTransfer(&job);
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
  if (transferring_ && !aborted_) {
    aborted_ = true;
    view_.ShowCancelWaits();
    return;
  }
  job_.Cancel();
}

void UpgradeRun::Stop() {
  aborted_ = true;
  job_.Stop();
}

bool UpgradeRun::IsAborted() {
  if (job_.CancelRequested && job_.Ended(false).WasCancelled()) aborted_ = true;
  return aborted_;
}

firmware::TransferResult UpgradeRun::TransferFirmware(firmware::Firmware& firmware,
                                                      const firmware::TransferOptions& options) {
  firmware::TransferRun run(job_, firmware, view_.TransferWindow(), link::Transfer::kProgram,
                            options);
  const ShownTransfer shown(view_, job_, transferring_);
  return firmware::RunTransfer(run);
}

void TidyUp(link::Job& job) {
  ResetRadio(job);
  link::CloseAllComms(job.link);
  job.DownloadError = false;
}

void ResetRadio(link::Job& job) { link::ReleaseFromProgMode(job); }

void ReportUnexpectedError(link::Job& job, UpgradeLog& log, const std::exception& error) {
  constexpr std::string_view kText = services::NLSText("An unexpected error has occured");
  job.KeepCause(Failure::kRefused);
  job.session.log.Error(error.what());
  log.Log(kText);
  services::NLSMsgBox(job.session, kText, {.icon = services::Icon::kCritical});
}

}  // namespace zep::upgrade
