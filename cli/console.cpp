#include "cli/console.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/terminal.h"

namespace zep::cli {
namespace {

constexpr platform::Duration kLookForInterrupts = std::chrono::milliseconds(100);

bool Write(std::FILE* stream, std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
         std::fflush(stream) == 0;
}

}  // namespace

StandardConsole::StandardConsole()
    : shows_to_person_(platform::IsTerminal(platform::StandardStream::kError)),
      can_ask_(shows_to_person_ && platform::IsTerminal(platform::StandardStream::kInput)) {}

void StandardConsole::WriteOutput(std::string_view text) {
  if (!Write(stdout, text) && errno != EPIPE) has_lost_output_ = true;
}

void StandardConsole::WriteError(std::string_view text) { Write(stderr, text); }

int StandardConsole::Width() const { return platform::TerminalWidth(); }

void StandardConsole::DropTypedAhead() { platform::DropTypedAhead(); }

std::optional<std::string> StandardConsole::ReadLine() {
  while (!platform::WaitForStandardInput(kLookForInterrupts)) {
    interrupts_seen_ += interrupts_.Take();
    if (interrupts_seen_ > 0) return std::nullopt;
  }
  std::string line;
  for (int character = std::getc(stdin); character != '\n'; character = std::getc(stdin)) {
    if (character == EOF) return std::nullopt;
    line += static_cast<char>(character);
  }
  return line;
}

int StandardConsole::TakeInterrupts() {
  return std::exchange(interrupts_seen_, 0) + interrupts_.Take();
}

}  // namespace zep::cli
