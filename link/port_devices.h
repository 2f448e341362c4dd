// Which serial device each of the four ports stands for, kept as the settings CommPort1Device
// to CommPort4Device.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "link/port_set.h"
#include "services/settings.h"

namespace zep::link {

// The devices of ports 1 to 4. Where the user has chosen none: COM1 to COM4 on Windows, elsewhere
// the next serial device of this computer that no other port has; empty when there are no more.
std::array<std::string, kPortCount> DevicesOfPorts(const services::Settings& settings);

// Keeps the user's choice for a port. False when it could not be stored.
bool SavePortDevice(services::Settings& settings, int port, const std::string& device);

// Two ports with the same device; nothing when each has its own. A simulated radio ("sim:...") is
// made anew for each port, and ports without a device do not count.
std::optional<std::pair<int, int>> PortsWithSameDevice(
    const std::array<std::string, kPortCount>& devices);

}  // namespace zep::link
