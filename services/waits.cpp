#include "services/waits.h"

#include <algorithm>
#include <cmath>

namespace zep::services {
namespace {

platform::Duration Milliseconds(double seconds) {
  return std::chrono::milliseconds(std::lround(static_cast<float>(seconds) * 1000.0F));
}

}  // namespace

void WaitSeconds(Session& session, double seconds) { session.clock.Sleep(Milliseconds(seconds)); }

void WaitSecondsYielding(Session& session, double seconds) {
  const platform::Duration wait = Milliseconds(seconds);
  const platform::Duration target =
      session.clock.Now() + std::chrono::floor<std::chrono::seconds>(wait);
  do {
    session.PumpEvents();
    session.clock.Sleep(std::min<platform::Duration>(wait, std::chrono::milliseconds(100)));
  } while (session.clock.Now() < target);
}

}  // namespace zep::services
