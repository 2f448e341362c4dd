// What the automatic and the manual upgrade have in common: being cancelled from a turn of the user
// interface, the firmware transfer in their midst, and their end.
#pragma once

#include <exception>

#include "firmware/firmware.h"
#include "firmware/transfer_engine.h"
#include "link/job.h"
#include "upgrade/upgrade_log.h"
#include "upgrade/upgrade_view.h"

namespace zep::upgrade {

// An upgrade in its job, from here to the end of the object.
class UpgradeRun final : public services::RunningJob {
 public:
  UpgradeRun(link::Job& job, UpgradeView& view)
      : job_(job), view_(view), running_(job.session.jobs, *this) {}

  // The user's wish: the running step gives up in its own way, but a firmware transfer comes to its
  // end first, for half a firmware is worse than either. Wished once more, the transfer's own
  // question is asked.
  void Cancel() override;
  void Stop() override;
  bool IsStopping() const override { return job_.IsStopping(); }

  // By Cancel() or at one of the questions of a step.
  bool IsAborted();
  // Neither aborted nor stopped by a failure.
  bool MayGoOn() { return !IsAborted() && !job_.Stopped(); }

  // Downloads the image chosen in the firmware.
  firmware::TransferResult TransferFirmware(firmware::Firmware& firmware,
                                            const firmware::TransferOptions& options);

 private:
  link::Job& job_;
  UpgradeView& view_;
  bool transferring_ = false;
  bool aborted_ = false;
  services::JobControl::Scope running_;
};

// The end of an upgrade, within its job: the radio's software starts anew, the ports are closed and
// the comms error flag is cleared.
void TidyUp(link::Job& job);
// Writes "^" to the radio's port when the radio is still in programming mode.
void ResetRadio(link::Job& job);

// "An unexpected error has occured", in the log and in a box; what it was goes into the
// application's log.
void ReportUnexpectedError(link::Job& job, UpgradeLog& log, const std::exception& error);

}  // namespace zep::upgrade
