#include "firmware/memory_maps.h"

namespace zep::firmware {
namespace {

constexpr RowKind kSent = RowKind::kTransferred;
constexpr RowKind kLeft = RowKind::kLeftOut;
constexpr RowKind kLeft3 = RowKind::kLeftOutToo;

// Kept: rows 8 and 25 end at FFFF although their blocks reach 10000, and rows 17 and 34 name an end
// in the file rather than in the bank.
constexpr MemoryMap kA1Rows = {{
    // Bank 0
    {0, kLeft, 0, 0x100, 0, 2},
    {0, kSent, 0x100, 0x1000, 0x100, 30},
    {0, kLeft, 0x1000, 0x1080, 0x1000, 1},
    {0, kSent, 0x1080, 0x5000, 0x1080, 127},
    {0, kLeft, 0x5000, 0x8000, 0x5000, 96},
    {0, kSent, 0x8000, 0xB600, 0x8000, 108},
    {0, kLeft, 0xB600, 0xB800, 0xB600, 4},
    {0, kSent, 0xB800, 0xFFFF, 0xB800, 144},
    // Bank 1
    {1, kLeft3, 0, 0x100, 0x10000, 2},
    {1, kSent, 0x100, 0x1000, 0x10100, 30},
    {1, kLeft3, 0x1000, 0x1080, 0x11000, 1},
    {1, kSent, 0x1080, 0x5000, 0x11080, 127},
    {1, kLeft3, 0x5000, 0x8100, 0x15000, 98},
    // Bank 2
    {2, kSent, 0x100, 0x1000, 0x18100, 30},
    {2, kLeft3, 0x1000, 0x1080, 0x19000, 1},
    {2, kSent, 0x1080, 0x5000, 0x19080, 127},
    {2, kLeft3, 0xD000, 0x1FFFF, 0x1D000, 96},
    // Bank 3
    {3, kLeft, 0, 0x100, 0x20000, 2},
    {3, kSent, 0x100, 0x1000, 0x20100, 30},
    {3, kLeft, 0x1000, 0x1080, 0x21000, 1},
    {3, kSent, 0x1080, 0x5000, 0x21080, 127},
    {3, kLeft, 0x5000, 0x8000, 0x25000, 96},
    {3, kSent, 0x8000, 0xB600, 0x28000, 108},
    {3, kLeft, 0xB600, 0xB800, 0x2B600, 4},
    {3, kSent, 0xB800, 0xFFFF, 0x2B800, 144},
    // Bank 4
    {4, kLeft3, 0, 0x100, 0x30000, 2},
    {4, kSent, 0x100, 0x1000, 0x30100, 30},
    {4, kLeft3, 0x1000, 0x1080, 0x31000, 1},
    {4, kSent, 0x1080, 0x5000, 0x31080, 127},
    {4, kLeft3, 0x5000, 0x8100, 0x35000, 98},
    // Bank 5
    {5, kSent, 0x100, 0x1000, 0x38100, 30},
    {5, kLeft3, 0x1000, 0x1080, 0x39000, 1},
    {5, kSent, 0x1080, 0x5000, 0x39080, 127},
    {5, kLeft3, 0xD000, 0x1FFFF, 0x3D000, 96},
}};

// What is different in radios with an E1 micro.
struct ChangedRow {
  std::size_t row = 0;  // from 1
  MemoryMapEntry entry;
};
constexpr std::array<ChangedRow, 12> kE1Changes = {{
    {1, {0, kLeft, 0, 0x200, 0, 4}},
    {2, {0, kSent, 0x200, 0x1000, 0x200, 28}},
    {9, {1, kLeft3, 0, 0x200, 0x10000, 4}},
    {10, {1, kSent, 0x200, 0x1000, 0x10200, 28}},
    {13, {1, kLeft3, 0x5000, 0x8200, 0x15000, 100}},
    {14, {2, kSent, 0x200, 0x1000, 0x18200, 28}},
    {18, {3, kLeft, 0, 0x200, 0x20000, 4}},
    {19, {3, kSent, 0x200, 0x1000, 0x20200, 28}},
    {26, {4, kLeft3, 0, 0x200, 0x30000, 4}},
    {27, {4, kSent, 0x200, 0x1000, 0x30200, 28}},
    {30, {4, kLeft3, 0x5000, 0x8200, 0x35000, 100}},
    {31, {5, kSent, 0x200, 0x1000, 0x38200, 28}},
}};

}  // namespace

MemoryMap BuildA1MemoryMap() { return kA1Rows; }

MemoryMap BuildE1MemoryMap() {
  MemoryMap map = kA1Rows;
  for (const ChangedRow& change : kE1Changes) map[change.row - 1] = change.entry;
  return map;
}

}  // namespace zep::firmware
