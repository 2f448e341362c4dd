// The search for serial devices, system by system. Only serial_list.cpp uses it.
#pragma once

#include <vector>

#include "platform/serial_list.h"

namespace zep::platform {

// All devices with all that is known of them, in no particular order.
std::vector<SerialDeviceInfo> FindSerialDevices(const DeviceFolders& folders);

}  // namespace zep::platform
