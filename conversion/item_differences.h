// Where two sets of items differ, byte by byte. Tables are compared record by record, so that
// records of another length do not make everything behind them look changed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "upgrade/item_bytes.h"

namespace zep::upgrade {

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

// A change that a conversion makes, and why: words for the user.
struct Change {
  ItemDifference difference;
  std::string reason;
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

}  // namespace zep::upgrade
