#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "platform/device_users.h"
#include "platform/files.h"

namespace zep::platform {
namespace {

namespace fs = std::filesystem;

std::string ProgramName(const std::string& process) {
  std::string name;
  std::ifstream comm("/proc/" + process + "/comm");
  std::getline(comm, name);
  return name.empty() ? "" : name + " (" + process + ")";
}

bool IsNumber(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

// Lines such as "3: FLOCK  ADVISORY  WRITE 4711 00:06:117 0 EOF", devices in hexadecimal.
std::string LockHolder(const std::string& device) {
  struct stat status {};
  if (stat(device.c_str(), &status) != 0) return {};
  std::ifstream locks("/proc/locks");
  for (std::string line; std::getline(locks, line);) {
    std::istringstream words(line);
    std::string ordinal, kind, advisory, access, process;
    unsigned major_number = 0;
    unsigned minor_number = 0;
    ino_t inode = 0;
    char colon = 0;
    words >> ordinal >> kind >> advisory >> access >> process >> std::hex >> major_number >>
        colon >> minor_number >> colon >> std::dec >> inode;
    if (words && inode == status.st_ino && major_number == major(status.st_dev) &&
        minor_number == minor(status.st_dev)) {
      return ProgramName(process);
    }
  }
  return {};
}

}  // namespace

std::vector<std::string> ProgramsUsing(const std::vector<std::string>& devices) {
  std::vector<std::string> programs;
  std::vector<fs::path> targets;
  std::error_code code;
  for (const std::string& device : devices) {
    programs.push_back(LockHolder(device));
    targets.push_back(fs::canonical(device, code));
  }
  // The far end of a pseudo-terminal may hold the device open too: that says nothing.
  const auto is_wanted = [](const fs::path& target) {
    return !target.empty() && !target.native().starts_with("/dev/pts/");
  };
  if (std::ranges::none_of(targets, is_wanted)) return programs;
  for (const std::string& process : ListFolder("/proc")) {
    if (!IsNumber(process)) continue;
    const std::string folder = "/proc/" + process + "/fd";
    for (const std::string& file : ListFolder(folder)) {
      const fs::path open_file = fs::read_symlink(fs::path(folder) / file, code);
      const auto found = std::ranges::find(targets, open_file);
      if (found == targets.end() || !is_wanted(open_file)) continue;
      std::string& program = programs[static_cast<std::size_t>(found - targets.begin())];
      if (program.empty()) program = ProgramName(process);
    }
  }
  return programs;
}

std::string LockFileHolder(const std::string& device) {
  const std::string name = device.substr(device.rfind('/') + 1);
  std::ifstream file("/var/lock/LCK.." + name);
  pid_t process = 0;
  if (!(file >> process) || process <= 0 || process == getpid()) return {};
  if (kill(process, 0) != 0 && errno == ESRCH) return {};
  return ProgramName(std::to_string(process));
}

}  // namespace zep::platform
