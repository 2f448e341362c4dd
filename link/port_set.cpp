#include "link/port_set.h"

#include <algorithm>
#include <string>
#include <utility>

#include "link/byte_exchange.h"
#include "link/job.h"
#include "services/messages.h"

namespace zep::link {
namespace {

using platform::SystemError;
using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;
using services::ReportError;
using services::Session;

std::string StateSetting(int port) { return "CommPort" + std::to_string(port) + "State"; }

bool CanBeOpened(platform::SerialPort& port) {
  port.Open();
  const bool opened = port.IsOpen();
  port.Close();
  return opened;
}

bool AnyPortOpen(const Link& link) {
  return std::any_of(link.ports.begin(), link.ports.end(),
                     [](const auto& port) { return port->IsOpen(); });
}

// The card's four 8250-family UARTs: line control at base + 3, divisor latch at base + 0 and base
// + 1.
struct Uart {
  static constexpr std::array<std::uint16_t, kPortCount> kBases = {0x2A0, 0x2A8, 0x2B0, 0x2B8};
  static constexpr std::uint8_t kDivisorLatchOpen8N1 = 0x83;
  static constexpr std::uint8_t kDivisorLatchClosed8N1 = 3;
};

std::uint8_t CardDivisor(std::int32_t baud) {
  if (baud == 1200) return 104;
  if (baud == 125000) return 1;
  return 13;
}

void SetCardBaudRate(platform::IoPorts& io, std::int32_t baud) {
  const auto out_all = [&io](std::uint16_t offset, std::uint8_t value) {
    for (const std::uint16_t base : Uart::kBases)
      io.Out(static_cast<std::uint16_t>(base + offset), value);
  };
  out_all(3, Uart::kDivisorLatchOpen8N1);
  out_all(1, 0);
  out_all(0, CardDivisor(baud));
  out_all(3, Uart::kDivisorLatchClosed8N1);
}

}  // namespace

std::string_view PortStateText(PortState state) {
  switch (state) {
    case PortState::kActive:
      return NLSText("Active");
    case PortState::kAvailable:
      return NLSText("Available");
    case PortState::kNotAvailable:
      return NLSText("Not Available");
    case PortState::kErrorDetected:
      return NLSText("Error Detected");
  }
  return {};
}

Link::Link(services::Session& program_session, Ports serial_ports, LinkWindows& link_windows,
           platform::IoPorts& io)
    : session(program_session),
      ports(std::move(serial_ports)),
      windows(link_windows),
      io_ports(io) {
  CommStates.fill(PortState::kAvailable);
  for (const int port : kAllPorts) Port(port).SetPortNumber(port);
}

void Link::ReplacePort(int port, std::unique_ptr<platform::SerialPort> replacement) {
  Port(port).Close();
  ports[Index(port)] = std::move(replacement);
  Port(port).SetPortNumber(port);
}

PortState StateOfSettings(const Link& link, int port) {
  const services::Settings& settings = link.session.settings;
  const int value = settings.AppGetUserNumber(settings.OwnType(), StateSetting(port), 2);
  return value >= 1 && value <= 4 ? static_cast<PortState>(value) : PortState::kAvailable;
}

int FirstActivePort(const PortStates& states) {
  for (const int port : kAllPorts) {
    if (states[Link::Index(port)] == PortState::kActive) return port;
  }
  return 0;
}

int ActivePorts(const PortStates& states) {
  return static_cast<int>(std::ranges::count(states, PortState::kActive));
}

int TryPorts(Link& link, PortStates& states) {
  if (AnyPortOpen(link)) {
    return kPortCount - static_cast<int>(std::ranges::count(states, PortState::kNotAvailable));
  }
  int openable = 0;
  for (const int port : kAllPorts) {
    PortState& state = states[Link::Index(port)];
    if (!CanBeOpened(link.Port(port))) {
      state = PortState::kNotAvailable;
      continue;
    }
    if (state != PortState::kActive) state = PortState::kAvailable;
    ++openable;
  }
  return openable;
}

int CheckCommPorts(Link& link, bool read_settings) {
  if (read_settings && !AnyPortOpen(link)) {
    for (const int port : kAllPorts) link.State(port) = StateOfSettings(link, port);
  }
  return TryPorts(link, link.CommStates);
}

bool SelectSinglePort(Job& job) {
  const auto active = [&job] {
    TryPorts(job.link, job.CommStates);
    return ActivePorts(job.CommStates);
  };
  if (active() == 0) job.link.windows.ShowPreferences(job.link, job.CommStates);
  if (active() > 1) job.link.windows.ShowPortSelection(job);
  return active() == 1;
}

void SelectPort(Job& job, int port) {
  for (const int other : kAllPorts) {
    if (other != port && job.IsActive(other)) job.State(other) = PortState::kAvailable;
  }
  job.State(port) = PortState::kActive;
}

void ApplyPreferences(Link& link, PortStates& states,
                      const std::array<std::optional<bool>, kPortCount>& ticked) {
  services::Settings& settings = link.session.settings;
  for (const int port : kAllPorts) {
    const std::optional<bool> tick = ticked[Link::Index(port)];
    PortState& state = states[Link::Index(port)];
    if (tick) state = link.State(port) = *tick ? PortState::kActive : PortState::kAvailable;
    settings.AppSaveUserSetting(settings.OwnType(), StateSetting(port),
                                std::to_string(static_cast<std::int32_t>(state)));
  }
}

bool InitialiseComms(Job& job) {
  if (FirstActivePort(job.CommStates) == 0)
    job.link.windows.ShowPreferences(job.link, job.CommStates);
  bool last_is_open = false;
  for (const int number : kAllPorts) {
    if (!job.IsActive(number)) continue;
    platform::SerialPort& port = job.Port(number);
    if (const SystemError error = port.Open()) {
      ReportError(job.session, error, "InitialiseComms", number);
      job.State(number) = PortState::kNotAvailable;
    }
    last_is_open = port.IsOpen();
    port.ClearInput();
    port.ClearOutput();
  }
  if (!last_is_open) job.KeepCause(Failure::kPort);
  return last_is_open;
}

void SelectBaudRate(Job& job, std::int32_t baud) {
  ClearInputBuffers(job.link);
  if (job.session.high_speed) {
    SetCardBaudRate(job.link.io_ports, baud);
    return;
  }
  if (baud != 1200 && baud != 9600) {
    NLSMsgBox(job.session, NLSFmt(job.session, "Baud rate: %0:s not valid", {std::to_string(baud)}),
              {.icon = Icon::kCritical});
    return;
  }
  DrainOutput(job);
  for (const int number : kAllPorts) {
    if (!job.IsActive(number)) continue;
    if (const SystemError error = job.Port(number).SetSettings(std::to_string(baud) + ",n,8,1")) {
      ReportError(job.session, error, "SelectBaudRate", number);
      FailPort(job, number, Failure::kPort);
    }
  }
}

void SelectInputMode(Link& link, const PortStates& states, platform::InputMode mode) {
  const int port = FirstActivePort(states);
  if (port == 0) return;
  if (link.Port(port).InputCount() > 0) link.Port(port).ClearInput();
  link.Port(port).SetInputMode(mode);
}

void InitHighSpeedCard(Link& link) {
  // Kept: the third address is 0x2B0, not 0x2B7 as the other three suggest.
  constexpr std::array<std::uint16_t, 4> kResetAddresses = {0x2A7, 0x2AF, 0x2B0, 0x2BF};
  for (const std::uint16_t address : kResetAddresses) link.io_ports.Out(address, 0xFF);
  const services::Settings& settings = link.session.settings;
  for (const int port : kAllPorts) {
    link.Port(port).SetPortNumber(
        settings.AppGetUserNumber(settings.OwnType(), "Port" + std::to_string(port), port + 2));
  }
}

}  // namespace zep::link
