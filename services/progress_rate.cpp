#include "services/progress_rate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "services/messages.h"

namespace zep::services {
namespace {

using platform::Duration;

// Seconds; what happens in less time tells nothing of rate and time left.
constexpr double kShortestMeasure = 0.5;

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

}  // namespace

void ProgressRate::Restart(int maximum) {
  maximum_ = std::max(maximum, 0);
  value_ = 0;
  started_ = last_step_ = Now();
  bytes_at_start_ = bytes_at_last_step_ = bytes_on_the_wire_;
}

void ProgressRate::SetValue(int value) {
  value_ = std::clamp(value, 0, maximum_);
  last_step_ = Now();
  bytes_at_last_step_ = bytes_on_the_wire_;
}

int ProgressRate::Percent() const {
  return maximum_ > 0 ? static_cast<int>(100LL * value_ / maximum_) : 0;
}

std::string ProgressRate::Text(bool at_the_end) const {
  const double elapsed = Seconds(last_step_ - started_);
  if (elapsed < kShortestMeasure || value_ <= 0) return {};
  std::string text;
  if (const std::uint64_t bytes = bytes_at_last_step_ - bytes_at_start_; bytes > 0)
    text += Rate(static_cast<double>(bytes) / elapsed) + "  ";
  if (at_the_end || value_ == maximum_)
    return text + NLSFmt(session_, "in %0:s", {TimeTaken(elapsed)});
  const double left = elapsed * (maximum_ - value_) / value_;
  return text + NLSFmt(session_, "%0:s left", {Time(left)});
}

}  // namespace zep::services
