#include "services/session.h"

namespace zep::services {

void Session::PumpEvents() {
  user.PumpEvents();
  if (on_turn) on_turn();
}

}  // namespace zep::services
