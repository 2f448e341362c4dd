// Direct output to the computer's I/O ports, which a serial card without a driver of its own needs.
#pragma once

#include <cstdint>

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

}  // namespace zep::platform
