// What the automatic and the manual upgrade have in common: being cancelled from a turn of the user
// interface, the firmware transfer in their midst, and their end.
#pragma once

#include <exception>

#include "firmware/firmware.h"
#include "firmware/transfer_engine.h"
#include "services/session.h"
#include "upgrade/upgrade_log.h"
#include "upgrade/upgrade_view.h"

namespace zep::upgrade {

// Whether an upgrade runs and was cancelled.
class UpgradeRun {
 public:
  explicit UpgradeRun(services::Session& session) : session_(session) {}

  // From here to the end of the object the upgrade runs, not cancelled yet.
  class Running {
   public:
    explicit Running(UpgradeRun& run) : run_(run) {
      run_.running_ = true;
      run_.aborted_ = false;
    }
    ~Running() { run_.running_ = false; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

   private:
    UpgradeRun& run_;
  };
  bool IsRunning() const { return running_; }

  // The user's wish: the running step gives up, but a firmware transfer goes on, for half a
  // firmware is worse than either. Nothing happens when no upgrade runs.
  void Cancel();
  // By Cancel() or at one of the questions of a step.
  bool IsAborted();
  // Neither aborted nor stopped by a failure.
  bool MayGoOn() { return !IsAborted() && !session_.Stopped(); }

  // Downloads the image chosen in the firmware.
  firmware::TransferResult TransferFirmware(firmware::Firmware& firmware, UpgradeView& view,
                                            const firmware::TransferOptions& options);

 private:
  services::Session& session_;
  bool running_ = false;
  bool transferring_ = false;
  bool aborted_ = false;
};

// The end of an upgrade, within its job: the radio's software starts anew, the ports are closed and
// the comms error flag is cleared.
void TidyUp(link::Link& link);
// Writes "^" to the radio's port when the radio is still in programming mode.
void ResetRadio(link::Link& link);

// "An unexpected error has occured", in the log and in a box; what it was goes into the
// application's log. session.failure is set.
void ReportUnexpectedError(services::Session& session, UpgradeLog& log,
                           const std::exception& error);

}  // namespace zep::upgrade
