// What the radio hears and says. Every step of a conversation passes here, so that a fault put at
// the step happens, whichever part of the radio is at work.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "simulator/faults.h"

namespace zep::simulator {

// Bytes that the radio sends at one go, at its speed of that moment.
struct Utterance {
  std::string bytes;
  int baud = 9600;
  platform::Duration delay{};  // how long the radio hesitates before it sends them
};

// What a radio did, for the summary at the end.
struct RadioCounts {
  std::size_t items_read = 0;
  std::size_t records_written = 0;
  std::size_t blocks_written = 0;
  std::size_t blocks_read = 0;
  std::size_t errors_replied = 0;
  std::size_t restarts = 0;
};

class Voice {
 public:
  Voice(std::vector<Fault> faults, RadioCounts& counts)
      : faults_(std::move(faults)), counts_(counts) {}

  void SetBaud(int baud) { baud_ = baud; }

  // The radio reaches the step: calls carry_out and sends the text that it returns, unless a fault
  // comes in between.
  void Answer(Step step, const std::function<std::string()>& carry_out);
  // The same for an answer that needs no doing.
  void Answer(Step step, std::string_view text);
  // A byte arrives at a step that is not answered. Returns what the radio hears of it, if anything.
  std::optional<std::uint8_t> Hear(Step step, std::uint8_t byte);

  // Sends bytes that belong to no step.
  void Say(std::string bytes, platform::Duration delay = {});

  // "{code}", a carriage return and the prompt.
  std::string ErrorReply(std::string_view code);

  // The radio hears and says nothing any more.
  bool IsSilent() const { return silent_; }
  void FallSilent() { silent_ = true; }
  // The line is cut, until it is mended.
  bool IsCut() const { return cut_; }
  void Mend() { cut_ = false; }

  // What was said since the last call.
  std::vector<Utterance> Take() { return std::exchange(said_, {}); }
  bool HasSpoken() const { return !said_.empty(); }

 private:
  // Takes note of a fault that ends the conversation.
  bool KeepsQuiet(const Fault& fault);

  FaultPlan faults_;
  RadioCounts& counts_;
  int baud_ = 9600;
  bool silent_ = false;
  bool cut_ = false;
  std::vector<Utterance> said_;
};

}  // namespace zep::simulator
