// Line by line through the texts that the program brings with it.
#pragma once

#include <string_view>

namespace zep::services {

inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Calls use(line, number) for every line of a UTF-8 text, numbered from 1. Line ends may be LF or
// CRLF; a byte-order mark at the beginning is left out.
template <typename Use>
void ForEachLine(std::string_view contents, Use use) {
  if (contents.substr(0, kByteOrderMark.size()) == kByteOrderMark)
    contents.remove_prefix(kByteOrderMark.size());
  for (int number = 1; !contents.empty(); ++number) {
    const std::size_t end = contents.find('\n');
    std::string_view line = contents.substr(0, end);
    contents.remove_prefix(end == std::string_view::npos ? contents.size() : end + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    use(line, number);
  }
}

}  // namespace zep::services
