// Which operating system and processor this is.
#pragma once

#include <string>

#include "platform/system_error.h"

namespace zep::platform {

// The family of an operating system, in the numbers by which Windows tells it.
enum class SystemFamily { kWindows32s = 0, kWindows95 = 1, kWindowsNt = 2, kOther = -1 };

struct SystemVersion {
  SystemFamily family = SystemFamily::kOther;
  std::string description;   // for people: "Linux 6.1.0 (x86_64)", "Windows 10.0.19045"
  int processor_type = 586;  // 386, 486 or 586, which stands for all that came later
  SystemError error;         // number 0 unless the system does not tell
};

SystemVersion GetSystemVersion();

}  // namespace zep::platform
