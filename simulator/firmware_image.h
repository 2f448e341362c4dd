// Firmware images that the project makes itself: random contents with the identity marker where a
// program looks for it, and behind the marker the versions that a simulated radio reports once it
// runs the image.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "simulator/flash.h"
#include "simulator/numbers.h"

namespace zep::simulator {

// Four characters each, as "0303".
struct Versions {
  std::string firmware;
  std::string database;
  std::string calibration;

  bool operator==(const Versions&) const = default;
};

struct ImageOptions {
  std::string model_code = "51";  // two digits
  Micro micro = Micro::kE1;
  std::size_t size = kMegabit;  // bytes: one or two megabits
  Versions versions{"0336", "0405", "0103"};
};

// The same options give the same bytes on every computer.
Bytes MakeFirmwareImage(const ImageOptions& options);

// The versions that a flash or an image names; nothing when it was not made here.
std::optional<Versions> FindVersions(std::span<const std::uint8_t> image);

}  // namespace zep::simulator
