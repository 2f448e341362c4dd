// What people are told of ports and serial devices, wherever they choose one.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "link/job.h"
#include "platform/serial_list.h"
#include "platform/system_error.h"
#include "services/session.h"

namespace zep::link {

// Opens and closes a port on the device; number 0 when that works.
using TryDevice = std::function<platform::SystemError(const std::string& device)>;

// The device's state as the user sees it, untranslated.
std::string_view DeviceStateText(platform::SerialDeviceState state);

// What is to be done before the device can be used; empty when nothing is. A device that this user
// may not open is tried, since only then the system tells why.
std::string DeviceNextStep(const services::Session& session,
                           const platform::SerialDeviceInfo& device, const TryDevice& try_device);

// A device as it is offered: "/dev/ttyUSB0 - FTDI FT232R USB UART".
std::string DeviceLabel(const platform::SerialDeviceInfo& device);

// The device alone, of a text that is the label of one of the devices or what the user has typed.
std::string DeviceOfText(std::string_view text,
                         std::span<const platform::SerialDeviceInfo> devices);

// The simulated radios that are offered beside the devices of this computer.
std::vector<platform::SerialDeviceInfo> SimulatedRadios(const services::Session& session);

// What the user is asked when a job needs one of several ports, and the choice to take them all.
std::string SelectPortTitle(const services::Session& session, Transfer direction);
std::string AllPortsText(const services::Session& session, Transfer direction);

}  // namespace zep::link
