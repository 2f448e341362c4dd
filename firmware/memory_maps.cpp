#include "firmware/memory_maps.h"

#include <span>
#include <string_view>

#include "services/hex_text.h"

namespace zep::firmware {
namespace {

// A row as it is written in the radio's documents: addresses in hexadecimal.
struct MapRow {
  std::int16_t bank;
  std::int32_t kind;
  std::string_view start;
  std::string_view end;
  std::string_view file_offset;
  std::int32_t blocks;
};

// Kept: rows 8 and 25 end at FFFF although their blocks reach 10000, and rows 17 and 34 name an end
// in the file rather than in the bank.
constexpr std::array<MapRow, kRowsOf2Mbit> kA1Rows = {{
    // Bank 0
    {0, 2, "0", "100", "0", 2},
    {0, 1, "100", "1000", "100", 30},
    {0, 2, "1000", "1080", "1000", 1},
    {0, 1, "1080", "5000", "1080", 127},
    {0, 2, "5000", "8000", "5000", 96},
    {0, 1, "8000", "B600", "8000", 108},
    {0, 2, "B600", "B800", "B600", 4},
    {0, 1, "B800", "FFFF", "B800", 144},
    // Bank 1
    {1, 3, "0", "100", "10000", 2},
    {1, 1, "100", "1000", "10100", 30},
    {1, 3, "1000", "1080", "11000", 1},
    {1, 1, "1080", "5000", "11080", 127},
    {1, 3, "5000", "8100", "15000", 98},
    // Bank 2
    {2, 1, "100", "1000", "18100", 30},
    {2, 3, "1000", "1080", "19000", 1},
    {2, 1, "1080", "5000", "19080", 127},
    {2, 3, "D000", "1FFFF", "1D000", 96},
    // Bank 3
    {3, 2, "0", "100", "20000", 2},
    {3, 1, "100", "1000", "20100", 30},
    {3, 2, "1000", "1080", "21000", 1},
    {3, 1, "1080", "5000", "21080", 127},
    {3, 2, "5000", "8000", "25000", 96},
    {3, 1, "8000", "B600", "28000", 108},
    {3, 2, "B600", "B800", "2B600", 4},
    {3, 1, "B800", "FFFF", "2B800", 144},
    // Bank 4
    {4, 3, "0", "100", "30000", 2},
    {4, 1, "100", "1000", "30100", 30},
    {4, 3, "1000", "1080", "31000", 1},
    {4, 1, "1080", "5000", "31080", 127},
    {4, 3, "5000", "8100", "35000", 98},
    // Bank 5
    {5, 1, "100", "1000", "38100", 30},
    {5, 3, "1000", "1080", "39000", 1},
    {5, 1, "1080", "5000", "39080", 127},
    {5, 3, "D000", "1FFFF", "3D000", 96},
}};

// What is different in radios with an E1 micro.
struct ChangedRow {
  std::size_t row;  // from 1
  MapRow entry;
};
constexpr std::array<ChangedRow, 12> kE1Changes = {{
    {1, {0, 2, "0", "200", "0", 4}},
    {2, {0, 1, "200", "1000", "200", 28}},
    {9, {1, 3, "0", "200", "10000", 4}},
    {10, {1, 1, "200", "1000", "10200", 28}},
    {13, {1, 3, "5000", "8200", "15000", 100}},
    {14, {2, 1, "200", "1000", "18200", 28}},
    {18, {3, 2, "0", "200", "20000", 4}},
    {19, {3, 1, "200", "1000", "20200", 28}},
    {26, {4, 3, "0", "200", "30000", 4}},
    {27, {4, 1, "200", "1000", "30200", 28}},
    {30, {4, 3, "5000", "8200", "35000", 100}},
    {31, {5, 1, "200", "1000", "38200", 28}},
}};

MemoryMap BuildMap(services::Session& session, const std::array<MapRow, kRowsOf2Mbit>& rows) {
  MemoryMap map;
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const MapRow& row = rows[at];
    map[at] = {.Bank = row.bank,
               .Kind = row.kind,
               .StartAddress = services::ConHexNumToLng(session, row.start),
               .EndAddress = services::ConHexNumToLng(session, row.end),
               .FileOffset = services::ConHexNumToLng(session, row.file_offset),
               .Blocks = row.blocks};
  }
  return map;
}

}  // namespace

MemoryMap BuildA1MemoryMap(services::Session& session) { return BuildMap(session, kA1Rows); }

MemoryMap BuildE1MemoryMap(services::Session& session) {
  std::array<MapRow, kRowsOf2Mbit> rows = kA1Rows;
  for (const ChangedRow& change : kE1Changes) rows[change.row - 1] = change.entry;
  return BuildMap(session, rows);
}

}  // namespace zep::firmware
