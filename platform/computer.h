// What a program needs of the computer that it runs on.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/serial_list.h"
#include "platform/serial_port.h"
#include "platform/settings_hive.h"
#include "platform/system_error.h"

namespace zep::platform {

// A test has a computer of its own. All of it outlives the program.
struct Computer {
  Clock& clock;
  SettingsHive& user_hive;
  SettingsHive& machine_hive;
  // A closed port on the device, which need not exist.
  std::function<std::unique_ptr<SerialPort>(const std::string& device)> make_port;
  std::function<std::vector<SerialDeviceInfo>()> list_devices;
  // Starts another program, which goes on by itself.
  std::function<SystemError(const std::string& program)> start_program;
};

}  // namespace zep::platform
