#include "link/port_slots.h"

#include <vector>

#include "platform/serial_list.h"

namespace zep::link {
namespace {

std::string DeviceSetting(int slot) { return "CommPort" + std::to_string(slot) + "Device"; }

std::string DefaultDevice(int slot) {
#ifdef _WIN32
  return "COM" + std::to_string(slot);
#else
  const std::vector<platform::SerialDeviceInfo> devices = platform::ListSerialDevices();
  const auto index = static_cast<std::size_t>(slot - 1);
  return index < devices.size() ? devices[index].device : std::string();
#endif
}

}  // namespace

std::string SlotDevice(const services::Settings& settings, int slot) {
  const std::string chosen =
      settings.AppGetUserSetting(settings.OwnType(), DeviceSetting(slot), "");
  return chosen.empty() ? DefaultDevice(slot) : chosen;
}

bool SaveSlotDevice(services::Settings& settings, int slot, const std::string& device) {
  return settings.AppSaveUserSetting(settings.OwnType(), DeviceSetting(slot), device);
}

}  // namespace zep::link
