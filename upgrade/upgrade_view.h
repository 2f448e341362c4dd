// An upgrade as it is watched: its dialog, and the windows of the steps that it opens. Texts are
// translated already.
#pragma once

#include <string>

#include "firmware/transfer_view.h"
#include "radiodb/read_write_view.h"
#include "services/job_control.h"

namespace zep::upgrade {

class UpgradeView {
 public:
  virtual ~UpgradeView() = default;

  // txtBinaryFileName: the firmware file with its folder; empty when none is chosen.
  virtual void ShowFirmwareFile(const std::string& full_name) = 0;
  // What is being done.
  virtual void ShowStatus(const std::string& status) = 0;
  // The user has cancelled during the firmware transfer, which comes to its end first: says so, and
  // how it can be stopped at once.
  virtual void ShowCancelWaits() = 0;

  // Where reading and programming the radio's data is watched.
  virtual radiodb::ReadWriteView& ReadWriteWindow() = 0;
  // Where the firmware transfer is watched.
  virtual firmware::TransferView& TransferWindow() = 0;
  // The transfer that is about to run, which can be cancelled on its own; null when it is over.
  virtual void WatchTransfer(services::RunningJob* transfer) = 0;
};

}  // namespace zep::upgrade
