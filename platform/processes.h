// Other programs, and what this one has used up.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/system_error.h"

namespace zep::platform {

// Starts a program that goes on by itself: it outlives this one and has no part in its terminal. A
// name without a folder is looked for where the system looks for programs.
SystemError StartProgram(const std::string& program, const std::vector<std::string>& arguments);

// Shows a web address in the user's browser. "http://" is put before an address that names no
// scheme.
SystemError OpenWebAddress(const std::string& address);

// Processor time of this process since it started, all threads together.
Duration ProcessorTime();

// The most memory that this process has had at once, in bytes; 0 when the system does not tell.
std::uint64_t PeakMemory();

}  // namespace zep::platform
