// The real serial port: a device of this computer.
#pragma once

#include <memory>
#include <string>

#include "platform/serial_port.h"

namespace zep::platform {

// A closed port on the device ("/dev/ttyUSB0", "ttyUSB0", "COM3"; a pseudo-terminal is as good).
// While it is open no other program of this kind can open the device, not even one of an
// administrator. DTR and RTS are on.
std::unique_ptr<SerialPort> MakeSerialDevice(std::string device);

}  // namespace zep::platform
