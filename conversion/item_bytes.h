// Items of a radio's database as text, two upper-case hex digits a byte, and the access to their
// bytes. Byte n is at characters 2n and 2n+1, counted from 0.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace zep::conversion {

// The items of one network, by item number; empty where there is none.
inline constexpr std::size_t kItemCount = 256;
using ItemArray = std::array<std::string, kItemCount>;

// The two digits of byte n; "00" when the item has no such byte.
std::string GetByteRange(std::string_view item, std::size_t byte);

// Byte n as a number, 0 to 255.
int GetByte(std::string_view item, std::size_t byte);

// Writes byte n: the digits before it, the two new ones, and those behind it. In an item that is
// shorter than n bytes the new byte becomes the last one.
void SetByte(std::string& item, std::size_t byte, std::uint8_t value);

// Copies bits of byte n from the default item. A list of one entry copies the whole byte, whichever
// bit it names; with several, these bits are set or cleared and the others stay; with none nothing
// changes. An item that has no byte n stays as it is: false. A missing byte of the default item
// counts 0.
bool CopyByte(std::string& item, std::string_view default_item, std::size_t byte,
              std::initializer_list<int> bits);

// The same for a list of one entry.
bool CopyWholeByte(std::string& item, std::string_view default_item, std::size_t byte);

// The item's records of that many bytes; what is left behind the last whole one is not among them.
std::vector<std::string> SplitMultiItem(std::string_view item, std::size_t record_bytes);

// What SplitMultiItem left behind.
std::string_view TailOfMultiItem(std::string_view item, std::size_t record_bytes);

}  // namespace zep::conversion
