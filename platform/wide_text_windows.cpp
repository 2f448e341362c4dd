#include <windows.h>

#include "platform/wide_text.h"

namespace zep::platform {

std::wstring Widen(std::string_view utf8) {
  const int size = static_cast<int>(utf8.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
  std::wstring result(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, result.data(), length);
  return result;
}

std::string Narrow(std::wstring_view utf16) {
  const int size = static_cast<int>(utf16.size());
  const int length =
      WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, utf16.data(), size, result.data(), length, nullptr, nullptr);
  return result;
}

}  // namespace zep::platform
