// How two files of radio data differ: who they are for, then item by item.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "services/session.h"
#include "upgrade/item_differences.h"

namespace zep::upgrade {

// A fact about the radio that a file was read from, or about the file.
struct FactDifference {
  std::string name;  // translated
  std::string before;
  std::string after;
};

struct DataFileDifferences {
  std::vector<FactDifference> facts;
  std::vector<ItemDifference> items;

  bool None() const { return facts.empty() && items.empty(); }
};

// Nothing, after a report, when one of the files cannot be read or is not sound.
std::optional<DataFileDifferences> CompareDataFiles(services::Session& session,
                                                    const std::string& before,
                                                    const std::string& after);

}  // namespace zep::upgrade
