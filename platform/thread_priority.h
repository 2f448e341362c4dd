// Priority of the calling thread.
#pragma once

#include "platform/system_error.h"

namespace zep::platform {

// Puts the calling thread before all others, so that nothing delays a stream of bytes, or back to
// normal. Ordinary users may usually not do that on Linux: the error is EPERM then and nothing has
// changed.
SystemError SetThreadTimeCritical(bool time_critical);

}  // namespace zep::platform
