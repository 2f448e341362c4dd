// Data files that a conversion may rest on: sound to the last record.
#pragma once

#include <tl/expected.hpp>

#include "radiodb/data_file.h"
#include "services/problem.h"

namespace zep::conversion {

// The file, whose hex digits may be in either case, with upper-case ones; the first thing that is
// wrong with it when it is not sound.
tl::expected<radiodb::DataFile, services::Problem> CheckedData(radiodb::DataFile file);

}  // namespace zep::conversion
