// Which serial device each of the four port slots stands for, kept as the settings CommPort1Device
// to CommPort4Device.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "link/port_set.h"
#include "services/settings.h"

namespace zep::link {

// The devices of slots 1 to 4. Where the user has chosen none: COM1 to COM4 on Windows, elsewhere
// the next serial device of this computer that no other slot has; empty when there are no more.
std::array<std::string, kPortCount> SlotDevices(const services::Settings& settings);

// Keeps the user's choice for a slot. False when it could not be stored.
bool SaveSlotDevice(services::Settings& settings, int slot, const std::string& device);

// Two slots with the same device; nothing when each has its own. A simulated radio ("sim:...") is
// made anew for each slot, and slots without a device do not count.
std::optional<std::pair<int, int>> SlotsWithSameDevice(
    const std::array<std::string, kPortCount>& devices);

}  // namespace zep::link
