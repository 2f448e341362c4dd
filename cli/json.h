// Results for other programs.
#pragma once

#include <nlohmann/json.hpp>

namespace zep::cli {

// Members keep the order in which they are added.
using Json = nlohmann::ordered_json;

}  // namespace zep::cli
