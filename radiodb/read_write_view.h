// A database transfer as it is watched, in a window or on a terminal. Texts are translated already.
#pragma once

#include <string>

namespace zep::radiodb {

class ReadWriteView {
 public:
  virtual ~ReadWriteView() = default;

  virtual void SetCaption(const std::string& caption) = 0;
  virtual void ShowStatus(const std::string& status) = 0;
  // The progress bar runs from 0 to maximum. A value is never above the maximum set last.
  virtual void SetProgressMaximum(int maximum) = 0;
  virtual void SetProgress(int value) = 0;
};

}  // namespace zep::radiodb
