// The radio's personality database: numbered items, each a run of bytes that is read and written in
// records.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "simulator/numbers.h"

namespace zep::simulator {

enum class ItemUse {
  kPlain,     // a fixed number of bytes, different in each network
  kCommon,    // a fixed number of bytes, the same in all networks
  kTable,     // records of equal length, up to the item's size; takes room of the dynamic database
  kReadOnly,  // listed, but only the factory writes it
  kHidden,    // as read-only, and not listed either: tells who the radio is
};

struct Item {
  ItemUse use = ItemUse::kPlain;
  std::size_t size = 0;         // bytes that it can hold
  std::size_t record_size = 0;  // bytes of data in each record when it is read
  Bytes data;
};

using Items = std::map<std::uint8_t, Item>;

struct Personality {
  std::array<Items, 4> networks;  // as many as the radio has; a conventional radio has one
  Items common;                   // items that all networks share

  // The item as the network (counted from 1) sees it, or null.
  Item* Find(int network, std::uint8_t number);
  const Item* Find(int network, std::uint8_t number) const;
  // Puts an item that all networks share in place of the own one.
  void TakeOver(const Personality& other, std::uint8_t number) {
    common[number] = other.common.at(number);
  }
  // The listed items of a network in rising order.
  Bytes List(int network) const;
  // Bytes in the tables of a network.
  std::size_t DynamicBytes(int network) const;
};

// The records of an item as the radio sends them; a single empty record for an item without data.
std::vector<std::string> RecordsOf(std::uint8_t number, const Item& item);

// The sum of all bytes but the last two, which should hold it, high byte first.
std::uint16_t CalibrationSum(const Bytes& calibration);
bool HasCalibrationSum(const Bytes& calibration);

}  // namespace zep::simulator
