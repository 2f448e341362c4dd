#include <algorithm>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include "platform/terminal.h"

namespace zep::platform {

bool IsTerminal(StandardStream stream) {
  switch (stream) {
    case StandardStream::kInput:
      return isatty(STDIN_FILENO) == 1;
    case StandardStream::kOutput:
      return isatty(STDOUT_FILENO) == 1;
    case StandardStream::kError:
      return isatty(STDERR_FILENO) == 1;
  }
  return false;
}

int TerminalWidth() {
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
  return size.ws_col;
}

bool WaitForStandardInput(Duration longest) {
  const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(longest).count();
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return poll(&input, 1, static_cast<int>(std::max<std::int64_t>(milliseconds, 0))) > 0;
}

void DropTypedAhead() { tcflush(STDIN_FILENO, TCIFLUSH); }

void PrepareTerminal() {}

std::vector<std::string> ProgramArguments(int argc, const char* const* argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

}  // namespace zep::platform
