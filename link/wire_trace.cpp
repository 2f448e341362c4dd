#include "link/wire_trace.h"

#include <array>
#include <cstdio>
#include <utility>

#include "services/hex_text.h"

namespace zep::link {
namespace {

constexpr std::size_t kBytesInLine = 16;
// A pause this long starts a new line, so that its time can be seen.
constexpr platform::Duration kPause = std::chrono::milliseconds(50);

std::string Printable(std::uint8_t byte) {
  return {byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.'};
}

}  // namespace

void WireTrace::Note(int port, const std::string& text) {
  EndLine();
  StartLine(port);
  sink_(text + "\n");
}

void WireTrace::Byte(int port, bool from_radio, std::uint8_t byte) {
  const platform::Duration now = clock_.Now();
  const bool goes_on = !printable_.empty() && port == port_ && from_radio == from_radio_ &&
                       printable_.size() < kBytesInLine && now - last_byte_ < kPause;
  if (!goes_on) {
    EndLine();
    StartLine(port);
    port_ = port;
    from_radio_ = from_radio;
    sink_(from_radio ? "<" : ">");
  }
  sink_(" " + services::ConBytNumToHex(byte));
  printable_ += Printable(byte);
  last_byte_ = now;
}

void WireTrace::StartLine(int port) {
  const double seconds = std::chrono::duration<double>(clock_.Now() - start_).count();
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%12.6f %4d  ", seconds, port);
  sink_(text.data());
}

void WireTrace::EndLine() {
  if (printable_.empty()) return;
  const std::string gap(3 * (kBytesInLine - printable_.size()) + 2, ' ');
  sink_(gap + std::exchange(printable_, {}) + "\n");
}

WatchedPort::WatchedPort(std::unique_ptr<platform::SerialPort> port, std::uint64_t& byte_count,
                         WireTrace* trace)
    : port_(std::move(port)), byte_count_(byte_count), trace_(trace) {}

platform::SystemError WatchedPort::Open() {
  if (port_->IsOpen()) return {};
  platform::SystemError error = port_->Open();
  Note("open " + Device() + (error ? ": " + error.description : ""));
  return error;
}

void WatchedPort::Close() {
  if (!port_->IsOpen()) return;
  port_->Close();
  Note("close");
}

platform::SystemError WatchedPort::SetSettings(std::string_view settings) {
  platform::SystemError error = port_->SetSettings(settings);
  Note(std::string(settings) + (error ? ": " + error.description : ""));
  return error;
}

void WatchedPort::ClearInput() {
  // What is thrown away was on the wire all the same.
  for (std::size_t count = port_->InputCount(); count > 0; --count) Read();
  port_->ClearInput();
}

std::optional<std::uint8_t> WatchedPort::Read() {
  const std::optional<std::uint8_t> byte = port_->Read();
  if (byte) {
    ++byte_count_;
    if (trace_ != nullptr) trace_->Byte(PortNumber(), true, *byte);
  }
  return byte;
}

void WatchedPort::Write(std::span<const std::uint8_t> bytes) {
  port_->Write(bytes);
  byte_count_ += bytes.size();
  if (trace_ == nullptr) return;
  for (const std::uint8_t byte : bytes) trace_->Byte(PortNumber(), false, byte);
}

platform::SystemError WatchedPort::TakeError() {
  platform::SystemError error = port_->TakeError();
  if (error) Note(error.description);
  return error;
}

void WatchedPort::Note(const std::string& text) {
  if (trace_ != nullptr) trace_->Note(PortNumber(), text);
}

}  // namespace zep::link
