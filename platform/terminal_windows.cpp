#include <windows.h>
#include <algorithm>
#include <shellapi.h>

#include "platform/terminal.h"
#include "platform/wide_text.h"

namespace zep::platform {
namespace {

HANDLE HandleOf(StandardStream stream) {
  switch (stream) {
    case StandardStream::kInput:
      return GetStdHandle(STD_INPUT_HANDLE);
    case StandardStream::kOutput:
      return GetStdHandle(STD_OUTPUT_HANDLE);
    case StandardStream::kError:
      return GetStdHandle(STD_ERROR_HANDLE);
  }
  return nullptr;
}

}  // namespace

bool IsTerminal(StandardStream stream) {
  DWORD mode = 0;
  return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

int TerminalWidth() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(HandleOf(StandardStream::kError), &info) == 0) return 80;
  return info.srWindow.Right - info.srWindow.Left + 1;
}

bool WaitForStandardInput(Duration longest) {
  const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(longest).count();
  return WaitForSingleObject(HandleOf(StandardStream::kInput),
                             static_cast<DWORD>(std::max<std::int64_t>(milliseconds, 0))) ==
         WAIT_OBJECT_0;
}

void DropTypedAhead() { FlushConsoleInputBuffer(HandleOf(StandardStream::kInput)); }

void PrepareTerminal() {
  SetConsoleOutputCP(CP_UTF8);
  SetConsoleCP(CP_UTF8);
}

std::vector<std::string> ProgramArguments(int, const char* const*) {
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; words != nullptr && i < count; ++i) arguments.push_back(Narrow(words[i]));
  LocalFree(words);
  return arguments;
}

}  // namespace zep::platform
