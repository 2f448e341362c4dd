#include "link/wire_trace.h"

namespace zep::link {

WatchedPort::WatchedPort(std::unique_ptr<platform::SerialPort> port, std::uint64_t& byte_count,
                         WireTrace* trace)
    : port_(std::move(port)), byte_count_(byte_count), trace_(trace) {}

platform::SystemError WatchedPort::Open() {
  const bool was_open = port_->IsOpen();
  // A port that has failed counts as open, and is opened anew by this.
  platform::SystemError error = port_->Open();
  if (!was_open || error) Note("open " + Device() + (error ? ": " + error.description : ""));
  return error;
}

void WatchedPort::Close() {
  const bool was_open = port_->IsOpen();
  port_->Close();
  if (was_open) Note("close");
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
