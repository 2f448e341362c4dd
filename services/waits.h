// The two timed waits.
#pragma once

#include "services/session.h"

namespace zep::services {

// Blocks for that long; the user interface stands still. For waits well below a second.
void WaitSeconds(Session& session, double seconds);

// Waits for the whole seconds of the given time and keeps the user interface alive: turns and
// sleeps of at most 100 ms, at least one of each, so that less than a second is one sleep. Lasts at
// least its whole seconds; the protocol's pacing rests on that. Goes on when the job is stopped.
void WaitSecondsYielding(Session& session, double seconds);

}  // namespace zep::services
