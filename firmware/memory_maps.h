// Which stretches of an image go to which flash bank and address.
#pragma once

#include <array>
#include <cstdint>

namespace zep::firmware {

inline constexpr std::int32_t kBlockSize = 128;  // bytes

enum class RowKind : std::int32_t {
  kTransferred = 1,
  // Kept as two: the tools that make the maps tell them apart.
  kLeftOut = 2,
  kLeftOutToo = 3,
};

struct MemoryMapEntry {
  std::int16_t Bank = 0;  // 0 to 5
  RowKind Kind = RowKind::kLeftOut;
  std::int32_t StartAddress = 0;  // inside the bank
  std::int32_t EndAddress = 0;    // for information: the number of blocks decides
  std::int32_t FileOffset = 0;    // in bytes
  std::int32_t Blocks = 0;        // of 128 bytes
};

// The first 17 rows are the first megabit, the others repeat the layout for the second.
inline constexpr std::size_t kRowsOf1Mbit = 17;
inline constexpr std::size_t kRowsOf2Mbit = 34;
using MemoryMap = std::array<MemoryMapEntry, kRowsOf2Mbit>;

// The map of radios with an A1 micro, and that of radios with an E1 micro, whose boot area at the
// start of a bank is twice as long.
MemoryMap BuildA1MemoryMap();
MemoryMap BuildE1MemoryMap();

}  // namespace zep::firmware
