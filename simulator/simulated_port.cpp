#include "simulator/simulated_port.h"

#include <algorithm>
#include <utility>

#include "platform/advice.h"
#include "simulator/numbers.h"
#include "simulator/radio_text.h"

namespace zep::simulator {

namespace {

constexpr int kInputOutputError = 5;
constexpr int kInvalidArgument = 22;

}  // namespace

SimulatedPort::SimulatedPort(std::string device, RadioProfile profile, platform::Clock& clock)
    : device_(std::move(device)),
      clock_(clock),
      radio_(std::move(profile)),
      line_(radio_, radio_.Profile().paced) {}

SimulatedRadio& SimulatedPort::Radio() {
  Advance();
  return radio_;
}

void SimulatedPort::Advance() { line_.Advance(clock_.Now()); }

platform::SystemError SimulatedPort::Open() {
  if (std::exchange(open_, true)) return {};
  Advance();
  if (line_.IsCut()) line_.Mend();
  error_taken_ = false;
  line_.Input().clear();
  return {};
}

void SimulatedPort::Close() {
  if (open_) WaitForOutput(std::chrono::seconds(1));
  open_ = false;
}

platform::SystemError SimulatedPort::SetSettings(std::string_view settings) {
  const int baud = Decimal(settings.substr(0, settings.find(','))).value_or(0);
  if (baud <= 0) {
    return WithAdvice({kInvalidArgument, "Invalid argument", device_, {}, {}},
                      platform::Advice::kPortSettings, {device_, std::string(settings)});
  }
  Advance();
  line_.SetProgramBaud(baud);
  return {};
}

std::size_t SimulatedPort::InputCount() {
  Advance();
  return Works() ? line_.Input().size() : 0;
}

std::size_t SimulatedPort::OutputCount() {
  Advance();
  return Works() ? line_.OutputCount() : 0;
}

void SimulatedPort::ClearInput() {
  Advance();
  line_.Input().clear();
}

void SimulatedPort::ClearOutput() {
  Advance();
  line_.ClearOutput();
}

std::optional<std::uint8_t> SimulatedPort::Read() {
  if (InputCount() == 0) return std::nullopt;
  const std::uint8_t byte = line_.Input().front();
  line_.Input().pop_front();
  return byte;
}

void SimulatedPort::Write(std::span<const std::uint8_t> bytes) {
  Advance();
  if (Works()) line_.Send(bytes, clock_.Now());
}

void SimulatedPort::WaitForInput(platform::Duration longest) {
  const platform::Duration end = clock_.Now() + longest;
  while (InputCount() == 0 && clock_.Now() < end) {
    if (HasNewError()) return;
    const platform::Duration next = std::min(line_.NextEvent().value_or(end), end);
    clock_.Sleep(next - clock_.Now());
  }
}

void SimulatedPort::WaitForOutput(platform::Duration longest) {
  const platform::Duration end = clock_.Now() + longest;
  while (OutputCount() > 0 && clock_.Now() < end) {
    clock_.Sleep(std::min(line_.OutputEnds(), end) - clock_.Now());
  }
}

platform::SystemError SimulatedPort::TakeError() {
  Advance();
  if (!HasNewError()) return {};
  error_taken_ = true;
  return WithAdvice({kInputOutputError, "Input/output error", device_, {}, {}},
                    platform::Advice::kPortGone, {device_});
}

bool IsSimulatedDevice(std::string_view device) { return device.starts_with(kSimulatedPrefix); }

Parsed<std::unique_ptr<SimulatedPort>> MakeSimulatedPort(std::string_view device,
                                                         platform::Clock& clock) {
  Parsed<RadioProfile> radio = ParseRadio(device);
  if (!radio.value) return {{}, std::move(radio.error)};
  return {std::make_unique<SimulatedPort>(std::string(device), std::move(*radio.value), clock), {}};
}

}  // namespace zep::simulator
