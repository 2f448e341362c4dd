// What a radio carries, as its flash downloader reports it: the flash device, the micro type and
// the configuration register.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "link/job.h"

namespace zep::firmware {

struct TransferRun;

// Of a flash device, and of an image.
enum class FlashSize : std::int32_t {
  kNone = 0,  // nothing identified
  k1Mbit = 1,
  k2Mbit = 2,
  kUnknown = 3,
};

enum class MicroType : std::int32_t { kUnknown = 0, kA1 = 1, kE1 = 2 };

// "A1" or "E1"; empty when it is not known. And "1 Mbit" or "2 Mbit". The same in all languages.
std::string_view MicroName(MicroType micro);
std::string_view FlashSizeName(FlashSize size);

struct FlashDevice {
  std::string Name;  // as it is shown; "Unknown" is translated where it is
  FlashSize Size = FlashSize::kNone;
};

// The device with these JEDEC identifiers. A known maker's unknown device has no name and is not
// refused later; an unknown maker's device is "Unknown", and is.
FlashDevice IdentifyFlashDevice(std::uint8_t manufacturer, std::uint8_t device);

// Reads what the radio on an Active port reports and keeps it as the port's facts and as the
// current micro type. A radio that fails meanwhile leaves nothing behind; of one with an unknown
// micro, which the user is told, only the flash device is kept.
//
//   expects  manufacturer, device, micro type ("a" is A1, "e" is E1)
void UpdateFlashMicro(TransferRun& run, int port);

// Looks at the configuration register that each Active radio may have sent by itself. The value
// "C" is refused: the user is told and the port has failed.
void CheckConfig(link::Job& job);

}  // namespace zep::firmware
