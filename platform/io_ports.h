// Direct output to the computer's I/O ports, which a serial card without a driver of its own needs.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/system_error.h"

namespace zep::platform {

class IoPorts {
 public:
  virtual ~IoPorts() = default;
  virtual void Out(std::uint16_t address, std::uint8_t value) = 0;
};

// For a program that drives no such card.
class NoIoPorts final : public IoPorts {
 public:
  void Out(std::uint16_t, std::uint8_t) override {}
};

// The real ports first to first + count - 1 of a PC under Linux, for whom the system allows it
// (root). Nothing, and the reason in error, everywhere else.
std::unique_ptr<IoPorts> OpenIoPorts(std::uint16_t first, std::uint16_t count, SystemError& error);

}  // namespace zep::platform
