#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <unistd.h>

#include "platform/device_users.h"
#include "platform/files.h"
#include "platform/serial_list_native.h"

namespace zep::platform {
namespace {

namespace fs = std::filesystem;

// The chips of /sys/class/tty/ttyS*/type, as <linux/serial.h> numbers them.
constexpr std::array kChips = {"",       "8250",  "16450",   "16550", "16550A",
                               "Cirrus", "16650", "16650V2", "16750", "Startech",
                               "16C950", "16654", "16850"};

// A one-line file of sysfs without its line end; empty when there is none.
std::string Attribute(const fs::path& file) {
  constexpr std::uint64_t page_size = 4096;  // which a file of sysfs cannot exceed
  std::string text = ReadWholeFile(file.native(), page_size).bytes;
  return text.substr(0, text.find_last_not_of(" \n") + 1);
}

// The name of what a link leads to.
std::string LinkName(const fs::path& link) {
  std::error_code code;
  return fs::read_symlink(link, code).filename().native();
}

// The USB device among the device and those it is plugged into; empty when it is not on USB.
fs::path UsbDevice(fs::path device) {
  for (; device.has_relative_path(); device = device.parent_path()) {
    if (FileExists((device / "idVendor").native())) return device;
  }
  return {};
}

// The chip of an on-board port, else the name of the driver.
std::string HardwareName(const std::string& chip_number, fs::path device) {
  const auto chip = static_cast<std::size_t>(std::atoi(chip_number.c_str()));
  if (chip > 0 && chip < kChips.size()) return kChips[chip];
  // Newer kernels put two levels of their own above the device that the driver is for.
  while (LinkName(device / "subsystem") == "serial-base") device = device.parent_path();
  return LinkName(device / "driver");
}

void DescribeUsb(const fs::path& usb, SerialDeviceInfo& info) {
  info.usb_id = Attribute(usb / "idVendor") + ":" + Attribute(usb / "idProduct");
  info.serial_number = Attribute(usb / "serial");
  const std::string maker = Attribute(usb / "manufacturer");
  const std::string product = Attribute(usb / "product");
  const bool named_already = product.starts_with(maker);
  info.description = maker.empty() || named_already ? product : maker + " " + product;
}

bool IsConsole(const fs::path& ttys, const std::string& name) {
  std::istringstream consoles(Attribute(ttys / "console" / "active"));
  for (std::string console; consoles >> console;) {
    if (console == name) return true;
  }
  return false;
}

void FindStates(std::vector<SerialDeviceInfo>& devices) {
  std::vector<std::string> names;
  names.reserve(devices.size());
  for (const SerialDeviceInfo& info : devices) names.push_back(info.device);
  const std::vector<std::string> programs = ProgramsUsing(names);
  for (std::size_t at = 0; at < devices.size(); ++at) {
    SerialDeviceInfo& info = devices[at];
    if (info.state == SerialDeviceState::kConsole) continue;
    info.busy_with = LockFileHolder(info.device);
    if (info.busy_with.empty()) info.busy_with = programs[at];
    const bool allowed = faccessat(AT_FDCWD, info.device.c_str(), R_OK | W_OK, AT_EACCESS) == 0;
    if (!info.busy_with.empty()) {
      info.state = SerialDeviceState::kBusy;
    } else if (!allowed && (errno == EACCES || errno == EPERM)) {
      info.state = SerialDeviceState::kNoPermission;
    }
  }
}

}  // namespace

std::vector<SerialDeviceInfo> FindSerialDevices(const DeviceFolders& folders) {
  std::vector<SerialDeviceInfo> devices;
  const fs::path ttys = fs::path(folders.system) / "class" / "tty";
  for (const std::string& name : ListFolder(ttys.native())) {
    std::error_code code;
    const fs::path device = fs::canonical(ttys / name / "device", code);
    if (code) continue;  // a virtual terminal
    const std::string chip_number = Attribute(ttys / name / "type");
    if (chip_number == "0") continue;  // a name without a port
    SerialDeviceInfo info;
    info.device = folders.devices + "/" + name;
    if (!FileExists(info.device)) continue;
    const fs::path usb = UsbDevice(device);
    if (!usb.empty()) DescribeUsb(usb, info);
    if (info.description.empty()) info.description = HardwareName(chip_number, device);
    if (IsConsole(ttys, name)) info.state = SerialDeviceState::kConsole;
    devices.push_back(std::move(info));
  }
  FindStates(devices);
  return devices;
}

}  // namespace zep::platform
