// What went wrong when the operating system was asked for something: the number and words for the user's message, and
// what the user can do about it. Every procedure of platform/ reports failure with it; nothing is thrown.
#pragma once

#include <string>

namespace zep::platform {

// Numbers that have a message of their own; all other numbers are the operating system's.
inline constexpr int kPortDoesNotExist = 8002;
inline constexpr int kPortInUse = 8005;

struct SystemError {
  int number = 0;           // 0: nothing went wrong
  std::string description;  // the operating system's words, without a trailing full stop
  std::string subject;      // the file or device it is about, in UTF-8; may be empty
  std::string advice;       // cause and next step in English, one sentence or two; may be empty

  explicit operator bool() const { return number != 0; }
};

// The error that errno (POSIX) or GetLastError (Windows) stands for, about subject.
SystemError LastSystemError(std::string subject);

}  // namespace zep::platform
