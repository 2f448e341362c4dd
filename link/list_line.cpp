#include "link/list_line.h"

#include <algorithm>

#include "services/hex_text.h"

namespace zep::link {
namespace {

constexpr std::size_t kLengthAt = 2;
constexpr std::size_t kDataAt = 4;

// In characters, as the length field says; 0 when the line ends before it.
std::size_t DataLength(std::string_view line) {
  if (line.size() < kDataAt) return 0;
  return 2 * static_cast<std::size_t>(services::HexByte(line.substr(kLengthAt, 2)));
}

}  // namespace

bool IsIntactListLine(std::string_view line) {
  return line.size() < kDataAt || line.size() >= kDataAt + DataLength(line);
}

std::string GetListData(std::string_view line) {
  return std::string(line.substr(std::min(kDataAt, line.size()), DataLength(line)));
}

}  // namespace zep::link
