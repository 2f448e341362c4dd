#include <windows.h>

#include "platform/thread_priority.h"

namespace zep::platform {

SystemError SetThreadTimeCritical(bool time_critical) {
  const int priority = time_critical ? THREAD_PRIORITY_TIME_CRITICAL : THREAD_PRIORITY_NORMAL;
  if (SetThreadPriority(GetCurrentThread(), priority) != 0) return {};
  return LastSystemError("thread priority");
}

}  // namespace zep::platform
