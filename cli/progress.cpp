#include "cli/progress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "cli/text_layout.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using platform::Duration;
using services::NLSFmt;

constexpr Duration kBetweenDrawings = std::chrono::milliseconds(100);
constexpr Duration kBetweenPlainLines = std::chrono::seconds(1);
// Seconds; what happens in less time tells nothing of rate and time left.
constexpr double kShortestMeasure = 0.5;
constexpr int kPlainStep = 10;  // percent
constexpr int kWidestBar = 30;
constexpr int kNarrowestBar = 8;

double Seconds(Duration duration) { return std::chrono::duration<double>(duration).count(); }

// "0:42", "1:02:03"
std::string Time(double seconds) {
  const long total = std::lround(seconds);
  std::array<char, 32> text{};
  if (total < 3600) {
    std::snprintf(text.data(), text.size(), "%ld:%02ld", total / 60, total % 60);
  } else {
    std::snprintf(text.data(), text.size(), "%ld:%02ld:%02ld", total / 3600, total / 60 % 60,
                  total % 60);
  }
  return text.data();
}

// The same, and "4.2 s"
std::string TimeTaken(double seconds) {
  if (seconds >= 10) return Time(seconds);
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f s", seconds);
  return text.data();
}

// "958 B/s", "9.4 kB/s"
std::string Rate(double bytes_per_second) {
  std::array<char, 32> text{};
  if (bytes_per_second < 1000) {
    std::snprintf(text.data(), text.size(), "%.0f B/s", bytes_per_second);
  } else if (bytes_per_second < 1e6) {
    std::snprintf(text.data(), text.size(), "%.1f kB/s", bytes_per_second / 1e3);
  } else {
    std::snprintf(text.data(), text.size(), "%.1f MB/s", bytes_per_second / 1e6);
  }
  return text.data();
}

std::string Bar(int percent, int width) {
  const auto inside = static_cast<std::size_t>(width - 2);
  const std::size_t full = inside * static_cast<std::size_t>(percent) / 100;
  std::string bar(full, '=');
  if (full < inside) bar += '>';
  bar.resize(inside, ' ');
  return "[" + bar + "]";
}

std::string WithoutDots(std::string text) {
  text.erase(text.find_last_not_of(". ") + 1);
  return text;
}

}  // namespace

ProgressMeter::ProgressMeter(Console& console, const services::Session& session,
                             const std::uint64_t& bytes_on_the_wire, bool quiet)
    : console_(console),
      session_(session),
      bytes_on_the_wire_(bytes_on_the_wire),
      quiet_(quiet),
      draws_bar_(!quiet && console.ShowsToPerson()) {}

void ProgressMeter::SetText(std::string text) {
  text = WithoutDots(std::move(text));
  if (text == text_) return;
  if (IsMoving()) EndPhase();
  text_ = std::move(text);
  Tick();
}

void ProgressMeter::SetMaximum(int maximum) {
  EndPhase();
  // What the new phase is called comes next; until then the old name would be wrong.
  text_.clear();
  maximum_ = maximum;
}

void ProgressMeter::SetValue(int value) {
  if (quiet_) return;
  value_ = std::clamp(value, 0, maximum_);
  last_step_ = Now();
  bytes_at_last_step_ = bytes_on_the_wire_;
  if (draws_bar_) {
    Tick();
  } else {
    ShowPlainLines();
  }
}

void ProgressMeter::Tick() {
  if (!draws_bar_ || text_.empty()) return;
  const Duration now = Now();
  if (!drawn_.empty() && now - last_shown_ < kBetweenDrawings) return;
  last_shown_ = now;
  Draw(BarLine(false));
}

void ProgressMeter::ShowLine(const std::string& line) {
  if (quiet_) return;
  StepAside();
  console_.WriteError(line + "\n");
}

void ProgressMeter::StepAside() {
  if (drawn_.empty()) return;
  // Of the whole line, since the terminal shows "^C" behind the bar.
  console_.WriteError("\r" + PadTo("", console_.Width() - 1) + "\r");
  drawn_.clear();
}

// Time that the user takes for an answer is not the job's.
Duration ProgressMeter::Now() const { return session_.clock.Now() - session_.time_in_questions; }

void ProgressMeter::EndPhase() {
  if (IsMoving() && draws_bar_ && !text_.empty()) {
    // As wide as the line, for the "^C" that the terminal may have shown behind the bar.
    console_.WriteError("\r" + PadTo(BarLine(true), console_.Width() - 1) + "\n");
    drawn_.clear();
  } else {
    StepAside();
    // A count may stop short of its maximum, and a job may fail: the last line tells how far it
    // came.
    if (percent_shown_ >= 0 && percent_shown_ != Percent()) ShowPlainLine(true);
  }
  Restart();
}

int ProgressMeter::Percent() const {
  return maximum_ > 0 ? static_cast<int>(100LL * value_ / maximum_) : 0;
}

std::string ProgressMeter::RateAndTime(bool at_the_end) const {
  const double elapsed = Seconds(last_step_ - started_);
  if (elapsed < kShortestMeasure || value_ <= 0) return {};
  std::string text;
  if (const std::uint64_t bytes = bytes_at_last_step_ - bytes_at_start_; bytes > 0)
    text += "  " + Rate(static_cast<double>(bytes) / elapsed);
  if (at_the_end || value_ == maximum_)
    return text + "  " + NLSFmt(session_, "in %0:s", {TimeTaken(elapsed)});
  const double left = elapsed * (maximum_ - value_) / value_;
  return text + "  " + NLSFmt(session_, "%0:s left", {Time(left)});
}

std::string ProgressMeter::BarLine(bool at_the_end) const {
  const int room = console_.Width() - 1;
  if (!IsMoving()) return CutTo(text_, room);
  std::string percent = std::to_string(Percent()) + " %";
  percent.insert(0, 5 - std::min<std::size_t>(percent.size(), 5), ' ');
  const std::string tail = "  " + percent + RateAndTime(at_the_end);
  // A bar of one width all the time, whatever stands behind it.
  const int widest_tail =
      DisplayWidth("  100 %  9.9 kB/s  " + NLSFmt(session_, "%0:s left", {"00:00"}));
  const int bar = std::min(room - DisplayWidth(text_) - 2 - widest_tail, kWidestBar);
  if (bar < kNarrowestBar) return CutTo(text_, room - DisplayWidth(tail)) + tail;
  return CutTo(text_ + "  " + Bar(Percent(), bar) + tail, room);
}

void ProgressMeter::Draw(const std::string& line) {
  if (line == drawn_) return;
  console_.WriteError("\r" + PadTo(line, DisplayWidth(drawn_)));
  drawn_ = line;
}

void ProgressMeter::ShowPlainLines() {
  if (!IsMoving() || text_.empty()) return;
  const Duration now = Now();
  if (percent_shown_ < 0) {
    console_.WriteError(text_ + "\n");
    percent_shown_ = 0;
    last_shown_ = now;
  }
  const int percent = Percent();
  const bool is_last = percent == 100;
  if (percent / kPlainStep == percent_shown_ / kPlainStep ||
      (!is_last && now - last_shown_ < kBetweenPlainLines)) {
    return;
  }
  ShowPlainLine(is_last);
}

void ProgressMeter::ShowPlainLine(bool at_the_end) {
  percent_shown_ = Percent();
  last_shown_ = Now();
  console_.WriteError(text_ + "  " + std::to_string(percent_shown_) + " %" +
                      RateAndTime(at_the_end) + "\n");
}

void ProgressMeter::Restart() {
  value_ = 0;
  percent_shown_ = -1;
  started_ = last_step_ = Now();
  bytes_at_start_ = bytes_at_last_step_ = bytes_on_the_wire_;
}

}  // namespace zep::cli
