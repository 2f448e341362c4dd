#include "conversion/item_bytes.h"

#include <algorithm>

#include "services/hex_text.h"

namespace zep::conversion {

std::string GetByteRange(std::string_view item, std::size_t byte) {
  const std::size_t at = 2 * byte;
  return at + 2 <= item.size() ? std::string(item.substr(at, 2)) : "00";
}

int GetByte(std::string_view item, std::size_t byte) {
  return services::HexByte(GetByteRange(item, byte));
}

void SetByte(std::string& item, std::size_t byte, std::uint8_t value) {
  const std::size_t at = std::min(2 * byte, item.size());
  item.replace(at, std::min<std::size_t>(2, item.size() - at), services::ConBytNumToHex(value));
}

bool CopyByte(std::string& item, std::string_view default_item, std::size_t byte,
              std::initializer_list<int> bits) {
  if (item.size() < 2 * (byte + 1)) return false;
  const auto value = static_cast<unsigned>(GetByte(item, byte));
  const auto standard = static_cast<unsigned>(GetByte(default_item, byte));
  unsigned mask = 0;
  for (const int bit : bits) mask |= 1U << static_cast<unsigned>(bit);
  if (bits.size() == 1) mask = 0xFF;
  SetByte(item, byte, static_cast<std::uint8_t>((value & ~mask) | (standard & mask)));
  return true;
}

bool CopyWholeByte(std::string& item, std::string_view default_item, std::size_t byte) {
  return CopyByte(item, default_item, byte, {0});
}

std::vector<std::string> SplitMultiItem(std::string_view item, std::size_t record_bytes) {
  std::vector<std::string> records;
  records.reserve(item.size() / (2 * record_bytes));
  for (; item.size() >= 2 * record_bytes; item.remove_prefix(2 * record_bytes)) {
    records.emplace_back(item.substr(0, 2 * record_bytes));
  }
  return records;
}

std::string_view TailOfMultiItem(std::string_view item, std::size_t record_bytes) {
  return item.substr(item.size() - item.size() % (2 * record_bytes));
}

}  // namespace zep::conversion
