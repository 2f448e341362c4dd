// The radio's flash memory: really written, bank by bank, so that it can be compared with an image
// afterwards.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "simulator/numbers.h"

namespace zep::simulator {

enum class Micro { kA1, kE1 };

struct FlashDevice {
  std::string_view name;
  std::uint8_t maker = 0;   // first identification byte
  std::uint8_t device = 0;  // second identification byte
  std::size_t size = 0;     // bytes
};

// The devices that a radio can carry; the last two are of a known maker and of an unknown one, and
// in no data sheet.
std::span<const FlashDevice> FlashDevices();

inline constexpr std::size_t kMegabit = 131072;  // bytes
inline constexpr std::size_t kPageSize = 128;    // bytes

class Flash {
 public:
  // contents is padded with 0xFF or cut to the size of the device.
  Flash(const FlashDevice& device, Bytes contents);

  const FlashDevice& Device() const { return device_; }
  const Bytes& Contents() const { return contents_; }

  // The page at the address of the bank; empty when the device ends before it or the address is not
  // on a page border.
  std::span<std::uint8_t> Page(unsigned bank, std::size_t address);

 private:
  FlashDevice device_;
  Bytes contents_;
};

// How far a flash holds an image, in the areas that a download writes. The boot area, the
// configuration area and the gaps between are left as they are by a download and not compared.
struct FlashComparison {
  std::size_t compared = 0;
  std::size_t different = 0;
  std::optional<std::size_t> first_difference;  // offset in the image

  // False also for an image of 0 bytes or one larger than the flash.
  bool IsEqual() const { return compared > 0 && different == 0; }
};
FlashComparison CompareFlash(std::span<const std::uint8_t> flash,
                             std::span<const std::uint8_t> image, Micro micro);

}  // namespace zep::simulator
