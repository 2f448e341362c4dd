// What went wrong when the operating system was asked for something: the number and words for the
// user's message, and what the user can do about it. Every procedure of platform/ reports failure
// with it; nothing is thrown.
#pragma once

#include <string>
#include <system_error>
#include <vector>

namespace zep::platform {

// Numbers that have a message of their own; all other numbers are the operating system's.
inline constexpr int kPortDoesNotExist = 8002;
inline constexpr int kPortInUse = 8005;

struct SystemError {
  int number = 0;                // 0: nothing went wrong
  std::string description = {};  // the operating system's words, without a trailing full stop
  std::string subject = {};      // the file or device it is about, in UTF-8; may be empty
  // Cause and next step, one sentence or two; may be empty. An English text with the placeholders
  // %0:s, %1:s, ... and what stands for them, so that it can be translated (advice.h has all these
  // texts).
  std::string advice = {};
  std::vector<std::string> advice_arguments = {};

  explicit operator bool() const { return number != 0; }
};

// The error of the operating system with this number, about subject.
SystemError MakeSystemError(int number, std::string subject);

// The same for an error code of the standard library; no error for a code of 0.
SystemError MakeSystemError(const std::error_code& code, std::string subject);

// The error that errno (POSIX) or GetLastError (Windows) stands for, about subject.
SystemError LastSystemError(std::string subject);

}  // namespace zep::platform
