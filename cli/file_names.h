// Names of files as they are typed.
#pragma once

#include <string>

namespace zep::cli {

// The full name of a file that is named from the current folder; empty for an empty name.
std::string AbsoluteName(const std::string& name);

}  // namespace zep::cli
