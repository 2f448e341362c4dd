// What goes over the serial lines, written down as it happens:
//
//        time port
//    0.004211    1  open /dev/ttyUSB0
//    0.004330    1  9600,n,8,1
//    0.005102    1  > 5E                                               ^
//    0.006190    1  < 76                                               v
//
// Seconds since the start, ">" to the radio and "<" from it, 16 bytes a line at most. Every byte is
// handed on at once, so that the end is there whatever becomes of the program.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/serial_port.h"

namespace zep::link {

class WireTrace {
 public:
  // Takes the text piece by piece as it comes.
  using Sink = std::function<void(std::string_view piece)>;

  WireTrace(platform::Clock& clock, Sink sink)
      : clock_(clock), start_(clock.Now()), sink_(std::move(sink)) {}
  WireTrace(const WireTrace&) = delete;
  WireTrace& operator=(const WireTrace&) = delete;
  ~WireTrace() { EndLine(); }

  // Something that is not on the wire: a port is opened, closed, set up.
  void Note(int port, const std::string& text);
  void Byte(int port, bool from_radio, std::uint8_t byte);

 private:
  void StartLine(int port);
  void EndLine();

  platform::Clock& clock_;
  platform::Duration start_;
  Sink sink_;

  // The line that is being written.
  int port_ = 0;
  bool from_radio_ = false;
  std::string printable_;  // a character for each of its bytes; empty when there is no line
  platform::Duration last_byte_{};
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
