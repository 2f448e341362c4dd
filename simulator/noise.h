// Made-up contents: bytes that look random but are the same for the same seed on every computer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "simulator/numbers.h"

namespace zep::simulator {

Bytes NoiseBytes(std::uint64_t seed, std::size_t count);

// A seed for a text.
std::uint64_t SeedOf(std::string_view text);

}  // namespace zep::simulator
