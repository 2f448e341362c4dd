// Files of radio data that a conversion may rest on: read, and sound to the last record.
#pragma once

#include <optional>
#include <string>

#include "radiodb/data_file_reader.h"
#include "services/session.h"

namespace zep::upgrade {

// Reads the file, its hex digits in either case, and gives upper-case ones. A file that cannot be
// read, or with anything wrong in it, is reported with the first thing that is wrong, and gives
// nothing; session.failure is set.
std::optional<radiodb::DataFile> ReadCheckedDataFile(services::Session& session,
                                                     const std::string& path);

}  // namespace zep::upgrade
