// Ctrl-C, the closing of the terminal and the polite request to end, as something that a program
// asks for instead of dying of it.
#pragma once

namespace zep::platform {

// While an object lives, interrupts are counted (SIGINT, SIGTERM, SIGHUP; on Windows the console's
// events); afterwards they end the program, as is their default. Nor does the program end when it
// writes into a pipe that nobody reads any longer: a radio may be in the middle of something. One
// object at a time.
class Interrupts {
 public:
  Interrupts();
  ~Interrupts();
  Interrupts(const Interrupts&) = delete;
  Interrupts& operator=(const Interrupts&) = delete;

  // How many came since the last call.
  int Take();
};

}  // namespace zep::platform
