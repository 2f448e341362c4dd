// What differs between two files, or what a conversion changes, for people and for programs.
#pragma once

#include <string>
#include <vector>

#include "cli/json.h"
#include "services/session.h"
#include "services/text_layout.h"
#include "upgrade/data_file_differences.h"
#include "upgrade/item_differences.h"

namespace zep::cli {

// A line for each run of bytes: where it is, what it was, what it is, and why.
std::string ChangeText(const services::Session& session,
                       const std::vector<upgrade::Change>& changes);
Json ChangeJson(const std::vector<upgrade::Change>& changes);

// The facts first, then a line for each run of bytes that differs.
std::string DifferenceText(const services::Session& session,
                           const upgrade::DataFileDifferences& differences);
Json DifferenceJson(const upgrade::DataFileDifferences& differences);

}  // namespace zep::cli
