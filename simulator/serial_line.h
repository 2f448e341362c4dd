// The line between a program and a simulated radio: full duplex, 10 bits a byte, each byte at the
// speed at which it is sent. It brings time to the radio: call Advance before looking at anything.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>

#include "platform/clock.h"
#include "simulator/simulated_radio.h"

namespace zep::simulator {

// A byte on the line.
struct WireByte {
  std::uint8_t value = 0;
  int baud = 0;
  platform::Duration due{};  // when it has arrived at the other end
  bool from_radio = false;
};

class SerialLine {
 public:
  // Unpaced, bytes arrive in the moment in which they are sent.
  SerialLine(SimulatedRadio& radio, bool paced) : radio_(radio), paced_(paced) {}

  // Told of every byte when it arrives, in the order of arrival at each end.
  void SetListener(std::function<void(const WireByte&)> listener) {
    listener_ = std::move(listener);
  }

  // The speed to which the program's port is set; 0: not known, every speed is understood.
  void SetProgramBaud(int baud) { program_baud_ = baud; }
  // The program sends bytes, at its speed of this moment.
  void Send(std::span<const std::uint8_t> bytes, platform::Duration now);

  // Lets everything happen that is due by now.
  void Advance(platform::Duration now);
  // When something will happen next.
  std::optional<platform::Duration> NextEvent() const;

  // What has arrived at the program.
  std::deque<std::uint8_t>& Input() { return input_; }
  // How many of the program's bytes are still on their way, and when the last will be out.
  std::size_t OutputCount() const { return to_radio_.size(); }
  platform::Duration OutputEnds() const {
    return to_radio_.empty() ? platform::Duration{} : to_radio_.back().due;
  }
  // Takes back what has not left yet.
  void ClearOutput() { to_radio_.clear(); }

  bool IsCut() const { return radio_.LineIsCut(); }
  // Plugs the cable in again; what was on its way is lost.
  void Mend();

 private:
  platform::Duration ByteTime(int baud) const;
  void DeliverToRadio(const WireByte& byte);
  void QueueAnswers(platform::Duration now);
  void DeliverToProgram(const WireByte& byte);

  SimulatedRadio& radio_;
  bool paced_;
  int program_baud_ = 0;
  std::function<void(const WireByte&)> listener_;
  std::deque<WireByte> to_radio_;
  std::deque<WireByte> to_program_;
  platform::Duration last_to_radio_{};    // when the line to the radio is free again
  platform::Duration last_to_program_{};  // when the line to the program is free again
  std::deque<std::uint8_t> input_;
};

}  // namespace zep::simulator
