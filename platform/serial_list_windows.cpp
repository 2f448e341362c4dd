#include <windows.h>
#include <algorithm>
#include <array>
#include <map>
#include <setupapi.h>

#include "platform/serial_list_native.h"
#include "platform/wide_text.h"

namespace zep::platform {
namespace {

// The device setup class of ports, {4D36E978-E325-11CE-BFC1-08002BE10318}.
constexpr GUID kPortsClass = {
    0x4d36e978, 0xe325, 0x11ce, {0xbf, 0xc1, 0x08, 0x00, 0x2b, 0xe1, 0x03, 0x18}};

struct Hardware {
  std::string description;
  std::string instance;  // "USB\VID_0403&PID_6001\A50285BI"
};

std::string PortName(HDEVINFO set, SP_DEVINFO_DATA& device) {
  const HKEY key =
      SetupDiOpenDevRegKey(set, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_QUERY_VALUE);
  if (key == INVALID_HANDLE_VALUE) return {};
  std::array<wchar_t, 64> name{};
  DWORD size = sizeof name - sizeof(wchar_t);
  const LSTATUS status = RegQueryValueExW(key, L"PortName", nullptr, nullptr,
                                          reinterpret_cast<BYTE*>(name.data()), &size);
  RegCloseKey(key);
  return status == ERROR_SUCCESS ? Narrow(name.data()) : "";
}

// What the device manager knows, by port name.
std::map<std::string, Hardware> KnownHardware() {
  std::map<std::string, Hardware> known;
  const HDEVINFO set = SetupDiGetClassDevsW(&kPortsClass, nullptr, nullptr, DIGCF_PRESENT);
  if (set == INVALID_HANDLE_VALUE) return known;
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof device;
  for (DWORD index = 0; SetupDiEnumDeviceInfo(set, index, &device) != 0; ++index) {
    std::array<wchar_t, 256> text{};
    Hardware hardware;
    if (SetupDiGetDeviceRegistryPropertyW(
            set, &device, SPDRP_FRIENDLYNAME, nullptr, reinterpret_cast<BYTE*>(text.data()),
            static_cast<DWORD>(sizeof text - sizeof(wchar_t)), nullptr) != 0) {
      hardware.description = Narrow(text.data());
    }
    if (SetupDiGetDeviceInstanceIdW(set, &device, text.data(), static_cast<DWORD>(text.size()),
                                    nullptr) != 0) {
      hardware.instance = Narrow(text.data());
    }
    known[PortName(set, device)] = std::move(hardware);
  }
  SetupDiDestroyDeviceInfoList(set);
  return known;
}

// The four hexadecimal digits behind mark, in lower case as everywhere else.
std::string DigitsAfter(const std::string& text, const std::string& mark) {
  const std::size_t at = text.find(mark);
  if (at == text.npos) return {};
  std::string digits = text.substr(at + mark.size(), 4);
  for (char& digit : digits) {
    if (digit >= 'A' && digit <= 'F') digit = static_cast<char>(digit - 'A' + 'a');
  }
  return digits;
}

// From "USB\VID_0403&PID_6001\A50285BI" or "FTDIBUS\VID_0403+PID_6001+A50285BIA\0000". An instance
// with "&" in its last part was numbered by Windows because the adapter has no serial number.
void DescribeUsb(const std::string& instance, SerialDeviceInfo& info) {
  const std::string vendor = DigitsAfter(instance, "VID_");
  const std::string product = DigitsAfter(instance, "PID_");
  if (vendor.empty() || product.empty()) return;
  info.usb_id = vendor + ":" + product;
  std::string serial;
  if (const std::size_t plus = instance.rfind('+'); plus != instance.npos) {
    serial = instance.substr(plus + 1, instance.rfind('\\') - plus - 1);
  } else {
    serial = instance.substr(instance.rfind('\\') + 1);
  }
  if (serial.find('&') == serial.npos) info.serial_number = serial;
}

SerialDeviceState StateOf(const std::string& device) {
  const HANDLE port = CreateFileW(Widen("\\\\.\\" + device).c_str(), GENERIC_READ | GENERIC_WRITE,
                                  0, nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
  if (port == INVALID_HANDLE_VALUE) {
    return GetLastError() == ERROR_ACCESS_DENIED ? SerialDeviceState::kBusy
                                                 : SerialDeviceState::kFree;
  }
  CloseHandle(port);
  return SerialDeviceState::kFree;
}

// The names of all ports that are there: the drivers enter them when they start.
std::vector<std::string> PortNames() {
  std::vector<std::string> names;
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_QUERY_VALUE,
                    &key) != ERROR_SUCCESS) {
    return names;
  }
  for (DWORD index = 0;; ++index) {
    std::array<wchar_t, 256> value{};
    std::array<wchar_t, 64> name{};
    DWORD value_length = static_cast<DWORD>(value.size());
    DWORD size = sizeof name - sizeof(wchar_t);
    if (RegEnumValueW(key, index, value.data(), &value_length, nullptr, nullptr,
                      reinterpret_cast<BYTE*>(name.data()), &size) != ERROR_SUCCESS) {
      break;
    }
    names.push_back(Narrow(name.data()));
  }
  RegCloseKey(key);
  return names;
}

}  // namespace

std::vector<SerialDeviceInfo> FindSerialDevices(const DeviceFolders&) {
  std::vector<SerialDeviceInfo> devices;
  const std::map<std::string, Hardware> known = KnownHardware();
  for (const std::string& name : PortNames()) {
    SerialDeviceInfo info;
    info.device = name;
    const auto found = known.find(name);
    const std::string instance = found == known.end() ? "" : found->second.instance;
    if (found != known.end()) {
      // "USB Serial Port (COM3)"
      const std::string& text = found->second.description;
      info.description = text.substr(0, text.find(" (" + name + ")"));
    }
    DescribeUsb(instance, info);
    // To open a Bluetooth port means to call the other device, which takes many seconds.
    if (!instance.starts_with("BTHENUM")) info.state = StateOf(name);
    devices.push_back(std::move(info));
  }
  return devices;
}

}  // namespace zep::platform
