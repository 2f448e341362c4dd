// Personality data brought from its database version to the one that a radio has now, with values
// that the newer database defines taken from default settings. Versions are numbers: 402 is 4.02.
#pragma once

#include <string>
#include <vector>

#include "conversion/item_differences.h"
#include "conversion/personality_data.h"
#include "conversion/remark.h"

namespace zep::conversion {

// The oldest and the newest database version that data can be converted to.
inline constexpr int kOldestDatabase = 205;
inline constexpr int kNewestDatabase = 405;

struct DatabaseConversion {
  int old_version;
  int new_version;
  std::string version_text;  // of the new one, as a radio reports it: four characters, "0402"
  const ItemArray& defaults;
  bool collect_changes = false;
};

struct DatabaseResult {
  int version;  // that the steps have led to
  std::vector<Remark> remarks;
  std::vector<Change> changes;  // when they are collected
};

// Takes the data through the steps from one version to the other and records the new one in its
// item 0.
DatabaseResult ConvertDatabase(const DatabaseConversion& conversion, PersonalityData& data);

}  // namespace zep::conversion
