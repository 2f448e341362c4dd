// Numbered placeholders in texts: "%0:s", "%1:s" and so on.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace zep::services {

// The text with %N:s replaced by argument N, wherever it stands. A placeholder without an argument
// stays.
std::string FillIn(std::string_view text, std::span<const std::string_view> arguments);
std::string FillIn(std::string_view text, std::span<const std::string> arguments);

}  // namespace zep::services
