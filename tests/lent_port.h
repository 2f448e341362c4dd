#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "programs/this_computer.h"
#include "simulator/simulated_port.h"

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

// Makes the ports of a program; the simulated radios behind them outlive it.
class LentPorts {
 public:
  explicit LentPorts(platform::Clock& clock) : clock_(clock) {}

  std::unique_ptr<platform::SerialPort> Make(const std::string& device) {
    if (!simulator::IsSimulatedDevice(device)) return programs::MakePort(device, clock_);
    std::unique_ptr<simulator::SimulatedPort>& port = ports_[device];
    if (!port) {
      port = std::move(*simulator::MakeSimulatedPort(device, clock_).value);
      port->SetListener([this](const simulator::WireByte& byte) {
        if (!byte.from_radio) to_radios += static_cast<char>(byte.value);
      });
    }
    return std::make_unique<LentPort>(*port);
  }
  // The radio of a device that the program has used.
  simulator::SimulatedRadio& Radio(const std::string& device) { return ports_.at(device)->Radio(); }

  std::string to_radios;  // every byte so far

 private:
  platform::Clock& clock_;
  std::map<std::string, std::unique_ptr<simulator::SimulatedPort>> ports_;
};

}  // namespace zep::testing
