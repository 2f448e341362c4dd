#include "services/wire_text.h"

#include <array>
#include <cstdio>
#include <utility>

#include "services/hex_text.h"

namespace zep::services {
namespace {

constexpr std::size_t kBytesInLine = 16;
constexpr platform::Duration kPause = std::chrono::milliseconds(50);

char Printable(std::uint8_t byte) {
  return byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
}

}  // namespace

void WireText::Note(platform::Duration time, int port, std::string_view text) {
  EndLine();
  StartLine(time, {.port = port});
  sink_(std::string(text) + "\n");
}

void WireText::Byte(platform::Duration time, const WirePlace& place, std::uint8_t byte) {
  const bool goes_on = !printable_.empty() && place == place_ && printable_.size() < kBytesInLine &&
                       time - last_byte_ < kPause;
  if (!goes_on) {
    EndLine();
    StartLine(time, place);
    place_ = place;
    sink_(place.from_radio ? "<" : ">");
  }
  sink_(" " + ConBytNumToHex(byte));
  printable_ += Printable(byte);
  last_byte_ = time;
}

void WireText::EndLine() {
  if (printable_.empty()) return;
  const std::string gap(3 * (kBytesInLine - printable_.size()) + 2, ' ');
  sink_(gap + std::exchange(printable_, {}) + "\n");
}

void WireText::StartLine(platform::Duration time, const WirePlace& place) {
  const double seconds = std::chrono::duration<double>(time).count();
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%12.6f %4d  ", seconds, place.port);
  sink_(text.data());
  if (place.baud == 0) return;
  std::snprintf(text.data(), text.size(), "%5d  ", place.baud);
  sink_(text.data());
}

}  // namespace zep::services
