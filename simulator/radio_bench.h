// A bench with simulated radios, each at the end of a pseudo-terminal that programs open as a
// serial device.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/pseudo_terminal.h"
#include "platform/system_error.h"
#include "simulator/radio_profile.h"
#include "simulator/serial_line.h"
#include "simulator/simulated_radio.h"

namespace zep::simulator {

// One place on the bench.
class BenchPlace {
 public:
  explicit BenchPlace(RadioProfile profile)
      : radio_(std::move(profile)), line_(radio_, radio_.Profile().paced) {}
  BenchPlace(const BenchPlace&) = delete;
  BenchPlace& operator=(const BenchPlace&) = delete;
  ~BenchPlace();

  // Makes the terminal and, unless link is empty, a symbolic link of this name to it. A link that
  // is left over is replaced, anything else of this name is an error.
  platform::SystemError Open(const std::string& link);
  // Told of every byte on the line when it arrives.
  void SetListener(std::function<void(const WireByte&)> listener) {
    line_.SetListener(std::move(listener));
  }

  // Takes what the program has sent and gives it what has arrived by now.
  void Serve(platform::Duration now);

  SimulatedRadio& Radio() { return radio_; }
  const SimulatedRadio& Radio() const { return radio_; }
  platform::PseudoTerminal& Terminal() { return terminal_; }
  // When something will happen by itself.
  std::optional<platform::Duration> NextEvent() const { return line_.NextEvent(); }

  // What a program opens: the link, or the terminal when there is none.
  const std::string& Device() const { return device_; }
  bool IsOpen() const { return terminal_.IsOpen(); }
  // Bytes so far, and when the last of them passed.
  std::uint64_t BytesIn() const { return bytes_in_; }
  std::uint64_t BytesOut() const { return bytes_out_; }
  platform::Duration LastByte() const { return last_byte_; }

 private:
  void TakeFromProgram(platform::Duration now);
  void GiveToProgram(platform::Duration now);

  SimulatedRadio radio_;
  SerialLine line_;
  platform::PseudoTerminal terminal_;
  std::string link_;
  std::string device_;
  std::uint64_t bytes_in_ = 0;
  std::uint64_t bytes_out_ = 0;
  platform::Duration last_byte_{};
};

class RadioBench {
 public:
  RadioBench(std::vector<RadioProfile> profiles, platform::Clock& clock);

  // Opens all places; with a link their devices are link1, link2 and so on.
  platform::SystemError Open(const std::string& link);

  // Serves all radios once and then waits until there is more to do, at most that long.
  void Turn(platform::Duration longest);

  std::vector<std::unique_ptr<BenchPlace>>& Places() { return places_; }
  const std::vector<std::unique_ptr<BenchPlace>>& Places() const { return places_; }

  // Whether at least one line is not cut.
  bool IsConnected() const;
  // Whether a program has spoken to a radio, and since then nothing was said for that long.
  bool WasLeftAlone(platform::Duration how_long) const;

 private:
  platform::Clock& clock_;
  std::vector<std::unique_ptr<BenchPlace>> places_;
  std::vector<platform::PseudoTerminal*> terminals_;
};

}  // namespace zep::simulator
