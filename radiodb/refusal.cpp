#include "radiodb/refusal.h"

#include "services/messages.h"

namespace zep::radiodb {

bool Refuse(services::Session& session, std::string_view text, services::Failure why) {
  NLSMsgBox(session, text, {.icon = services::Icon::kCritical});
  if (session.failure == services::Failure::kNone) session.failure = why;
  return false;
}

}  // namespace zep::radiodb
