#include "cli/progress.h"

#include <algorithm>
#include <utility>

#include "services/messages.h"
#include "services/text_layout.h"

namespace zep::cli {
namespace {

using platform::Duration;
using services::CutTo;
using services::DisplayWidth;
using services::NLSFmt;
using services::PadTo;

constexpr Duration kBetweenDrawings = std::chrono::milliseconds(100);
constexpr Duration kBetweenPlainLines = std::chrono::seconds(1);
constexpr int kPlainStep = 10;  // percent
constexpr int kWidestBar = 30;
constexpr int kNarrowestBar = 8;

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
      rate_(session, bytes_on_the_wire),
      quiet_(quiet),
      draws_bar_(!quiet && console.ShowsToPerson()) {}

void ProgressMeter::SetText(std::string text) {
  text = WithoutDots(std::move(text));
  if (text == text_) return;
  if (rate_.IsMoving()) EndPhase();
  text_ = std::move(text);
  Tick();
}

void ProgressMeter::SetMaximum(int maximum) {
  EndPhase();
  // What the new phase is called comes next; until then the old name would be wrong.
  text_.clear();
  rate_.Restart(maximum);
}

void ProgressMeter::SetValue(int value) {
  if (quiet_) return;
  rate_.SetValue(value);
  if (draws_bar_) {
    Tick();
  } else {
    ShowPlainLines();
  }
}

void ProgressMeter::Tick() {
  if (!draws_bar_ || text_.empty()) return;
  const Duration now = session_.clock.Now();
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

void ProgressMeter::EndPhase() {
  if (rate_.IsMoving() && draws_bar_ && !text_.empty()) {
    // As wide as the line, for the "^C" that the terminal may have shown behind the bar.
    console_.WriteError("\r" + PadTo(BarLine(true), console_.Width() - 1) + "\n");
    drawn_.clear();
  } else {
    StepAside();
    // A count may stop short of its maximum, and a job may fail: the last line tells how far it
    // came.
    if (percent_shown_ >= 0 && percent_shown_ != rate_.Percent()) ShowPlainLine(true);
  }
  Restart();
}

std::string ProgressMeter::RateAndTime(bool at_the_end) const {
  const std::string text = rate_.Text(at_the_end);
  return text.empty() ? text : "  " + text;
}

std::string ProgressMeter::BarLine(bool at_the_end) const {
  const int room = console_.Width() - 1;
  if (!rate_.IsMoving()) return CutTo(text_, room);
  std::string percent = std::to_string(rate_.Percent()) + " %";
  percent.insert(0, 5 - std::min<std::size_t>(percent.size(), 5), ' ');
  const std::string tail = "  " + percent + RateAndTime(at_the_end);
  // A bar of one width all the time, whatever stands behind it.
  const int widest_tail =
      DisplayWidth("  100 %  9.9 kB/s  " + NLSFmt(session_, "%0:s left", {"00:00"}));
  const int bar = std::min(room - DisplayWidth(text_) - 2 - widest_tail, kWidestBar);
  if (bar < kNarrowestBar) return CutTo(text_, room - DisplayWidth(tail)) + tail;
  return CutTo(text_ + "  " + Bar(rate_.Percent(), bar) + tail, room);
}

void ProgressMeter::Draw(const std::string& line) {
  if (line == drawn_) return;
  console_.WriteError("\r" + PadTo(line, DisplayWidth(drawn_)));
  drawn_ = line;
}

void ProgressMeter::ShowPlainLines() {
  if (!rate_.IsMoving() || text_.empty()) return;
  const Duration now = session_.clock.Now();
  if (percent_shown_ < 0) {
    console_.WriteError(text_ + "\n");
    percent_shown_ = 0;
    last_shown_ = now;
  }
  const int percent = rate_.Percent();
  const bool is_last = percent == 100;
  if (percent / kPlainStep == percent_shown_ / kPlainStep ||
      (!is_last && now - last_shown_ < kBetweenPlainLines)) {
    return;
  }
  ShowPlainLine(is_last);
}

void ProgressMeter::ShowPlainLine(bool at_the_end) {
  percent_shown_ = rate_.Percent();
  last_shown_ = session_.clock.Now();
  console_.WriteError(text_ + "  " + std::to_string(percent_shown_) + " %" +
                      RateAndTime(at_the_end) + "\n");
}

void ProgressMeter::Restart() {
  percent_shown_ = -1;
  rate_.Restart(rate_.Maximum());
}

}  // namespace zep::cli
