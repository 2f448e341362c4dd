// Firmware image files: the raw contents of a radio's flash in one binary file, and what such a
// file tells about the radios it is made for.
//
//   size                 131,072 bytes (1 Mbit) or 262,144 bytes (2 Mbit)
//   "ZEP-xx" and 2 digits  the model code, somewhere in 32,768 bytes from offset 0x7FFF on
//   offsets 0xFF to 0x17E  all FF in an image for E1 micros, anything else for A1
//
// Both areas begin one byte before the round address: the tools that make images count from 1.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/system_error.h"
#include "services/session.h"

namespace zep::firmware {

struct Firmware;

// The image that the user has chosen and, after CheckForValidFile, who it is for.
struct ImageFile {
  std::string BinaryFilePath;  // folder, with its trailing separator
  std::string BinaryFileName;

  std::int32_t FirmwareRadioModel = 0;  // tier 1 to 13; 0 when the model code is not known
  std::string FirmwareRadioType;        // "Conventional" or "Trunked"; empty when not known
  std::int32_t FirmwareMicroType = 0;   // 1 A1, 2 E1
  std::int32_t FirmwareFlashSize = 0;   // 1 = 1 Mbit, 2 = 2 Mbit

  // Folder and name joined as they stand.
  std::string FullName() const { return BinaryFilePath + BinaryFileName; }
};

// Makes a file, given by its full name, the chosen image. The identity is kept.
void ChooseImageFile(ImageFile& image, std::string_view file);

enum class ImageProblem {
  kNone,
  kMissing,
  kFolder,
  kUnreadable,
  kTooShort,   // ends before the area in which the marker is looked for does
  kCutMarker,  // that area ends within something that begins like the marker
  kNoMarker,
  kWrongSize,
};

// What a file tells, found out without a word to the user.
struct ImageInspection {
  ImageProblem problem = ImageProblem::kNone;
  // Its advice is what is wrong with the file and what to do about it. The number is 0 where the
  // problem is the file's contents and not an error of reading it.
  platform::SystemError error;

  std::uint64_t size = 0;        // in bytes
  std::string model_code;        // the two characters behind the marker; empty without a marker
  std::int32_t radio_model = 0;  // these four as in ImageFile
  std::string radio_type;
  std::int32_t micro_type = 0;
  std::int32_t flash_size = 0;
};

ImageInspection InspectImage(const std::string& file);

// What is wrong with the file and what to do about it; empty when nothing is.
std::string ImageProblemText(const services::Session& session, const ImageInspection& inspection);

// Whether the chosen file is an image, with its identity filled in. Tells the user of a wrong size,
// an unknown model code and a file that cannot be read; a missing file and one without a marker are
// the caller's to speak of. Without a marker the model, the type and the flash size keep the values
// of the file before.
bool CheckForValidFile(services::Session& session, ImageFile& image);

// Whether the chosen image is for radios of this tier, or the user wants it nevertheless.
bool IsForModel(services::Session& session, const ImageFile& image, int tier);

// After the image was written: waits for the user to turn on radios that have switched off.
void AskToTurnOn(services::Session& session, const ImageFile& image);

// Bytes in which the marker is looked for.
inline constexpr std::size_t kSearchWindow = 32768;

// Where the pattern begins in the buffer, counted from 1; 0 when it is not there. Nothing when a
// partial match runs past the buffer's end: what follows cannot be told.
std::optional<std::int32_t> FindMarkerInBuffer(std::span<const char, kSearchWindow> buffer,
                                               std::string_view pattern);

// The error of reading more than an image file of this size holds.
platform::SystemError InputPastEndOfFile(const std::string& file, std::uint64_t size);

// Compares the image with what every port slot has reported of its radio, and refuses what cannot
// work with a box for each radio and DownloadError.
void VerifyFlashFile(Firmware& firmware);

}  // namespace zep::firmware
