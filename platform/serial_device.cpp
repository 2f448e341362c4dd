#include "platform/serial_device.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <deque>
#include <thread>
#include <utility>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/serial_port.hpp>

#include "platform/advice.h"
#include "platform/serial_native.h"

namespace zep::platform {
namespace {

using SteadyClock = std::chrono::steady_clock;
using asio::serial_port_base;

struct LineSettings {
  unsigned baud = 9600;
  serial_port_base::parity::type parity = serial_port_base::parity::none;
  unsigned data_bits = 8;
  serial_port_base::stop_bits::type stop_bits = serial_port_base::stop_bits::one;
};

std::optional<unsigned> ToNumber(std::string_view text) {
  unsigned number = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (code != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// "9600,n,8,1": speed, parity n, e or o, data bits 5 to 8, stop bits 1, 1.5 or 2.
std::optional<LineSettings> ParseSettings(std::string_view text) {
  std::array<std::string_view, 4> words;
  for (std::string_view& word : words) {
    const std::size_t comma = text.find(',');
    word = text.substr(0, comma);
    text.remove_prefix(comma == text.npos ? text.size() : comma + 1);
  }
  const std::optional<unsigned> baud = ToNumber(words[0]);
  const std::optional<unsigned> data_bits = ToNumber(words[2]);
  const std::size_t parity = words[1].size() == 1 ? std::string_view("noeNOE").find(words[1]) : 6;
  const std::array stop_words = {std::string_view("1"), std::string_view("1.5"),
                                 std::string_view("2")};
  const auto stop = std::ranges::find(stop_words, words[3]);
  if (!baud || *baud == 0 || !data_bits || *data_bits < 5 || *data_bits > 8 || parity > 5 ||
      stop == stop_words.end() || !text.empty()) {
    return std::nullopt;
  }
  constexpr std::array parities = {serial_port_base::parity::none, serial_port_base::parity::odd,
                                   serial_port_base::parity::even};
  constexpr std::array stop_bits = {serial_port_base::stop_bits::one,
                                    serial_port_base::stop_bits::onepointfive,
                                    serial_port_base::stop_bits::two};
  return LineSettings{.baud = *baud,
                      .parity = parities[parity % 3],
                      .data_bits = *data_bits,
                      .stop_bits = stop_bits[static_cast<std::size_t>(stop - stop_words.begin())]};
}

// Input that nobody takes is left to the system, and to the line, from here on.
constexpr std::size_t kMostInput = 64 << 10;

// An open device. A read is always pending, so that input wakes whoever waits; what it brings is
// kept until it is asked for. What is written waits here until the system takes it.
class OpenLine {
 public:
  OpenLine(std::string device, SerialHandle handle)
      : device_(std::move(device)), handle_(handle), port_(io_, handle) {}
  ~OpenLine() {
    if (!failed_) ReleaseNativeSerial(handle_);
  }
  OpenLine(const OpenLine&) = delete;
  OpenLine& operator=(const OpenLine&) = delete;

  SystemError Apply(const LineSettings& settings, std::string_view text);

  // Takes what has come in and hands over what waits to go out.
  void Turn();
  // The same, but sleeps until there is something to do, or for that long.
  void TurnWithin(Duration longest);

  std::deque<std::uint8_t>& Input() { return input_; }
  void ClearInput();
  void Write(std::span<const std::uint8_t> bytes);
  std::size_t OutputCount();
  void ClearOutput();
  // How long the output will take, as far as known; between 0.1 and 20 milliseconds.
  Duration TimeToSend();

  bool Failed() const { return failed_; }
  SystemError TakeError() { return std::exchange(error_, {}); }

 private:
  void StartRead();
  void StartWrite();
  void OnRead(const std::error_code& code, std::size_t count);
  void OnWrite(const std::error_code& code, std::size_t count);
  void Fail(const std::error_code& code);

  std::string device_;
  SerialHandle handle_;
  asio::io_context io_;
  asio::serial_port port_;
  unsigned baud_ = 9600;
  std::array<std::uint8_t, 128>
      read_buffer_{};  // small: Windows shows a steady stream only when it is full
  bool reading_ = false;
  std::deque<std::uint8_t> input_;
  std::vector<std::uint8_t> waiting_;    // to be written
  std::vector<std::uint8_t> in_flight_;  // being written
  bool failed_ = false;
  SystemError error_;
};

SystemError OpenLine::Apply(const LineSettings& settings, std::string_view text) {
  if (failed_) return {};
  std::error_code code;
  port_.set_option(serial_port_base::baud_rate(settings.baud), code);
  if (!code) port_.set_option(serial_port_base::parity(settings.parity), code);
  if (!code) port_.set_option(serial_port_base::character_size(settings.data_bits), code);
  if (!code) port_.set_option(serial_port_base::stop_bits(settings.stop_bits), code);
  if (!code) {
    baud_ = settings.baud;
    return {};
  }
  return WithAdvice(MakeSystemError(code.value(), device_), Advice::kPortSettings,
                    {device_, std::string(text)});
}

void OpenLine::Turn() {
  io_.restart();
  io_.poll();
  if (reading_ || failed_ || input_.size() >= kMostInput) return;
  StartRead();
  io_.restart();
  io_.poll();
}

void OpenLine::TurnWithin(Duration longest) {
  Turn();
  if (failed_) return;
  io_.restart();
  io_.run_one_for(longest);
  Turn();
}

void OpenLine::StartRead() {
  reading_ = true;
  port_.async_read_some(asio::buffer(read_buffer_),
                        [this](const std::error_code& code, std::size_t count) {
                          reading_ = false;
                          OnRead(code, count);
                        });
}

void OpenLine::OnRead(const std::error_code& code, std::size_t count) {
  if (failed_) return;
  input_.insert(input_.end(), read_buffer_.begin(),
                read_buffer_.begin() + static_cast<std::ptrdiff_t>(count));
  if (code == asio::error::operation_aborted) return;  // by ClearOutput; the next turn reads on
  if (code) return Fail(code);
  if (input_.size() < kMostInput) StartRead();
}

void OpenLine::StartWrite() {
  in_flight_.swap(waiting_);
  port_.async_write_some(
      asio::buffer(in_flight_),
      [this](const std::error_code& code, std::size_t count) { OnWrite(code, count); });
}

void OpenLine::OnWrite(const std::error_code& code, std::size_t count) {
  if (failed_) return;
  if (code && code != asio::error::operation_aborted) return Fail(code);
  // What the system did not take goes first the next time; what ClearOutput has aborted does not.
  if (!code) {
    waiting_.insert(waiting_.begin(), in_flight_.begin() + static_cast<std::ptrdiff_t>(count),
                    in_flight_.end());
  }
  in_flight_.clear();
  if (!waiting_.empty()) StartWrite();
}

void OpenLine::Fail(const std::error_code& code) {
  failed_ = true;
  // A hang-up reads as the end of a file, which is Asio's own kind of error.
  const bool is_end = code.category() == asio::error::get_misc_category();
  error_ = DeviceGone(is_end ? 0 : code.value(), device_);
  input_.clear();
  waiting_.clear();
  ReleaseNativeSerial(handle_);
  std::error_code ignored;
  port_.close(ignored);
}

void OpenLine::ClearInput() {
  Turn();
  input_.clear();
}

void OpenLine::Write(std::span<const std::uint8_t> bytes) {
  if (failed_ || bytes.empty()) return;
  waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
  if (in_flight_.empty()) StartWrite();
  Turn();
}

std::size_t OpenLine::OutputCount() {
  Turn();
  return failed_ ? 0 : waiting_.size() + UnsentBytes(handle_, in_flight_.size());
}

void OpenLine::ClearOutput() {
  Turn();
  if (failed_) return;
  waiting_.clear();
  std::error_code ignored;
  if (!in_flight_.empty()) port_.cancel(ignored);
  DiscardOutput(handle_);
  Turn();
}

Duration OpenLine::TimeToSend() {
  constexpr int bits_in_byte = 10;  // with start and stop bit
  const std::chrono::duration<double> time(static_cast<double>(OutputCount() * bits_in_byte) /
                                           static_cast<double>(baud_));
  return std::clamp<Duration>(std::chrono::duration_cast<Duration>(time),
                              std::chrono::microseconds(100), std::chrono::milliseconds(20));
}

class SerialDevice final : public SerialPort {
 public:
  explicit SerialDevice(std::string device) : device_(std::move(device)) {}
  // NOLINTNEXTLINE(bugprone-exception-escape): only of no memory
  ~SerialDevice() override { SerialDevice::Close(); }

  std::string Device() const override { return device_; }
  SystemError Open() override;
  void Close() override;
  bool IsOpen() const override { return line_ != nullptr; }
  SystemError SetSettings(std::string_view settings) override;

  std::size_t InputCount() override;
  std::size_t OutputCount() override { return line_ ? line_->OutputCount() : 0; }
  void ClearInput() override {
    if (line_) line_->ClearInput();
  }
  void ClearOutput() override {
    if (line_) line_->ClearOutput();
  }
  std::optional<std::uint8_t> Read() override;
  void Write(std::span<const std::uint8_t> bytes) override {
    if (line_) line_->Write(bytes);
  }
  void WaitForInput(Duration longest) override;
  void WaitForOutput(Duration longest) override;
  SystemError TakeError() override;

 private:
  std::string device_;
  LineSettings settings_;
  std::string settings_text_ = "9600,n,8,1";
  std::unique_ptr<OpenLine> line_;
};

SystemError SerialDevice::Open() {
  if (line_ && !line_->Failed()) return {};
  line_.reset();
  NativeSerial native = OpenNativeSerial(device_);
  if (native.error) return std::move(native.error);
  try {
    line_ = std::make_unique<OpenLine>(device_, native.handle);
  } catch (const std::system_error& failure) {
    CloseNativeSerial(native.handle);
    return MakeSystemError(failure.code().value(), device_);
  }
  SystemError error = line_->Apply(settings_, settings_text_);
  if (error) line_.reset();
  return error;
}

void SerialDevice::Close() {
  WaitForOutput(std::chrono::seconds(1));
  line_.reset();
}

SystemError SerialDevice::SetSettings(std::string_view settings) {
  const std::optional<LineSettings> parsed = ParseSettings(settings);
  if (!parsed) {
    return WithAdvice(MakeSystemError(std::make_error_code(std::errc::invalid_argument), device_),
                      Advice::kPortSettings, {device_, std::string(settings)});
  }
  if (line_) {
    if (SystemError error = line_->Apply(*parsed, settings)) return error;
  }
  settings_ = *parsed;
  settings_text_ = settings;
  return {};
}

std::size_t SerialDevice::InputCount() {
  if (!line_) return 0;
  line_->Turn();
  return line_->Input().size();
}

std::optional<std::uint8_t> SerialDevice::Read() {
  if (!line_) return std::nullopt;
  std::deque<std::uint8_t>& input = line_->Input();
  if (input.empty()) line_->Turn();
  if (input.empty()) return std::nullopt;
  const std::uint8_t byte = input.front();
  input.pop_front();
  return byte;
}

void SerialDevice::WaitForInput(Duration longest) {
  // Whoever waits in a loop for a port that is no more must not keep the processor busy.
  if (!line_ || line_->Failed()) return std::this_thread::sleep_for(longest);
  const SteadyClock::time_point end = SteadyClock::now() + longest;
  line_->Turn();
  while (line_->Input().empty() && !line_->Failed()) {
    const Duration left = end - SteadyClock::now();
    if (left <= Duration::zero()) return;
    line_->TurnWithin(left);
  }
}

void SerialDevice::WaitForOutput(Duration longest) {
  const SteadyClock::time_point end = SteadyClock::now() + longest;
  while (line_ && line_->OutputCount() > 0) {
    const Duration left = end - SteadyClock::now();
    if (left <= Duration::zero()) return;
    line_->TurnWithin(std::min(left, line_->TimeToSend()));
  }
}

SystemError SerialDevice::TakeError() {
  if (!line_) return {};
  if (!line_->Failed()) line_->Turn();
  return line_->TakeError();
}

}  // namespace

std::unique_ptr<SerialPort> MakeSerialDevice(std::string device) {
  return std::make_unique<SerialDevice>(std::move(device));
}

}  // namespace zep::platform
