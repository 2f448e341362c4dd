// Firmware images: the raw contents of a radio's flash, kept in one binary file, and what they tell
// about the radios they are made for.
//
//   size                 131,072 bytes (1 Mbit) or 262,144 bytes (2 Mbit)
//   "ZEP-xx" and 2 digits  the model code, somewhere in 32,768 bytes from offset 0x7FFF on
//   offsets 0xFF to 0x17E  all FF in an image for E1 micros, anything else for A1
//
// Both areas begin one byte before the round address: the tools that make images count from 1.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "firmware/flash_devices.h"
#include "platform/system_error.h"
#include "services/session.h"

namespace zep::firmware {

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

// A file as it was read, once: these bytes were inspected, and these go into a flash, whatever
// becomes of the file.
struct FirmwareImage {
  std::string file;   // its full name
  std::string bytes;  // empty when it could not be read

  ImageProblem problem = ImageProblem::kNone;
  // Its advice is what is wrong with the file and what to do about it. The number is 0 where the
  // problem is the file's contents and not an error of reading it.
  platform::SystemError error;

  std::string model_code;        // the two characters behind the marker; empty without a marker
  std::int32_t radio_model = 0;  // these four as in ChosenImage
  std::string radio_type;
  MicroType micro_type = MicroType::kUnknown;
  FlashSize flash_size = FlashSize::kNone;

  bool IsUsable() const { return problem == ImageProblem::kNone; }
};
using SharedImage = std::shared_ptr<const FirmwareImage>;

// Reads and inspects a file, without a word to the user.
SharedImage ReadFirmwareImage(const std::string& file);

// What is wrong with the image and what to do about it; empty when nothing is.
std::string ImageProblemText(const services::Session& session, const FirmwareImage& image);

// The image that the user has chosen and, after CheckForValidFile, who it is for.
struct ChosenImage {
  std::string BinaryFilePath;  // folder, with its trailing separator
  std::string BinaryFileName;

  std::int32_t FirmwareRadioModel = 0;  // tier 1 to 13; 0 when the model code is not known
  std::string FirmwareRadioType;        // "Conventional" or "Trunked"; empty when not known
  MicroType FirmwareMicroType = MicroType::kUnknown;
  FlashSize FirmwareFlashSize = FlashSize::kNone;

  // What was read for the last check; null before it.
  SharedImage contents;

  // Folder and name joined as they stand.
  std::string FullName() const { return BinaryFilePath + BinaryFileName; }
};

// Makes a file, given by its full name, the chosen one. The identity is kept until it is checked.
void ChooseImageFile(ChosenImage& image, std::string_view file);

// Reads the chosen file and tells whether it is an image, with its identity filled in. Tells the
// user of a wrong size, an unknown model code and a file that cannot be read; a missing file and
// one without a marker are the caller's to speak of. Without a marker the model, the type and the
// flash size keep the values of the file before.
bool CheckForValidFile(services::Session& session, ChosenImage& image);
// The same for what was read of the chosen file already.
bool CheckForValidFile(services::Session& session, ChosenImage& image, SharedImage contents);

// Whether the chosen image is for radios of this tier, or the user wants it nevertheless.
bool IsForModel(services::Session& session, const ChosenImage& image, int tier);

// After the image was written: waits for the user to turn on radios that have switched off.
void AskToTurnOn(services::Session& session, const ChosenImage& image);

// Bytes in which the marker is looked for.
inline constexpr std::size_t kSearchWindow = 32768;

// Where the pattern begins in the buffer, counted from 1; 0 when it is not there. Nothing when a
// partial match runs past the buffer's end: what follows cannot be told.
std::optional<std::int32_t> FindMarkerInBuffer(std::span<const char, kSearchWindow> buffer,
                                               std::string_view pattern);

// Compares the image with what every port has reported of its radio, and refuses what cannot work
// with a box for each radio and DownloadError.
void VerifyFlashFile(TransferRun& run);

}  // namespace zep::firmware
