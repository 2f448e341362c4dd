#include <cerrno>
#include <sys/utsname.h>

#include "platform/system_error.h"
#include "platform/system_version.h"

namespace zep::platform {

SystemVersion GetSystemVersion() {
  SystemVersion version;
  utsname name{};
  if (uname(&name) != 0) {
    version.error = MakeSystemError(errno, "uname");
    return version;
  }
  const std::string machine = name.machine;
  version.description = std::string(name.sysname) + " " + name.release + " (" + machine + ")";
  if (machine == "i386") version.processor_type = 386;
  if (machine == "i486") version.processor_type = 486;
  return version;
}

}  // namespace zep::platform
