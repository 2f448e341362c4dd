// The firmware transfer as it is watched: what the engine shows while it runs, in a window or on a
// terminal. Texts are translated already.
#pragma once

#include <string>

namespace zep::firmware {

// The labels of one port slot. Empty texts show nothing.
struct SlotLabels {
  std::string status;   // the port's state
  std::string micro;    // "A1" or "E1"
  std::string flash;    // the flash device's name
  std::string outcome;  // empty until it is known
  bool enabled = true;
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
  // While Cancel is disabled the user's wish to cancel is kept until it is enabled again.
  virtual void EnableCancel(bool enabled) = 0;
  virtual void ShowCancel(bool shown) = 0;
  virtual void ShowBootstrapHint(bool shown) = 0;
  virtual void SetSlot(int slot, const SlotLabels& labels) = 0;
  virtual void Repaint() = 0;
};

}  // namespace zep::firmware
