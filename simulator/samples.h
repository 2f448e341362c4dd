// Files to try the programs with: loaders, firmware images, default settings and data files. All
// are made here, from the protocol and from nothing else, and are the same on every computer.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "platform/system_error.h"
#include "simulator/firmware_image.h"
#include "simulator/numbers.h"
#include "simulator/radio_profile.h"

namespace zep::simulator {

// The first loader (256 bytes) and the second (fewer than 2,000). They run on simulated radios
// only.
Bytes SampleFirstLoader();
Bytes SampleSecondLoader();

// A firmware image among the samples.
struct SampleImage {
  std::string_view name;
  std::string_view model_code;
  Micro micro;
  std::size_t size;
  std::string_view firmware;  // with database 0405 and calibration 0103
};
std::span<const SampleImage> SampleImages();
Bytes MakeSampleImage(const SampleImage& image);

// The data of a radio fresh from the factory, as a data file: one network, or several behind each
// other. CRLF ends a line.
std::string DataFileText(const RadioProfile& profile);
// Its calibration, as a calibration file.
std::string CalibrationFileText(const RadioProfile& profile);

// Writes all samples into the folder, which is made when missing.
platform::SystemError WriteSamples(const std::string& folder);

}  // namespace zep::simulator
