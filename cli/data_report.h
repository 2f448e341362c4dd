// What a data file holds, for people and for programs.
#pragma once

#include <string>
#include <vector>

#include "cli/json.h"
#include "radiodb/data_file.h"
#include "services/session.h"
#include "services/text_layout.h"

namespace zep::cli {

enum class DataFileKind { kData, kMultiNetworkData, kCalibration };

// An item of one network: its records in the order of the file.
struct ItemSummary {
  std::string item;  // two hexadecimal digits
  int network = 1;
  int bytes = 0;                                      // of data
  std::vector<const radiodb::DataFileLine*> records;  // the damaged ones, too
};

// The items of a file, in its order; the file outlives them. Lines that are no records are left
// out.
std::vector<ItemSummary> SummariseItems(const radiodb::DataFile& file);

services::Table FileIdentityTable(const services::Session& session, const radiodb::DataFile& file);
Json FileIdentityJson(const services::Session& session, const radiodb::DataFile& file);
Json FindingsJson(const services::Session& session, const std::vector<radiodb::Finding>& findings);

// "Conventional", "Trunked", "Conventional II", translated; empty for any other type digit.
std::string FileTypeName(const services::Session& session, const radiodb::FileIdentity& identity);

}  // namespace zep::cli
