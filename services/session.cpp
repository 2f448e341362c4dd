#include "services/session.h"

namespace zep::services {

void Session::SetDownloadError(Failure why) {
  DownloadError = true;
  if (failure == Failure::kNone) failure = why;
}

void Session::RequestCancel(Failure why) {
  CancelRequested = true;
  if (failure == Failure::kNone) failure = why;
}

void Session::ClearFlags() {
  CancelRequested = false;
  DownloadError = false;
  failure = Failure::kNone;
}

void Session::PumpEvents() {
  const platform::Duration before = clock.Now();
  user.PumpEvents();
  if (on_turn) on_turn(clock.Now() - before);
}

}  // namespace zep::services
