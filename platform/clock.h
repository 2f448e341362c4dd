// Time as the program sees it: a steady clock, the local time of day and sleeping. Programs run on
// SystemClock; tests and benchmarks run on VirtualClock, where four seconds pass at once.
#pragma once

#include <chrono>
#include <ctime>

namespace zep::platform {

// Time since some fixed moment; never goes back.
using Duration = std::chrono::nanoseconds;

class Clock {
 public:
  virtual ~Clock() = default;

  virtual Duration Now() = 0;
  virtual std::tm LocalTime() = 0;
  // Blocks the calling thread for at least duration; not at all when it is zero or negative.
  virtual void Sleep(Duration duration) = 0;
};

class SystemClock final : public Clock {
 public:
  Duration Now() override;
  std::tm LocalTime() override;
  void Sleep(Duration duration) override;
};

// Starts at zero, at 2026-11-21 07:05:33 local time, and moves only when somebody sleeps.
class VirtualClock final : public Clock {
 public:
  Duration Now() override { return now_; }
  std::tm LocalTime() override;
  void Sleep(Duration duration) override {
    if (duration > Duration::zero()) now_ += duration;
  }

 private:
  Duration now_{};
};

}  // namespace zep::platform
