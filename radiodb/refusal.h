// How a job on a radio's database tells that it does not go on.
#pragma once

#include <string_view>

#include "services/session.h"

namespace zep::radiodb {

// Shows the text (translated already or a text of the dictionary), keeps the cause when it is the
// first one, and returns false.
bool Refuse(services::Session& session, std::string_view text, services::Failure why);

}  // namespace zep::radiodb
