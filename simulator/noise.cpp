#include "simulator/noise.h"

namespace zep::simulator {

namespace {

// The next number of the SplitMix64 sequence.
std::uint64_t NextNumber(std::uint64_t& state) {
  state += 0x9E3779B97F4A7C15U;
  std::uint64_t number = state;
  number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9U;
  number = (number ^ (number >> 27)) * 0x94D049BB133111EBU;
  return number ^ (number >> 31);
}

}  // namespace

Bytes NoiseBytes(std::uint64_t seed, std::size_t count) {
  Bytes bytes(count);
  std::uint64_t number = 0;
  std::uint8_t* byte = bytes.data();
  for (std::size_t at = 0; at < count; ++at) {
    number = at % 8 == 0 ? NextNumber(seed) : number >> 8;
    byte[at] = static_cast<std::uint8_t>(number);
  }
  return bytes;
}

std::uint64_t SeedOf(std::string_view text) {
  std::uint64_t seed = 0xCBF29CE484222325U;  // FNV-1a
  for (const char letter : text) seed = (seed ^ static_cast<std::uint8_t>(letter)) * 0x100000001B3U;
  return seed;
}

}  // namespace zep::simulator
