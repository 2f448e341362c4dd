#include <windows.h>

#include "platform/pseudo_terminal.h"

// Windows has no pseudo-terminals that look like a serial port.
namespace zep::platform {

SystemError PseudoTerminal::Open() { return MakeSystemError(ERROR_NOT_SUPPORTED, "pty"); }

void PseudoTerminal::Close() {}

int PseudoTerminal::BaudSetByProgram() const { return 0; }

std::size_t PseudoTerminal::Read(std::span<std::uint8_t>) { return 0; }

std::size_t PseudoTerminal::Write(std::span<const std::uint8_t>) { return 0; }

bool PseudoTerminal::WaitAny(std::span<PseudoTerminal* const>, Duration) { return false; }

}  // namespace zep::platform
