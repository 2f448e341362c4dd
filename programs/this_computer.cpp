#include "programs/this_computer.h"

#include <utility>

#include "platform/processes.h"
#include "platform/serial_device.h"
#include "simulator/simulated_port.h"

namespace zep::programs {

std::unique_ptr<platform::SerialPort> MakePort(const std::string& device, platform::Clock& clock) {
  if (!simulator::IsSimulatedDevice(device)) return platform::MakeSerialDevice(device);
  auto port = simulator::MakeSimulatedPort(device, clock);
  if (!port.value) return platform::MakeSerialDevice(device);
  return std::move(*port.value);
}

ThisComputer::ThisComputer()
    : user_hive_(platform::OpenUserHive()),
      machine_hive_(platform::OpenMachineHive()),
      computer_{
          .clock = clock_,
          .user_hive = *user_hive_,
          .machine_hive = *machine_hive_,
          .make_port = [this](const std::string& device) { return MakePort(device, clock_); },
          .list_devices = [] { return platform::ListSerialDevices(); },
          .start_program =
              [](const std::string& program) { return platform::StartProgram(program, {}); }} {}

}  // namespace zep::programs
