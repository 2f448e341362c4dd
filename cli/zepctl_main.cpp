// The program zepctl.
#include "cli/zepctl.h"
#include "platform/clock.h"
#include "platform/settings_hive.h"
#include "platform/terminal.h"
#include "simulator/simulated_port.h"

namespace zep::cli {
namespace {

ExitStatus RunAtTerminal(const std::vector<std::string>& arguments) {
  platform::PrepareTerminal();
  platform::SystemClock clock;
  StandardConsole console;
  const std::unique_ptr<platform::SettingsHive> user_hive = platform::OpenUserHive();
  const std::unique_ptr<platform::SettingsHive> machine_hive = platform::OpenMachineHive();
  return RunZepctl(arguments, {.console = console,
                               .clock = clock,
                               .user_hive = *user_hive,
                               .machine_hive = *machine_hive,
                               .make_port =
                                   [&clock](const std::string& device) {
                                     return simulator::MakePort(device, clock);
                                   },
                               .list_devices = [] { return platform::ListSerialDevices(); }});
}

}  // namespace
}  // namespace zep::cli

int main(int argc, char** argv) {
  return static_cast<int>(zep::cli::RunAtTerminal(zep::platform::ProgramArguments(argc, argv)));
}
