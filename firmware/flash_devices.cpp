#include "firmware/flash_devices.h"

#include <array>
#include <string_view>

#include "firmware/firmware.h"
#include "link/byte_exchange.h"
#include "services/messages.h"

namespace zep::firmware {
namespace {

using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;

// JEDEC identifiers, from the makers' data sheets.
constexpr std::uint8_t kMakerAt = 0x1F;
constexpr std::uint8_t kMakerSst = 0xBF;

struct KnownDevice {
  std::uint8_t manufacturer;
  std::uint8_t device;
  std::string_view name;
  std::int32_t size;
};

constexpr std::array kKnownDevices = {
    KnownDevice{kMakerAt, 0xD5, "AT29C010A 1MBit", kFlash1Mbit},
    KnownDevice{kMakerAt, 0xDA, "AT29C020 2MBit", kFlash2Mbit},
    KnownDevice{kMakerSst, 0x10, "SST29EE020 2MBit", kFlash2Mbit},
    KnownDevice{kMakerSst, 0x24, "SST29SF020 2MBit", kFlash2Mbit},
};

std::string_view MicroType(std::uint8_t reported) {
  if (reported == 'a') return "A1";
  if (reported == 'e') return "E1";
  return {};
}

}  // namespace

FlashDevice IdentifyFlashDevice(std::uint8_t manufacturer, std::uint8_t device) {
  for (const KnownDevice& known : kKnownDevices) {
    if (known.manufacturer == manufacturer && known.device == device)
      return {.Name = std::string(known.name), .Size = known.size};
  }
  const bool known_maker = manufacturer == kMakerAt || manufacturer == kMakerSst;
  if (known_maker) return {};
  return {.Name = "Unknown", .Size = kFlashUnknown};
}

void UpdateFlashMicro(Firmware& firmware, TransferView& view, int slot) {
  link::Link& link = firmware.link;
  if (!link.IsActive(slot)) return;
  const std::uint8_t manufacturer = GetByteFromSpecficComms(link, slot, 0);
  const std::uint8_t device = GetByteFromSpecficComms(link, slot, 0);
  const std::uint8_t micro = GetByteFromSpecficComms(link, slot, 0);
  // A radio that failed meanwhile leaves no record, which could have the image refused for the
  // others.
  if (micro == 0) return;
  firmware.Flash(slot) = IdentifyFlashDevice(manufacturer, device);
  const std::string_view micro_type = MicroType(micro);
  if (micro_type.empty()) {
    NLSMsgBox(link.session, "Unknown Micro type returned.", {.icon = Icon::kCritical});
    return;
  }
  firmware.micro_type = micro_type;
  SlotLabels& labels = firmware.Labels(slot);
  labels.micro = micro_type;
  labels.flash = NLSFmt(link.session, firmware.Flash(slot).Name);
  view.SetSlot(slot, labels);
}

void CheckConfig(link::Link& link) {
  constexpr std::uint8_t kRefused = 'C';
  for (const int slot : link::kAllPorts) {
    if (!link.IsActive(slot) || link.Port(slot).InputCount() < 1) continue;
    if (GetAnyByte(link, slot) != kRefused) continue;
    NLSMsgBox(link.session,
              NLSFmt(link.session, "Invalid value in the Config Register of the radio on Com %0:s.",
                     {std::to_string(slot)}),
              {.icon = Icon::kCritical});
    FailPort(link, slot, services::Failure::kRefused);
  }
}

}  // namespace zep::firmware
