#include "link/port_slots.h"

#include <algorithm>
#include <deque>

#include "platform/files.h"
#include "platform/serial_list.h"

namespace zep::link {
namespace {

std::string DeviceSetting(int slot) { return "CommPort" + std::to_string(slot) + "Device"; }

// The devices to give to slots without one of their own, best first.
std::deque<std::string> DevicesToGive() {
  std::deque<std::string> names;
#ifdef _WIN32
  for (const int slot : kAllPorts) names.push_back("COM" + std::to_string(slot));
#else
  for (const platform::SerialDeviceInfo& info : platform::ListSerialDevices()) {
    if (info.state != platform::SerialDeviceState::kConsole) names.push_back(info.device);
  }
#endif
  return names;
}

}  // namespace

std::array<std::string, kPortCount> SlotDevices(const services::Settings& settings) {
  std::array<std::string, kPortCount> devices;
  for (const int slot : kAllPorts) {
    devices[Link::Index(slot)] =
        settings.AppGetUserSetting(settings.OwnType(), DeviceSetting(slot), "");
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

bool SaveSlotDevice(services::Settings& settings, int slot, const std::string& device) {
  return settings.AppSaveUserSetting(settings.OwnType(), DeviceSetting(slot), device);
}

std::optional<std::pair<int, int>> SlotsWithSameDevice(
    const std::array<std::string, kPortCount>& devices) {
  for (const int slot : kAllPorts) {
    const std::string& device = devices[Link::Index(slot)];
    if (device.empty() || device.starts_with("sim:")) continue;
    for (int other = slot + 1; other <= kPortCount; ++other) {
      if (platform::IsSameFile(device, devices[Link::Index(other)])) return {{slot, other}};
    }
  }
  return std::nullopt;
}

}  // namespace zep::link
