#include "link/port_texts.h"

#include "platform/advice.h"
#include "services/messages.h"

namespace zep::link {
namespace {

using platform::Advice;
using platform::SerialDeviceInfo;
using platform::SerialDeviceState;
using services::NLSFmt;
using services::NLSText;
using services::Session;

constexpr std::string_view kBetweenDeviceAndAdapter = " - ";

}  // namespace

std::string_view DeviceStateText(SerialDeviceState state) {
  switch (state) {
    case SerialDeviceState::kFree:
      return NLSText("free");
    case SerialDeviceState::kBusy:
    case SerialDeviceState::kConsole:
      return NLSText("in use");
    case SerialDeviceState::kNoPermission:
      return NLSText("no permission");
  }
  return {};
}

std::string DeviceNextStep(const Session& session, const SerialDeviceInfo& device,
                           const TryDevice& try_device) {
  switch (device.state) {
    case SerialDeviceState::kFree:
      return {};
    case SerialDeviceState::kBusy:
      if (device.busy_with.empty())
        return NLSFmt(session, AdviceText(Advice::kInUse), {device.device});
      return NLSFmt(session, AdviceText(Advice::kPortBusyWith), {device.device, device.busy_with});
    case SerialDeviceState::kConsole:
      return NLSFmt(session, AdviceText(Advice::kPortIsConsole), {device.device});
    case SerialDeviceState::kNoPermission:
      break;
  }
  const platform::SystemError error = try_device(device.device);
  return NLSFmt(session, error.advice, error.advice_arguments);
}

std::string DeviceLabel(const SerialDeviceInfo& device) {
  if (device.description.empty()) return device.device;
  return device.device + std::string(kBetweenDeviceAndAdapter) + device.description;
}

std::string DeviceOfText(std::string_view text, std::span<const SerialDeviceInfo> devices) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  text = text.substr(first, text.find_last_not_of(' ') + 1 - first);
  for (const SerialDeviceInfo& device : devices) {
    if (text == DeviceLabel(device)) return device.device;
  }
  return std::string(text);
}

std::vector<SerialDeviceInfo> SimulatedRadios(const Session& session) {
  std::vector<SerialDeviceInfo> radios(2);
  radios[0].device = "sim:conventional";
  radios[0].description = NLSFmt(session, "simulated conventional radio");
  radios[1].device = "sim:trunked";
  radios[1].description = NLSFmt(session, "simulated trunked radio");
  return radios;
}

std::string SelectPortTitle(const Session& session, Transfer direction) {
  const bool reads = direction == Transfer::kRead;
  return NLSFmt(session,
                reads ? NLSText("Select Port to Read") : NLSText("Select Port to Program"));
}

std::string AllPortsText(const Session& session, Transfer direction) {
  const bool reads = direction == Transfer::kRead;
  return NLSFmt(session, reads ? NLSText("Read all ports") : NLSText("Program all ports"));
}

}  // namespace zep::link
