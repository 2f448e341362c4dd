#include "services/session.h"

namespace zep::services {

void Session::SetDownloadError(Failure why) {
  DownloadError = true;
  KeepCause(why);
}

void Session::RequestCancel(Failure why) {
  CancelRequested = true;
  KeepCause(why);
}

void Session::ClearFlags() {
  CancelRequested = false;
  DownloadError = false;
  failure = Failure::kNone;
}

void Session::PumpEvents() {
  user.PumpEvents();
  if (on_turn) on_turn();
}

}  // namespace zep::services
