// The terminal that a program was started from, if there is one.
#pragma once

#include <string>
#include <vector>

#include "platform/clock.h"

namespace zep::platform {

enum class StandardStream { kInput, kOutput, kError };

// Whether a person sits at the other end, rather than a file or another program.
bool IsTerminal(StandardStream stream);

// Characters in a line of the terminal at standard error; 80 when nobody tells.
int TerminalWidth();

// Waits until standard input has something to read or has ended, at most that long. An interrupt
// ends the wait early.
bool WaitForStandardInput(Duration longest);

// Forgets what was typed at the terminal and not read yet.
void DropTypedAhead();

// Lets the terminal show UTF-8. Only Windows needs it.
void PrepareTerminal();

// The arguments of main without the program's name, in UTF-8 on every system.
std::vector<std::string> ProgramArguments(int argc, const char* const* argv);

}  // namespace zep::platform
