// What went over the lines of several radios, as text for people:
//
//        time radio  baud
//    0.005102     1  9600 > 5E                                               ^
//    0.006190     1  9600 < 76                                               v
//
// Seconds, ">" to the radio and "<" from it, 16 bytes a line at most. A byte stands at the time
// when it has arrived.
#pragma once

#include <string>

#include "platform/clock.h"
#include "platform/files.h"
#include "simulator/serial_line.h"

namespace zep::simulator {

class Transcript {
 public:
  // start is the time that is written as 0.
  explicit Transcript(platform::Duration start) : start_(start) {}
  Transcript(const Transcript&) = delete;
  Transcript& operator=(const Transcript&) = delete;
  ~Transcript() { EndLine(); }

  platform::SystemError Open(const std::string& file);
  void Add(int radio, const WireByte& byte);
  // Writes the line that is still open. Returns the first error in writing.
  platform::SystemError EndLine();

 private:
  platform::Duration start_;
  platform::FileWriter file_;

  // The line that is being gathered, without bytes when there is none.
  int radio_ = 0;
  WireByte first_;
  platform::Duration last_{};
  Bytes bytes_;
};

}  // namespace zep::simulator
