// Which serial device each of the four port slots stands for, kept as the settings CommPort1Device
// to CommPort4Device.
#pragma once

#include <string>

#include "services/settings.h"

namespace zep::link {

// The device of a slot (1 to 4). Where the user has chosen none: COM1 to COM4 on Windows, elsewhere
// the first four serial devices of this computer; empty when there are fewer.
std::string SlotDevice(const services::Settings& settings, int slot);

// Keeps the user's choice. False when it could not be stored.
bool SaveSlotDevice(services::Settings& settings, int slot, const std::string& device);

}  // namespace zep::link
