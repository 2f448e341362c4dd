#include "cli/port_choice.h"

#include <algorithm>

#include "cli/terminal_user.h"
#include "link/port_devices.h"
#include "link/port_texts.h"
#include "services/messages.h"
#include "simulator/radio_text.h"
#include "simulator/simulated_port.h"

namespace zep::cli {
namespace {

using link::kAllPorts;
using link::Link;
using link::PortState;
using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;

struct PortOption {
  int port = 0;  // 0: the next free one, -1: no port
  std::string device;
};

PortOption ParsePort(const std::string& value) {
  const std::size_t equals = value.find('=');
  const bool has_number =
      equals != std::string::npos && equals > 0 && value.find_first_not_of("0123456789") == equals;
  if (!has_number) return {0, value};
  const int port = equals == 1 ? value[0] - '0' : link::kPortCount + 1;
  return {port >= 1 && port <= link::kPortCount ? port : -1, value.substr(equals + 1)};
}

// What is wrong with one value of -p; empty when nothing is.
std::string PortProblem(const services::Session& session, const PortOption& option,
                        const std::string& value, const PortDevices& devices) {
  if (option.device.empty() || option.port < 0) {
    return NLSFmt(session,
                  "%0:s names no port. Please give a device, as in \"-p /dev/ttyUSB0\", or the "
                  "number of a port from 1 to 4 and a device, as in \"-p 2=/dev/ttyUSB0\".",
                  {value});
  }
  if (option.port > 0 && !devices[Link::Index(option.port)].empty()) {
    return NLSFmt(session, "Port %0:s is named twice. Please name each port once.",
                  {std::to_string(option.port)});
  }
  if (std::find(devices.begin(), devices.end(), option.device) != devices.end() &&
      !simulator::IsSimulatedDevice(option.device)) {
    return NLSFmt(session, "%0:s is named twice. Please name each device once.", {option.device});
  }
  return simulator::IsSimulatedDevice(option.device) ? simulator::ParseRadio(option.device).error
                                                     : std::string();
}

// Tells why a port cannot be opened.
void ReportPort(Link& link, int port) {
  const platform::SystemError error = link.Port(port).Open();
  link.Port(port).Close();
  if (error) ReportError(link.session, error, "InitialiseComms", port);
}

// "1 (/dev/ttyUSB0), 2 (/dev/ttyUSB1)"
std::string Choices(link::Job& job) {
  std::string text;
  for (const int port : kAllPorts) {
    if (!job.IsActive(port)) continue;
    if (!text.empty()) text += ", ";
    text += std::to_string(port) + " (" + job.Port(port).Device() + ")";
  }
  return text;
}

}  // namespace

std::string ParsePorts(const services::Session& session, const std::vector<std::string>& values,
                       PortDevices& devices) {
  if (values.size() > devices.size())
    return NLSFmt(session, "There are four ports. Please name four at most.");
  // Those with a number of their own come first.
  for (const bool takes_next_free : {false, true}) {
    for (const std::string& value : values) {
      const PortOption option = ParsePort(value);
      if ((option.port == 0) != takes_next_free) continue;
      if (std::string problem = PortProblem(session, option, value, devices); !problem.empty())
        return problem;
      auto port = takes_next_free ? std::find(devices.begin(), devices.end(), std::string())
                                  : devices.begin() + option.port - 1;
      *port = option.device;
    }
  }
  return {};
}

bool ActivateNamedPorts(Link& link, const PortDevices& devices) {
  for (const int port : kAllPorts) {
    const bool named = !devices[Link::Index(port)].empty();
    link.State(port) = named ? PortState::kActive : PortState::kNotAvailable;
  }
  link::CheckCommPorts(link, false);
  bool all_can_be_opened = true;
  for (const int port : kAllPorts) {
    if (devices[Link::Index(port)].empty() || link.IsActive(port)) continue;
    ReportPort(link, port);
    all_can_be_opened = false;
  }
  return all_can_be_opened;
}

bool FindActivePorts(Link& link) {
  for (const int port : kAllPorts) {
    const bool is_chosen = link::StateOfSettings(link, port) == PortState::kActive;
    if (is_chosen && !link.IsActive(port)) ReportPort(link, port);
  }
  if (link::FirstActivePort(link.CommStates) != 0) return true;
  NLSMsgBox(link.session,
            "No port is chosen. Please name the radio's port, as in \"zepctl -p /dev/ttyUSB0 "
            "identify\"; \"zepctl ports\" shows the serial devices of this computer.",
            {.icon = Icon::kCritical});
  return false;
}

void TerminalLinkWindows::ShowPreferences(Link& link, link::PortStates& states) {
  bool told = false;
  for (const int port : kAllPorts) {
    if (!link.IsActive(port) || states[Link::Index(port)] == PortState::kActive) continue;
    ReportPort(link, port);
    told = true;
  }
  if (!told) FindActivePorts(link);
}

void TerminalLinkWindows::ShowPortSelection(link::Job& job) {
  services::Session& session = job.session;
  const std::string choices = Choices(job);
  const std::string prompt =
      link::SelectPortTitle(session, job.TransferMode) + ": " + choices + " ";
  while (const std::optional<std::string> typed = user_.AskLine(prompt)) {
    if (typed->empty()) break;
    const int port = typed->size() == 1 ? typed->front() - '0' : 0;
    if (port < 1 || port > link::kPortCount || !job.IsActive(port)) continue;
    SelectPort(job, port);
    return;
  }
  if (job.CancelRequested) return;
  NLSMsgBox(
      session,
      NLSFmt(session, "This works on one radio at a time. Please name one port with -p: %0:s.",
             {choices}),
      {.icon = Icon::kCritical});
  job.KeepCause(Failure::kPort);
}

}  // namespace zep::cli
