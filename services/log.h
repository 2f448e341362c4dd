// The application's log: what went wrong behind the scenes, line by line, for whoever helps the
// user.
#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"

namespace zep::services {

// "2026-11-21 07:05:33": how logs write a local date and time.
std::string DateAndTime(const std::tm& local_time);

class ApplicationLog {
 public:
  // Appends to the file, which is opened and closed for every line; an empty name keeps nothing. A
  // line that cannot be written is lost: a log never stops a job.
  ApplicationLog(platform::Clock& clock, std::string file_name);

  // Date and time, two blanks, the text; line breaks inside become blanks.
  void Line(std::string_view text);
  // The same behind "Error: ".
  void Error(std::string_view text);

 private:
  void Append(std::string_view prefix, std::string_view text);

  platform::Clock& clock_;
  std::string file_name_;
};

}  // namespace zep::services
