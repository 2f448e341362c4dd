// What went over the lines of several radios, in a file, as services/wire_text.h writes it, with
// the radio's number and the baud rate. A byte stands at the time when it has arrived.
#pragma once

#include <string>

#include "platform/clock.h"
#include "platform/files.h"
#include "services/wire_text.h"
#include "simulator/serial_line.h"

namespace zep::simulator {

class Transcript {
 public:
  // start is the time that is written as 0.
  explicit Transcript(platform::Duration start) : start_(start) {}

  platform::SystemError Open(const std::string& file);
  void Add(int radio, const WireByte& byte);
  // Writes the line that is still open. Returns the first error in writing.
  platform::SystemError EndLine();

 private:
  platform::Duration start_;
  platform::FileWriter file_;
  services::WireText text_{[this](std::string_view piece) { file_.Write(piece); }};
};

}  // namespace zep::simulator
