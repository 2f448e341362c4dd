// The folders that the operating system gives to a program and its user. All UTF-8, absolute,
// without a separator at the end; they need not exist. Empty when the system does not tell.
#pragma once

#include <string>

namespace zep::platform {

// The folder that holds the running program.
std::string ProgramFolder();

// The user's own folders of this application: settings, data (files a user cares for), state (logs,
// locks). Windows: AppData\Roaming\zepdlca and AppData\Local\zepdlca. Elsewhere
// $XDG_CONFIG_HOME/zepdlca (~/.config), $XDG_DATA_HOME/zepdlca (~/.local/share) and
// $XDG_STATE_HOME/zepdlca (~/.local/state).
std::string UserConfigFolder();
std::string UserDataFolder();
std::string UserStateFolder();

// Settings for all users: ProgramData\zepdlca, elsewhere /etc/xdg/zepdlca.
std::string MachineConfigFolder();

// For files that nobody misses.
std::string TemporaryFolder();

}  // namespace zep::platform
