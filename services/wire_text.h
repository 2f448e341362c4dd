// What goes over serial lines, as text for people, 16 bytes a line at most:
//
//        time port
//    0.004330    1  9600,n,8,1
//    0.005102    1  > 5E                                               ^
//    0.006190    1  < 76                                               v
//
// Seconds, ">" to the radio and "<" from it; a pause starts a new line, so that its time can be
// seen. Every byte is handed on at once, so that the end is there whatever becomes of the program.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace zep::services {

// Where a byte is on its way.
struct WirePlace {
  int port = 0;
  bool from_radio = false;
  int baud = 0;  // a column of its own behind the port, none when 0

  bool operator==(const WirePlace&) const = default;
};

class WireText {
 public:
  // Takes the text piece by piece as it comes.
  using Sink = std::function<void(std::string_view piece)>;

  explicit WireText(Sink sink) : sink_(std::move(sink)) {}
  WireText(const WireText&) = delete;
  WireText& operator=(const WireText&) = delete;
  ~WireText() { EndLine(); }

  // Something that is not on the wire: a port is opened, closed, set up.
  void Note(platform::Duration time, int port, std::string_view text);
  void Byte(platform::Duration time, const WirePlace& place, std::uint8_t byte);
  void EndLine();

 private:
  void StartLine(platform::Duration time, const WirePlace& place);

  Sink sink_;

  // The line that is being written.
  WirePlace place_;
  std::string printable_;  // a character for each of its bytes; empty when there is no line
  platform::Duration last_byte_{};
};

}  // namespace zep::services
