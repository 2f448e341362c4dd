// zepctl: every job of the application from a terminal.
#pragma once

#include <string>
#include <vector>

#include "cli/command_context.h"
#include "cli/exit_status.h"

namespace zep::cli {

// Runs the program with these arguments, in UTF-8 and without its own name.
ExitStatus RunZepctl(const std::vector<std::string>& arguments, Console& console,
                     const platform::Computer& computer);

}  // namespace zep::cli
