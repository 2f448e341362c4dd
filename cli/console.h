// What a command sees of the terminal, or of the files and pipes in its place: results go to the
// standard output, everything else to the standard error.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/interrupt.h"

namespace zep::cli {

class Console {
 public:
  virtual ~Console() = default;

  // Text is written at once, as it is.
  virtual void WriteOutput(std::string_view text) = 0;
  virtual void WriteError(std::string_view text) = 0;

  // Whether a result was lost, other than into a pipe that nobody reads any longer.
  virtual bool HasLostOutput() const = 0;

  // Whether a person reads the standard error, and whether that person can answer questions.
  virtual bool ShowsToPerson() const = 0;
  virtual bool CanAsk() const = 0;
  // Characters in a line of the terminal.
  virtual int Width() const = 0;

  // Forgets what was typed before a question was there to be read.
  virtual void DropTypedAhead() = 0;
  // The next line typed, without its end. Nothing when the input has ended or an interrupt comes
  // first.
  virtual std::optional<std::string> ReadLine() = 0;

  // How many interrupts (Ctrl-C) came since the last call.
  virtual int TakeInterrupts() = 0;
};

// The streams of this process. Takes over its interrupts for as long as it lives.
class StandardConsole final : public Console {
 public:
  StandardConsole();

  void WriteOutput(std::string_view text) override;
  void WriteError(std::string_view text) override;
  bool HasLostOutput() const override { return has_lost_output_; }
  bool ShowsToPerson() const override { return shows_to_person_; }
  bool CanAsk() const override { return can_ask_; }
  int Width() const override;
  void DropTypedAhead() override;
  std::optional<std::string> ReadLine() override;
  int TakeInterrupts() override;

 private:
  platform::Interrupts interrupts_;
  int interrupts_seen_ = 0;  // while a line was waited for
  bool has_lost_output_ = false;
  bool shows_to_person_;
  bool can_ask_;
};

}  // namespace zep::cli
