// A serial line between two programs of this computer. This class is the far end, where the
// simulated radio sits; a program opens SlaveName() as if it were a serial device. Programs may
// come and go: the line stays until Close(). Pseudo-terminals exist on Linux only; elsewhere Open()
// fails with the operating system's "not supported".
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "platform/clock.h"
#include "platform/system_error.h"

namespace zep::platform {

class PseudoTerminal {
 public:
  PseudoTerminal() = default;
  ~PseudoTerminal() { Close(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  // Makes the line: bytes pass as they are, nothing is echoed. Does nothing when it is there
  // already.
  SystemError Open();
  // Pulls the cable: a program that has the line open sees a hang-up.
  void Close();
  bool IsOpen() const { return master_ >= 0; }

  // What a program opens ("/dev/pts/5"); empty while closed.
  const std::string& SlaveName() const { return slave_name_; }

  // The speed of the line as the program set it, in baud; 0 as long as none did, or when it is no
  // standard speed.
  int BaudSetByProgram() const;

  // Takes what the program has sent, as much as fits, without waiting. Returns the number of bytes.
  std::size_t Read(std::span<std::uint8_t> bytes);

  // Sends to the program without waiting. Returns how many bytes were taken; the rest is to be
  // offered again later.
  std::size_t Write(std::span<const std::uint8_t> bytes);

  // Waits until one of the open terminals has input or longest is over. Returns whether one has.
  static bool WaitAny(std::span<PseudoTerminal* const> terminals, Duration longest);

 private:
  int master_ = -1;
  int slave_ = -1;  // held so that the line outlives each program
  std::string slave_name_;
};

}  // namespace zep::platform
