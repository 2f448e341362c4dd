#include <windows.h>
#include <psapi.h>
#include <shellapi.h>

#include "platform/advice.h"
#include "platform/processes.h"
#include "platform/wide_text.h"

namespace zep::platform {
namespace {

// One word of a command line, so that the program's own reading of it gives the word back:
// backslashes count only before a quote, where each must be doubled.
std::wstring Quoted(const std::string& word) {
  std::wstring result = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t letter : Widen(word)) {
    if (letter == L'"') result.append(backslashes + 1, L'\\');
    backslashes = letter == L'\\' ? backslashes + 1 : 0;
    result += letter;
  }
  result.append(backslashes, L'\\');
  return result + L'"';
}

std::chrono::nanoseconds From(const FILETIME& time) {
  const std::uint64_t ticks = (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
  return std::chrono::nanoseconds(ticks * 100);
}

}  // namespace

SystemError StartProgram(const std::string& program, const std::vector<std::string>& arguments) {
  std::wstring command = Quoted(program);
  for (const std::string& argument : arguments) command += L' ' + Quoted(argument);
  STARTUPINFOW how{};
  how.cb = sizeof how;
  PROCESS_INFORMATION started{};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr,
                     nullptr, &how, &started) == 0) {
    return WithAdvice(LastSystemError(program), Advice::kProgramMissing, {program});
  }
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  return {};
}

SystemError OpenWebAddress(const std::string& address) {
  const bool has_scheme = address.find("://") != address.npos;
  const std::wstring target = Widen(has_scheme ? address : "http://" + address);
  const HINSTANCE result =
      ShellExecuteW(nullptr, L"open", target.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  const auto number = reinterpret_cast<INT_PTR>(result);
  if (number > 32) return {};
  return WithAdvice(MakeSystemError(static_cast<int>(number), address), Advice::kOpenAddressByHand,
                    {address});
}

Duration ProcessorTime() {
  FILETIME created{};
  FILETIME ended{};
  FILETIME kernel{};
  FILETIME user{};
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
  return From(kernel) + From(user);
}

std::uint64_t PeakMemory() {
  PROCESS_MEMORY_COUNTERS counters{};
  if (K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) == 0) return 0;
  return counters.PeakWorkingSetSize;
}

}  // namespace zep::platform
