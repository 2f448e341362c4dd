// The program zepctl.
#include "cli/zepctl.h"
#include "platform/terminal.h"
#include "programs/this_computer.h"

int main(int argc, char** argv) {
  zep::platform::PrepareTerminal();
  const zep::programs::ThisComputer computer;
  zep::cli::StandardConsole console;
  return static_cast<int>(
      zep::cli::RunZepctl(zep::platform::ProgramArguments(argc, argv), console, computer.Get()));
}
