// What differs between two files, or what a conversion changes, for people and for programs.
#pragma once

#include <string>
#include <vector>

#include "cli/json.h"
#include "conversion/data_file_differences.h"
#include "conversion/item_differences.h"
#include "services/session.h"
#include "services/text_layout.h"

namespace zep::cli {

// A line for each run of bytes: where it is, what it was, what it is, and why.
std::string ChangeText(const services::Session& session,
                       const std::vector<conversion::Change>& changes);
// Facts and reasons in JSON are English whatever the language.
Json ChangeJson(const std::vector<conversion::Change>& changes);

// The facts first, then a line for each run of bytes that differs.
std::string DifferenceText(const services::Session& session,
                           const conversion::DataFileDifferences& differences);
Json DifferenceJson(const services::Session& session,
                    const conversion::DataFileDifferences& differences);

}  // namespace zep::cli
