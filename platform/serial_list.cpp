#include "platform/serial_list.h"

#include <algorithm>

#include "platform/serial_list_native.h"

namespace zep::platform {
namespace {

struct NameParts {
  std::string letters;
  unsigned long long number = 0;
};

// "COM10" into "COM" and 10.
NameParts Split(const std::string& name) {
  const std::size_t end = name.find_last_not_of("0123456789") + 1;
  NameParts parts{.letters = name.substr(0, end), .number = 0};
  // More digits than a number can hold are no number that anybody counts with.
  for (const char digit : name.substr(end, 18)) {
    parts.number = parts.number * 10 + static_cast<unsigned>(digit - '0');
  }
  return parts;
}

bool ComesFirst(const SerialDeviceInfo& left, const SerialDeviceInfo& right) {
  if (left.usb_id.empty() != right.usb_id.empty()) return right.usb_id.empty();
  const NameParts left_name = Split(left.device);
  const NameParts right_name = Split(right.device);
  if (left_name.letters != right_name.letters) return left_name.letters < right_name.letters;
  return left_name.number < right_name.number;
}

}  // namespace

std::vector<SerialDeviceInfo> ListSerialDevices(const DeviceFolders& folders) {
  std::vector<SerialDeviceInfo> devices = FindSerialDevices(folders);
  std::ranges::sort(devices, ComesFirst);
  return devices;
}

}  // namespace zep::platform
