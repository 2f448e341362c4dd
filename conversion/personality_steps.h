// How the items of a radio's personality data change from one database version to the next.
// Versions are numbers without the point: 402 is 4.02.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "conversion/item_bytes.h"
#include "conversion/remark.h"

namespace zep::conversion {

// Items with rules of their own.
inline constexpr std::size_t kConfiguration = 0;  // who the radio is, with the database version
inline constexpr std::size_t kChannels = 21;      // a table
inline constexpr std::size_t kScanGroups = 22;    // a table
inline constexpr std::size_t kDisplayTexts = 30;

// Bytes in a record of the item's table as the version has it; 0 when the item is no table.
std::size_t TableRecordBytes(std::size_t item, int version);

// What a step works on: the items of one network and, as the source of values that a newer database
// defines, the default settings. The step's remarks are added to those before.
struct ConversionData {
  ItemArray& items;
  const ItemArray& defaults;
  std::vector<Remark>& remarks;
};

// An item that does not reach as far as a step's byte stays as it is, and a byte that the default
// settings do not have counts 0; both are remarked. A table's tail behind its last whole record is
// kept, which is remarked, too.
void ConvertTo400(const ConversionData& data);
void ConvertTo402(const ConversionData& data);
void ConvertTo403(const ConversionData& data);

struct PersonalityStep {
  int version = 0;                                   // after the step
  void (*convert)(const ConversionData&) = nullptr;  // null: the data does not change
};

// In their order.
std::span<const PersonalityStep> PersonalitySteps();

// Replaces the database version in item 0 by the characters of version.
void RecordVersion(ItemArray& items, std::string_view version);

}  // namespace zep::conversion
