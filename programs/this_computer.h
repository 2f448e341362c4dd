// The computer that our programs really run on, with simulated radios beside its own ports.
#pragma once

#include <memory>
#include <string>

#include "platform/computer.h"

namespace zep::programs {

// A closed port on a serial device of this computer, or with a simulated radio at its end when the
// device begins with "sim:". No device gives a port that does not exist.
std::unique_ptr<platform::SerialPort> MakePort(const std::string& device, platform::Clock& clock);

class ThisComputer {
 public:
  ThisComputer();

  const platform::Computer& Get() const { return computer_; }

 private:
  platform::SystemClock clock_;
  std::unique_ptr<platform::SettingsHive> user_hive_;
  std::unique_ptr<platform::SettingsHive> machine_hive_;
  platform::Computer computer_;
};

}  // namespace zep::programs
