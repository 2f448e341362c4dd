#include "services/log.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/files.h"

namespace zep::services {

std::string DateAndTime(const std::tm& local_time) {
  std::array<char, 32> text{};
  const std::size_t length =
      std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local_time);
  return {text.data(), length};
}

ApplicationLog::ApplicationLog(platform::Clock& clock, std::string file_name)
    : clock_(clock), file_name_(std::move(file_name)) {}

void ApplicationLog::Line(std::string_view text) { Append("", text); }

void ApplicationLog::Error(std::string_view text) { Append("Error: ", text); }

void ApplicationLog::Append(std::string_view prefix, std::string_view text) {
  if (file_name_.empty()) return;
  std::string line =
      std::string(prefix) + DateAndTime(clock_.LocalTime()) + "  " + std::string(text);
  std::replace(line.begin(), line.end(), '\n', ' ');
  platform::FileWriter file;
  if (file.Open(file_name_, platform::WriteMode::kAppend)) return;
  file.Write(line + "\n");
}

}  // namespace zep::services
