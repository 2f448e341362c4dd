// Ports that are watched: what goes over the serial lines, written down as it happens, and how much
// it is.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/clock.h"
#include "platform/serial_port.h"
#include "services/wire_text.h"

namespace zep::link {

// The lines of services/wire_text.h, with the seconds since the object was made.
class WireTrace {
 public:
  WireTrace(platform::Clock& clock, services::WireText::Sink sink)
      : clock_(clock), start_(clock.Now()), text_(std::move(sink)) {}

  void Note(int port, const std::string& text) { text_.Note(Time(), port, text); }
  void Byte(int port, bool from_radio, std::uint8_t byte) {
    text_.Byte(Time(), {.port = port, .from_radio = from_radio}, byte);
  }

 private:
  platform::Duration Time() { return clock_.Now() - start_; }

  platform::Clock& clock_;
  platform::Duration start_;
  services::WireText text_;
};

// A port that is watched: its bytes are counted, and traced when there is a trace.
class WatchedPort final : public platform::SerialPort {
 public:
  // byte_count and the trace outlive the port; trace may be null.
  WatchedPort(std::unique_ptr<platform::SerialPort> port, std::uint64_t& byte_count,
              WireTrace* trace);

  std::string Device() const override { return port_->Device(); }
  platform::SystemError Open() override;
  void Close() override;
  bool IsOpen() const override { return port_->IsOpen(); }
  platform::SystemError SetSettings(std::string_view settings) override;
  std::size_t InputCount() override { return port_->InputCount(); }
  std::size_t OutputCount() override { return port_->OutputCount(); }
  void ClearInput() override;
  void ClearOutput() override { port_->ClearOutput(); }
  std::optional<std::uint8_t> Read() override;
  void Write(std::span<const std::uint8_t> bytes) override;
  void WaitForInput(platform::Duration longest) override { port_->WaitForInput(longest); }
  void WaitForOutput(platform::Duration longest) override { port_->WaitForOutput(longest); }
  platform::SystemError TakeError() override;

 private:
  void Note(const std::string& text);

  std::unique_ptr<platform::SerialPort> port_;
  std::uint64_t& byte_count_;
  WireTrace* trace_;
};

}  // namespace zep::link
