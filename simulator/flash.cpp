#include "simulator/flash.h"

#include <array>

namespace zep::simulator {

namespace {

constexpr std::array kFlashDevices = {
    FlashDevice{"AT29C010A", 0x1F, 0xD5, kMegabit},
    FlashDevice{"AT29C020", 0x1F, 0xDA, 2 * kMegabit},
    FlashDevice{"SST29EE020", 0xBF, 0x10, 2 * kMegabit},
    FlashDevice{"SST29SF020", 0xBF, 0x24, 2 * kMegabit},
    FlashDevice{"unnamed", 0x1F, 0x01, 2 * kMegabit},
    FlashDevice{"unknown", 0x01, 0x02, 2 * kMegabit},
};

// Where the banks begin in the flash. Bank 0 is a whole 64 KiB of address space; the two behind it
// share the second 64 KiB, so that one device of 1 Mbit has three banks. The second megabit is laid
// out like the first.
constexpr std::array<std::size_t, 6> kBankOffsets = {0x00000, 0x10000, 0x18000,
                                                     0x20000, 0x30000, 0x38000};

// The areas of one megabit that a download writes, for an A1 micro; an E1 micro keeps 0x100 bytes
// more at the start of each bank for its boot code.
struct Area {
  std::size_t begin;
  std::size_t end;
  bool begins_behind_boot_code;
};
constexpr std::array kWrittenAreas = {
    Area{0x00100, 0x01000, true},  Area{0x01080, 0x05000, false}, Area{0x08000, 0x0B600, false},
    Area{0x0B800, 0x10000, false}, Area{0x10100, 0x11000, true},  Area{0x11080, 0x15000, false},
    Area{0x18100, 0x19000, true},  Area{0x19080, 0x1D000, false},
};

}  // namespace

std::span<const FlashDevice> FlashDevices() { return kFlashDevices; }

Flash::Flash(const FlashDevice& device, Bytes contents)
    : device_(device), contents_(std::move(contents)) {
  contents_.resize(device.size, 0xFF);
}

std::span<std::uint8_t> Flash::Page(unsigned bank, std::size_t address) {
  if (bank >= kBankOffsets.size() || address % kPageSize != 0) return {};
  const std::size_t offset = kBankOffsets.at(bank) + address;
  if (offset + kPageSize > contents_.size()) return {};
  return std::span(contents_).subspan(offset, kPageSize);
}

FlashComparison CompareFlash(std::span<const std::uint8_t> flash,
                             std::span<const std::uint8_t> image, Micro micro) {
  FlashComparison result;
  if (image.size() > flash.size()) return result;
  for (std::size_t megabit = 0; megabit + kMegabit <= image.size(); megabit += kMegabit) {
    for (const Area& area : kWrittenAreas) {
      const std::size_t boot_code = micro == Micro::kE1 && area.begins_behind_boot_code ? 0x100 : 0;
      for (std::size_t at = megabit + area.begin + boot_code; at < megabit + area.end; ++at) {
        ++result.compared;
        if (flash[at] == image[at]) continue;
        ++result.different;
        if (!result.first_difference) result.first_difference = at;
      }
    }
  }
  return result;
}

}  // namespace zep::simulator
