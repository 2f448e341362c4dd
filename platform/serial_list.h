// The serial devices of this computer, with what a person needs to choose one.
#pragma once

#include <string>
#include <vector>

namespace zep::platform {

// kConsole: the operating system writes its messages to it, which would reach a radio.
enum class SerialDeviceState { kFree, kBusy, kNoPermission, kConsole };

struct SerialDeviceInfo {
  std::string device;  // what MakeSerialDevice takes: "/dev/ttyUSB0", "COM3"
  std::string
      description;  // of the adapter: "FTDI FT232R USB UART"; of an older port its chip: "16550A"
  std::string usb_id;         // vendor and product, "0403:6001"; empty when it is no USB adapter
  std::string serial_number;  // of the USB adapter; may be empty
  SerialDeviceState state = SerialDeviceState::kFree;
  std::string busy_with;  // the program that has it open, "minicom (4711)"; may be empty
};

// Where Linux keeps what is read; tests give their own.
struct DeviceFolders {
  std::string system = "/sys";
  std::string devices = "/dev";
};

// USB adapters first, then by name, numbers in numeric order. Nothing is opened on Linux, so that
// no line of a device changes its level; whether a device can be opened is known for sure only
// after MakeSerialDevice(...)->Open().
std::vector<SerialDeviceInfo> ListSerialDevices(const DeviceFolders& folders = {});

}  // namespace zep::platform
