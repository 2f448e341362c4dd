// A serial port with a simulated radio at its other end, on any computer and without hardware: the
// devices "sim:...".
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/serial_port.h"
#include "simulator/parsed.h"
#include "simulator/serial_line.h"
#include "simulator/simulated_radio.h"

namespace zep::simulator {

class SimulatedPort final : public platform::SerialPort {
 public:
  SimulatedPort(std::string device, RadioProfile profile, platform::Clock& clock);

  // The radio at the other end, as far as it has come by now.
  SimulatedRadio& Radio();
  // Told of every byte on the line when it arrives.
  void SetListener(std::function<void(const WireByte&)> listener) {
    line_.SetListener(std::move(listener));
  }

  std::string Device() const override { return device_; }
  platform::SystemError Open() override;
  void Close() override;
  bool IsOpen() const override { return open_; }
  platform::SystemError SetSettings(std::string_view settings) override;
  std::size_t InputCount() override;
  std::size_t OutputCount() override;
  void ClearInput() override;
  void ClearOutput() override;
  std::optional<std::uint8_t> Read() override;
  void Write(std::span<const std::uint8_t> bytes) override;
  void WaitForInput(platform::Duration longest) override;
  void WaitForOutput(platform::Duration longest) override;
  platform::SystemError TakeError() override;

 private:
  void Advance();
  // A failure that nobody has asked for yet ends a wait; afterwards a wait takes its time.
  bool HasNewError() const { return open_ && line_.IsCut() && !error_taken_; }
  bool Works() const { return open_ && !line_.IsCut(); }

  std::string device_;
  platform::Clock& clock_;
  SimulatedRadio radio_;
  SerialLine line_;
  bool open_ = false;
  bool error_taken_ = false;
};

// Whether the device is a simulated one ("sim:...").
bool IsSimulatedDevice(std::string_view device);

// The port for a device text; see radio_text.h for what may stand behind "sim:". The clock must
// outlive the port.
Parsed<std::unique_ptr<SimulatedPort>> MakeSimulatedPort(std::string_view device,
                                                         platform::Clock& clock);

}  // namespace zep::simulator
