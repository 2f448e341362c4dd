// What a radio carries, as its flash downloader reports it: the flash device, the micro type and
// the configuration register.
#pragma once

#include <cstdint>
#include <string>

#include "firmware/transfer_view.h"
#include "link/port_set.h"

namespace zep::firmware {

struct Firmware;

// Sizes of flash devices.
inline constexpr std::int32_t kFlashNotIdentified = 0;
inline constexpr std::int32_t kFlash1Mbit = 1;
inline constexpr std::int32_t kFlash2Mbit = 2;
inline constexpr std::int32_t kFlashUnknown = 3;

struct FlashDevice {
  std::string Name;
  std::int32_t Size = kFlashNotIdentified;
};

// The device with these JEDEC identifiers. A known maker's unknown device has no name and is not
// refused later; an unknown maker's device is "Unknown", and is.
FlashDevice IdentifyFlashDevice(std::uint8_t manufacturer, std::uint8_t device);

// Reads what the radio on an Active slot reports and keeps it as the slot's flash device and
// labels and as the current micro type. A radio that fails meanwhile leaves nothing behind; of one
// with an unknown micro, which the user is told, only the flash device is kept.
//
//   expects  manufacturer, device, micro type ("a" is A1, "e" is E1)
void UpdateFlashMicro(Firmware& firmware, TransferView& view, int slot);

// Looks at the configuration register that each Active radio may have sent by itself. The value
// "C" is refused: the user is told and the port has failed.
void CheckConfig(link::Link& link);

}  // namespace zep::firmware
