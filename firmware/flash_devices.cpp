#include "firmware/flash_devices.h"

#include <array>
#include <string_view>

#include "firmware/transfer_engine.h"
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
  FlashSize size;
};

constexpr std::array kKnownDevices = {
    KnownDevice{kMakerAt, 0xD5, "AT29C010A 1MBit", FlashSize::k1Mbit},
    KnownDevice{kMakerAt, 0xDA, "AT29C020 2MBit", FlashSize::k2Mbit},
    KnownDevice{kMakerSst, 0x10, "SST29EE020 2MBit", FlashSize::k2Mbit},
    KnownDevice{kMakerSst, 0x24, "SST29SF020 2MBit", FlashSize::k2Mbit},
};

MicroType MicroTypeOf(std::uint8_t reported) {
  if (reported == 'a') return MicroType::kA1;
  return reported == 'e' ? MicroType::kE1 : MicroType::kUnknown;
}

}  // namespace

std::string_view MicroName(MicroType micro) {
  switch (micro) {
    case MicroType::kA1:
      return "A1";
    case MicroType::kE1:
      return "E1";
    case MicroType::kUnknown:
      break;
  }
  return {};
}

std::string_view FlashSizeName(FlashSize size) {
  switch (size) {
    case FlashSize::k1Mbit:
      return "1 Mbit";
    case FlashSize::k2Mbit:
      return "2 Mbit";
    case FlashSize::kNone:
    case FlashSize::kUnknown:
      break;
  }
  return {};
}

FlashDevice IdentifyFlashDevice(std::uint8_t manufacturer, std::uint8_t device) {
  for (const KnownDevice& known : kKnownDevices) {
    if (known.manufacturer == manufacturer && known.device == device)
      return {.Name = std::string(known.name), .Size = known.size};
  }
  const bool known_maker = manufacturer == kMakerAt || manufacturer == kMakerSst;
  if (known_maker) return {};
  return {.Name = "Unknown", .Size = FlashSize::kUnknown};
}

void UpdateFlashMicro(TransferRun& run, int port) {
  link::Job& job = run.job;
  if (!job.IsActive(port)) return;
  const std::uint8_t manufacturer = GetByteFromSpecficComms(job, port, 0);
  const std::uint8_t device = GetByteFromSpecficComms(job, port, 0);
  const std::uint8_t micro = GetByteFromSpecficComms(job, port, 0);
  // A radio that failed meanwhile leaves no record, which could have the image refused for the
  // others.
  if (micro == 0) return;
  PortFacts& radio = run.Facts(port);
  radio.flash = IdentifyFlashDevice(manufacturer, device);
  const MicroType micro_type = MicroTypeOf(micro);
  if (micro_type == MicroType::kUnknown) {
    NLSMsgBox(job.session, "Unknown Micro type returned.", {.icon = Icon::kCritical});
    return;
  }
  run.micro_type = radio.micro = micro_type;
  run.view.SetPort(port, radio);
}

void CheckConfig(link::Job& job) {
  constexpr std::uint8_t kRefused = 'C';
  for (const int port : link::kAllPorts) {
    if (!job.IsActive(port) || job.Port(port).InputCount() < 1) continue;
    if (GetAnyByte(job, port) != kRefused) continue;
    NLSMsgBox(job.session,
              NLSFmt(job.session, "Invalid value in the Config Register of the radio on Com %0:s.",
                     {std::to_string(port)}),
              {.icon = Icon::kCritical});
    FailPort(job, port, services::Failure::kRefused);
  }
}

}  // namespace zep::firmware
