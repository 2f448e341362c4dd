#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/serial_port.h"

namespace zep::testing {

// A port that belongs to the test and outlives the program.
class LentPort final : public platform::SerialPort {
 public:
  explicit LentPort(platform::SerialPort& port) : port_(port) {}

  std::string Device() const override { return port_.Device(); }
  platform::SystemError Open() override { return port_.Open(); }
  void Close() override { port_.Close(); }
  bool IsOpen() const override { return port_.IsOpen(); }
  platform::SystemError SetSettings(std::string_view text) override {
    return port_.SetSettings(text);
  }
  std::size_t InputCount() override { return port_.InputCount(); }
  std::size_t OutputCount() override { return port_.OutputCount(); }
  void ClearInput() override { port_.ClearInput(); }
  void ClearOutput() override { port_.ClearOutput(); }
  std::optional<std::uint8_t> Read() override { return port_.Read(); }
  void Write(std::span<const std::uint8_t> bytes) override { port_.Write(bytes); }
  void WaitForInput(platform::Duration longest) override { port_.WaitForInput(longest); }
  void WaitForOutput(platform::Duration longest) override { port_.WaitForOutput(longest); }
  platform::SystemError TakeError() override { return port_.TakeError(); }

 private:
  platform::SerialPort& port_;
};

}  // namespace zep::testing
