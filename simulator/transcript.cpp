#include "simulator/transcript.h"

#include <cstdio>

namespace zep::simulator {

namespace {

constexpr std::size_t kBytesPerLine = 16;
constexpr int kHexWidth = static_cast<int>(3 * kBytesPerLine);
constexpr platform::Duration kPause = std::chrono::milliseconds(50);  // what follows begins a line

bool IsPrintable(std::uint8_t byte) { return byte >= 0x20 && byte < 0x7F; }

}  // namespace

platform::SystemError Transcript::Open(const std::string& file) {
  platform::SystemError error = file_.Open(file, platform::WriteMode::kReplace);
  if (!error) file_.Write("       time radio  baud\n");
  return error;
}

void Transcript::Add(int radio, const WireByte& byte) {
  const bool goes_on = radio == radio_ && byte.from_radio == first_.from_radio &&
                       byte.baud == first_.baud && byte.due - last_ < kPause;
  if (!goes_on || bytes_.size() == kBytesPerLine) EndLine();
  if (bytes_.empty()) {
    radio_ = radio;
    first_ = byte;
  }
  last_ = byte.due;
  bytes_.push_back(byte.value);
}

platform::SystemError Transcript::EndLine() {
  if (bytes_.empty()) return file_.Error();
  std::string hex;
  std::string printable;
  for (const std::uint8_t byte : bytes_) {
    hex += HexByte(byte) + " ";
    printable += IsPrintable(byte) ? static_cast<char>(byte) : '.';
  }
  const std::chrono::duration<double> time = first_.due - start_;
  char line[160];
  std::snprintf(line, sizeof line, "%11.6f %5d %5d %c %-*s%s\n", time.count(), radio_, first_.baud,
                first_.from_radio ? '<' : '>', kHexWidth, hex.c_str(), printable.c_str());
  file_.Write(line);
  bytes_.clear();
  return file_.Error();
}

}  // namespace zep::simulator
