// What became of the radios on a bench, for the end of a session.
#pragma once

#include <span>
#include <string>

#include "platform/system_error.h"
#include "simulator/radio_bench.h"

namespace zep::simulator {

// A table with a row for each radio. Its last column tells whether the flash holds the image,
// unless there is none.
std::string BenchReport(const RadioBench& bench, std::span<const std::uint8_t> image);

// Writes each radio's flash into the folder, as radio1.bin and so on.
platform::SystemError SaveFlash(const RadioBench& bench, const std::string& folder);

}  // namespace zep::simulator
