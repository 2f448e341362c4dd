// What keeps a procedure from doing its work, as a value for its caller, who tells the user of it.
#pragma once

#include <string_view>
#include <vector>

#include "platform/system_error.h"
#include "services/outcome.h"
#include "services/text.h"

namespace zep::services {

struct Problem {
  Failure why = Failure::kFile;
  std::vector<Text> lines = {};  // what the user is told, a line each

  // Or the error of a file, told by the common error reporter, and the procedure that met it.
  platform::SystemError error = {};
  std::string_view procedure = {};
};

}  // namespace zep::services
