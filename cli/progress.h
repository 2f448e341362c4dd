// How far a long job is: on a terminal a bar with percentage, rate and time left, elsewhere plain
// lines. All of it goes to the standard error.
//
// A phase is a status text or a run of the progress value from 0 to its maximum. A phase whose
// value has moved leaves a line behind; a mere status shows on a terminal for as long as it lasts.
#pragma once

#include <cstdint>
#include <string>

#include "cli/console.h"
#include "services/progress_rate.h"
#include "services/session.h"

namespace zep::cli {

class ProgressMeter {
 public:
  // bytes_on_the_wire is what the rate is taken from. All three outlive the meter. A quiet meter
  // shows nothing.
  ProgressMeter(Console& console, const services::Session& session,
                const std::uint64_t& bytes_on_the_wire, bool quiet);
  ProgressMeter(const ProgressMeter&) = delete;
  ProgressMeter& operator=(const ProgressMeter&) = delete;
  ~ProgressMeter() { EndPhase(); }

  // What is being done; dots at its end are left out. The same text again changes nothing.
  void SetText(std::string text);
  void SetMaximum(int maximum);
  // Values above the maximum count as the maximum.
  void SetValue(int value);

  // Draws the bar when it is due, ten times a second at most.
  void Tick();
  // A line of its own, above the bar.
  void ShowLine(const std::string& line);
  // Clears the way for other text on the terminal; the bar comes back with the next drawing.
  void StepAside();
  // The phase is over, finished or not.
  void EndPhase();

 private:
  // With the blanks before it.
  std::string RateAndTime(bool at_the_end) const;
  std::string BarLine(bool at_the_end) const;
  void Draw(const std::string& line);
  void ShowPlainLines();
  void ShowPlainLine(bool at_the_end);
  void Restart();

  Console& console_;
  const services::Session& session_;
  services::ProgressRate rate_;
  const bool quiet_;
  const bool draws_bar_;

  std::string text_;

  platform::Duration last_shown_{};
  std::string drawn_;       // what stands in the terminal's last line
  int percent_shown_ = -1;  // in the last plain line
};

}  // namespace zep::cli
