// What the radio models are called.
#pragma once

#include <string>

#include "services/session.h"

namespace zep::services {

// The name of the models of a tier, 1 to 13; empty for any other number.
const std::string& AppGetRadioModel(const Session& session, int tier);

}  // namespace zep::services
