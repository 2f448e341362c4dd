#include <windows.h>
#include <array>

#include "platform/system_error.h"
#include "platform/wide_text.h"

namespace zep::platform {

SystemError MakeSystemError(int number, std::string subject) {
  std::array<wchar_t, 512> text{};
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, static_cast<DWORD>(number), 0, text.data(),
                                      static_cast<DWORD>(text.size()), nullptr);
  std::wstring_view words(text.data(), length);
  while (!words.empty() && std::wstring_view(L" .\r\n").find(words.back()) != words.npos) {
    words.remove_suffix(1);
  }
  SystemError error;
  error.number = number;
  error.description = Narrow(words);
  error.subject = std::move(subject);
  return error;
}

SystemError LastSystemError(std::string subject) {
  return MakeSystemError(static_cast<int>(GetLastError()), std::move(subject));
}

}  // namespace zep::platform
