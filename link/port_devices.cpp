#include "link/port_devices.h"

#include <algorithm>
#include <deque>

#include "platform/files.h"
#include "platform/serial_list.h"

namespace zep::link {
namespace {

std::string DeviceSetting(int port) { return "CommPort" + std::to_string(port) + "Device"; }

// The devices to give to ports without one of their own, best first.
std::deque<std::string> DevicesToGive() {
  std::deque<std::string> names;
#ifdef _WIN32
  for (const int port : kAllPorts) names.push_back("COM" + std::to_string(port));
#else
  for (const platform::SerialDeviceInfo& info : platform::ListSerialDevices()) {
    if (info.state != platform::SerialDeviceState::kConsole) names.push_back(info.device);
  }
#endif
  return names;
}

}  // namespace

std::array<std::string, kPortCount> DevicesOfPorts(const services::Settings& settings) {
  std::array<std::string, kPortCount> devices;
  for (const int port : kAllPorts) {
    devices[Link::Index(port)] =
        settings.AppGetUserSetting(settings.OwnType(), DeviceSetting(port), "");
  }
  if (std::ranges::find(devices, "") == devices.end()) return devices;
  std::deque<std::string> free = DevicesToGive();
  std::erase_if(free, [&](const std::string& name) {
    return std::ranges::find(devices, name) != devices.end();
  });
  for (std::string& device : devices) {
    if (!device.empty() || free.empty()) continue;
    device = free.front();
    free.pop_front();
  }
  return devices;
}

bool SavePortDevice(services::Settings& settings, int port, const std::string& device) {
  return settings.AppSaveUserSetting(settings.OwnType(), DeviceSetting(port), device);
}

std::optional<std::pair<int, int>> PortsWithSameDevice(
    const std::array<std::string, kPortCount>& devices) {
  for (const int port : kAllPorts) {
    const std::string& device = devices[Link::Index(port)];
    if (device.empty() || device.starts_with("sim:")) continue;
    for (int other = port + 1; other <= kPortCount; ++other) {
      if (platform::IsSameFile(device, devices[Link::Index(other)])) return {{port, other}};
    }
  }
  return std::nullopt;
}

}  // namespace zep::link
