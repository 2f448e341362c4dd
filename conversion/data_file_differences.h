// How two files of radio data differ: who they are for, then item by item.
#pragma once

#include <string>
#include <vector>

#include "conversion/item_differences.h"
#include "radiodb/data_file.h"

namespace zep::conversion {

// What is known about the radio that a file was read from, or about the file, in the order in which
// it is compared; and what each value is.
enum class FileFact {
  kContents,         // "personality" or "calibration"
  kModel,            // the model tier, a number
  kModelString,      // text
  kType,             // "conventional", of either generation, or "trunked"
  kDatabaseVersion,  // text, like the next two; empty where the file has none
  kHardwareVersion,
  kSerialNumber,
  kNetworks,    // their number
  kOtherLines,  // of a network: lines that are in no item, with commas between them
};

struct FactDifference {
  FileFact fact;
  int network = 0;  // of kOtherLines, from 1
  std::string before;
  std::string after;
};

struct DataFileDifferences {
  std::vector<FactDifference> facts;
  std::vector<ItemDifference> items;

  bool None() const { return facts.empty() && items.empty(); }
};

// REQUIRES: both files are sound.
DataFileDifferences CompareDataFiles(const radiodb::DataFile& before,
                                     const radiodb::DataFile& after);

}  // namespace zep::conversion
