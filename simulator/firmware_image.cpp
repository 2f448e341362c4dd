#include "simulator/firmware_image.h"

#include <algorithm>

#include "simulator/noise.h"

namespace zep::simulator {

namespace {

constexpr std::string_view kMarker = "ZEP-xx";
// Inside the window that programs search (0x7FFF to 0xFFFE) and inside an area that a download
// writes.
constexpr std::size_t kMarkerOffset = 0x8010;
// From the marker: the model code, a spare byte, then the versions.
constexpr std::size_t kVersionsOffset = 9;
constexpr std::size_t kVersionsLength = 14;  // "0303,0402,0103"

// An E1 image has nothing here; an A1 image has code.
constexpr std::size_t kMicroAreaOffset = 0xFF;
constexpr std::size_t kMicroAreaLength = 128;

}  // namespace

Bytes MakeFirmwareImage(const ImageOptions& options) {
  const Versions& versions = options.versions;
  const std::string identity = std::string(kMarker) + options.model_code + " " + versions.firmware +
                               "," + versions.database + "," + versions.calibration;
  const std::string_view micro = options.micro == Micro::kA1 ? "A1" : "E1";
  Bytes image = NoiseBytes(SeedOf(identity + std::string(micro)), options.size);
  std::copy(identity.begin(), identity.end(), image.begin() + kMarkerOffset);
  if (options.micro == Micro::kE1) {
    std::fill_n(image.begin() + kMicroAreaOffset, kMicroAreaLength, std::uint8_t{0xFF});
  }
  return image;
}

std::optional<Versions> FindVersions(std::span<const std::uint8_t> image) {
  const auto marker = std::search(image.begin(), image.end(), kMarker.begin(), kMarker.end());
  const auto offset = static_cast<std::size_t>(marker - image.begin()) + kVersionsOffset;
  if (offset + kVersionsLength > image.size()) return std::nullopt;
  const std::string text = TextOf(image.subspan(offset, kVersionsLength));
  const Versions versions{text.substr(0, 4), text.substr(5, 4), text.substr(10, 4)};
  for (const std::string& version : {versions.firmware, versions.database, versions.calibration}) {
    if (VersionNumber(version) == 0) return std::nullopt;
  }
  return versions;
}

}  // namespace zep::simulator
