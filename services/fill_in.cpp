#include "services/fill_in.h"

#include <vector>

namespace zep::services {

std::string FillIn(std::string_view text, std::span<const std::string_view> arguments) {
  std::string filled;
  std::size_t at = 0;
  while (at < text.size()) {
    const bool is_placeholder = at + 4 <= text.size() && text[at] == '%' && text[at + 1] >= '0' &&
                                text[at + 1] <= '9' && text.compare(at + 2, 2, ":s") == 0;
    const std::size_t number =
        is_placeholder ? static_cast<std::size_t>(text[at + 1] - '0') : arguments.size();
    if (number < arguments.size()) {
      filled += arguments[number];
      at += 4;
    } else {
      filled += text[at++];
    }
  }
  return filled;
}

std::string FillIn(std::string_view text, std::span<const std::string> arguments) {
  return FillIn(text, std::vector<std::string_view>(arguments.begin(), arguments.end()));
}

}  // namespace zep::services
