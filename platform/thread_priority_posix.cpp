#include <sched.h>

#include "platform/thread_priority.h"

namespace zep::platform {

SystemError SetThreadTimeCritical(bool time_critical) {
  // Under Linux "process 0" is the calling thread. Programs that it starts go back to normal.
  const int policy = (time_critical ? SCHED_FIFO : SCHED_OTHER) | SCHED_RESET_ON_FORK;
  sched_param priority{};
  priority.sched_priority = time_critical ? sched_get_priority_min(SCHED_FIFO) : 0;
  if (sched_setscheduler(0, policy, &priority) == 0) return {};
  return LastSystemError("thread priority");
}

}  // namespace zep::platform
