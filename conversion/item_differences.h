// Where two sets of items differ, byte by byte. Tables are compared record by record, so that
// records of another length do not make everything behind them look changed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "conversion/item_bytes.h"

namespace zep::conversion {

// Up to 16 bytes in a row that differ. before and after are hex digits; one of them is shorter, or
// empty, where its item ends earlier.
struct ItemDifference {
  int network = 1;
  std::size_t item = 0;
  std::size_t record = 0;  // of a table, from 1; 0 when the item is no table
  std::size_t byte = 0;    // the first of them, in the record or the item
  std::string before = {};
  std::string after = {};
};

// Why a conversion changes data.
struct ChangeReason {
  enum class Kind {
    kDatabaseStep,        // a step to a newer database version
    kNewDatabaseVersion,  // the version itself is recorded
    kCalibrationStep,     // a step between two calibration versions
    kChecksum,            // the checksum of the calibration data is renewed
  };
  Kind kind = Kind::kDatabaseStep;
  int from = 0;  // versions as numbers, 402 is 4.02; of the steps only
  int to = 0;

  bool operator==(const ChangeReason&) const = default;
};

struct Change {
  ItemDifference difference;
  ChangeReason reason;
};

// Appends what differs in one item. Records are that many bytes long before and after; 0: no table.
struct ItemPair {
  int network = 1;
  std::size_t item = 0;
  std::string_view before;
  std::string_view after;
  std::size_t record_bytes_before = 0;
  std::size_t record_bytes_after = 0;
};
void CompareItem(const ItemPair& pair, std::vector<ItemDifference>& differences);

// Everything that differs between two networks of these database versions (402 is 4.02).
std::vector<ItemDifference> CompareItems(int network, const ItemArray& before, int version_before,
                                         const ItemArray& after, int version_after);

}  // namespace zep::conversion
