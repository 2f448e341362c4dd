// MainModule, the program's start: command line, single copy, language, splash, ports, then the
// main window.
#pragma once

#include <optional>
#include <string_view>

#include "shell/application.h"

namespace zep::shell {

class frmMDI;

// Every word, separated by single blanks, must be one of the options HIGHSPEED, UPLOAD and INHOUSE,
// in capitals. False, and the user has been told, when one is not, or when the operating system
// cannot be determined.
bool CheckCommandLine(Application& application, std::string_view command_line);

// Finds out the operating system's name and whether the processor is fast. Returns the processor
// type, 0 for a 386 or 486; nothing, and the user has been told, when the system does not tell.
std::optional<int> DetectCpu(Application& application);

// Whether this is the only copy of the program. Unless silent the user is told when it is not; the
// other copy comes to the front.
bool AppInitialise(Application& application, bool silent);

// The whole start. The main window is shown then; null when the program has to end.
frmMDI* Main(Application& application, std::string_view command_line);

}  // namespace zep::shell
