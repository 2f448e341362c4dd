// The firmware transfer as it is watched: what the engine shows while it runs, in a window or on a
// terminal. Texts are translated already; what is known of a port are facts, of which the face
// makes its labels.
#pragma once

#include <string>
#include <string_view>

#include "firmware/flash_devices.h"
#include "link/port_set.h"

namespace zep::firmware {

// What became of the radio on a port.
enum class RadioOutcome {
  kNone,  // not known yet, or the port took no part
  kDone,
  kFailed,  // on its own, or the run did not end well
};

// "done" or "failed", untranslated; empty for kNone.
std::string_view OutcomeText(RadioOutcome outcome);

// What is known of a port and its radio in one run.
struct PortFacts {
  link::PortState state = link::PortState::kAvailable;
  bool takes_part = false;  // it was Active when the run was loaded
  bool left_out = false;    // not Active any more, or never: its labels are greyed out
  MicroType micro = MicroType::kUnknown;
  FlashDevice flash;
  RadioOutcome outcome = RadioOutcome::kNone;
};

class TransferView {
 public:
  virtual ~TransferView() = default;

  virtual void SetCaption(const std::string& caption) = 0;
  // The current phase, in the status bar.
  virtual void ShowStatus(const std::string& status) = 0;
  // The progress bar runs from 0 to maximum and starts at 0; values above maximum count as maximum.
  virtual void SetProgressMaximum(int maximum) = 0;
  virtual void SetProgress(int value) = 0;
  virtual void ShowProgress(bool shown) = 0;
  // Whether a wish to cancel is followed now, or only when this step is over.
  virtual void EnableCancel(bool enabled) = 0;
  virtual void ShowCancel(bool shown) = 0;
  virtual void ShowBootstrapHint(bool shown) = 0;
  virtual void SetPort(int port, const PortFacts& facts) = 0;
  virtual void Repaint() = 0;
};

}  // namespace zep::firmware
