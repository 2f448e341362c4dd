#include <array>
#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

#include "platform/program_paths.h"

namespace zep::platform {
namespace {

constexpr const char* kApplication = "/zepdlca";

// The folder in an environment variable; those that are not absolute do not count.
std::string FolderInEnvironment(const char* variable) {
  const char* value = std::getenv(variable);
  if (value == nullptr || value[0] != '/') return {};
  std::string folder = value;
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

std::string HomeFolder() {
  std::string home = FolderInEnvironment("HOME");
  if (!home.empty()) return home;
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 4096> buffer{};
  getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
  return found != nullptr ? found->pw_dir : "";
}

std::string UserFolder(const char* variable, const char* below_home) {
  const std::string folder = FolderInEnvironment(variable);
  return (folder.empty() ? HomeFolder() + below_home : folder) + kApplication;
}

}  // namespace

std::string ProgramFolder() {
  std::array<char, 4096> path{};
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  if (length <= 0) return {};
  const std::string program(path.data(), static_cast<std::size_t>(length));
  return program.substr(0, program.rfind('/'));
}

std::string UserConfigFolder() { return UserFolder("XDG_CONFIG_HOME", "/.config"); }

std::string UserDataFolder() { return UserFolder("XDG_DATA_HOME", "/.local/share"); }

std::string UserStateFolder() { return UserFolder("XDG_STATE_HOME", "/.local/state"); }

std::string MachineConfigFolder() { return std::string("/etc/xdg") + kApplication; }

std::string TemporaryFolder() {
  const std::string folder = FolderInEnvironment("TMPDIR");
  return folder.empty() ? "/tmp" : folder;
}

}  // namespace zep::platform
