#include "platform/program_paths.h"
#include "platform/settings_hive.h"

namespace zep::platform {

std::unique_ptr<SettingsHive> OpenUserHive() {
  return MakeFileHive(UserConfigFolder() + "/settings.ini");
}

std::unique_ptr<SettingsHive> OpenMachineHive() {
  return MakeFileHive(MachineConfigFolder() + "/settings.ini");
}

}  // namespace zep::platform
