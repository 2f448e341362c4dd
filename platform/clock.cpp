#include "platform/clock.h"

#include <thread>

namespace zep::platform {

Duration SystemClock::Now() { return std::chrono::steady_clock::now().time_since_epoch(); }

std::tm SystemClock::LocalTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  return local;
}

void SystemClock::Sleep(Duration duration) {
  const Duration end = Now() + duration;
  for (Duration left = duration; left > Duration::zero(); left = end - Now()) {
    std::this_thread::sleep_for(left);
  }
}

std::tm VirtualClock::LocalTime() {
  using namespace std::chrono_literals;
  constexpr std::chrono::sys_seconds start =
      std::chrono::sys_days(2026y / std::chrono::November / 21d) + 7h + 5min + 33s;
  const auto now = start + std::chrono::floor<std::chrono::seconds>(now_);
  const auto day = std::chrono::floor<std::chrono::days>(now);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(now - day);
  std::tm local{};
  local.tm_year = static_cast<int>(date.year()) - 1900;
  local.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
  local.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
  local.tm_hour = static_cast<int>(time.hours().count());
  local.tm_min = static_cast<int>(time.minutes().count());
  local.tm_sec = static_cast<int>(time.seconds().count());
  local.tm_wday = static_cast<int>(std::chrono::weekday(day).c_encoding());
  local.tm_yday = static_cast<int>((day - std::chrono::sys_days(date.year() / 1 / 1)).count());
  return local;
}

}  // namespace zep::platform
