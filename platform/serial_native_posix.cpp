#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

#include "platform/advice.h"
#include "platform/device_users.h"
#include "platform/serial_native.h"

namespace zep::platform {
namespace {

// Major numbers of the slave ends of pseudo-terminals.
constexpr unsigned kFirstPseudoTerminal = 136;
constexpr unsigned kLastPseudoTerminal = 143;

// "ttyUSB0" will do for "/dev/ttyUSB0".
std::string PathOf(const std::string& device) {
  struct stat status {};
  // A port without a device: a port that does not exist.
  if (device.empty()) return device;
  if (device.find('/') != device.npos || stat(device.c_str(), &status) == 0) return device;
  return "/dev/" + device;
}

SystemError PortError(int own_number, int number, const std::string& device) {
  SystemError error = MakeSystemError(number, device);
  error.number = own_number;
  return error;
}

SystemError Busy(const std::string& device, const std::string& program) {
  SystemError error = PortError(kPortInUse, EBUSY, device);
  if (program.empty()) return WithAdvice(std::move(error), Advice::kInUse, {device});
  return WithAdvice(std::move(error), Advice::kPortBusyWith, {device, program});
}

std::string UserName() {
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 4096> buffer{};
  getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
  return found != nullptr ? found->pw_name : std::to_string(geteuid());
}

std::string GroupName(gid_t number) {
  group entry{};
  group* found = nullptr;
  std::array<char, 16384> buffer{};
  getgrgid_r(number, &entry, buffer.data(), buffer.size(), &found);
  return found != nullptr ? found->gr_name : "";
}

// Whether this process has the rights of the group, and whether the user will have them after the
// next log-in.
bool ProcessIsIn(gid_t number) {
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(getgroups(0, nullptr), 0)));
  getgroups(static_cast<int>(groups.size()), groups.data());
  return getegid() == number || std::ranges::count(groups, number) > 0;
}

bool UserIsIn(const std::string& user, gid_t number) {
  std::array<gid_t, 256> groups{};
  int count = static_cast<int>(groups.size());
  if (getgrouplist(user.c_str(), getegid(), groups.data(), &count) < 0) return false;
  return std::count(groups.begin(), groups.begin() + count, number) > 0;
}

SystemError Forbidden(const std::string& device, const std::string& path) {
  SystemError error = MakeSystemError(EACCES, device);
  struct stat status {};
  constexpr mode_t group_may_use = S_IRGRP | S_IWGRP;
  if (stat(path.c_str(), &status) == 0 && status.st_gid != 0 &&
      (status.st_mode & group_may_use) == group_may_use && !ProcessIsIn(status.st_gid)) {
    const std::string group_name = GroupName(status.st_gid);
    const std::string user = UserName();
    if (UserIsIn(user, status.st_gid)) {
      return WithAdvice(std::move(error), Advice::kPortLogInAgain, {device, group_name});
    }
    if (!group_name.empty()) {
      return WithAdvice(std::move(error), Advice::kPortJoinGroup, {device, group_name, user});
    }
  }
  return WithAdvice(std::move(error), Advice::kPortForbidden, {device});
}

SystemError OpenError(int number, const std::string& device, const std::string& path) {
  switch (number) {
    case ENOENT:
    case ENOTDIR:
    case ENODEV:
    case ENXIO:
      return WithAdvice(PortError(kPortDoesNotExist, number, device), Advice::kPortMissing,
                        {device});
    case EIO:
      return WithAdvice(PortError(kPortDoesNotExist, number, device), Advice::kPortNoHardware,
                        {device});
    case EBUSY:
    case EWOULDBLOCK:
      return Busy(device, ProgramsUsing({path}).front());
    case EACCES:
    case EPERM:
      return Forbidden(device, path);
    case ENOTTY:
    case EISDIR:
      return WithAdvice(MakeSystemError(number, device), Advice::kNotSerialDevice, {device});
    default:
      return MakeSystemError(number, device);
  }
}

bool IsPseudoTerminal(int file) {
  struct stat status {};
  if (fstat(file, &status) != 0) return false;
  const unsigned kind = major(status.st_rdev);
  return kind >= kFirstPseudoTerminal && kind <= kLastPseudoTerminal;
}

// Bytes as they are, no flow control, no waiting for a carrier.
bool MakeRaw(int file) {
  termios settings{};
  if (tcgetattr(file, &settings) != 0) return false;
  cfmakeraw(&settings);
  settings.c_iflag |= IGNBRK | IGNPAR;
  settings.c_iflag &= ~static_cast<tcflag_t>(IXOFF | IXANY);
  settings.c_cflag |= CREAD | CLOCAL;
  settings.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS);
  return tcsetattr(file, TCSANOW, &settings) == 0;
}

std::size_t QueuedOutput(int file) {
  int count = 0;
  return ioctl(file, TIOCOUTQ, &count) == 0 && count > 0 ? static_cast<std::size_t>(count) : 0;
}

}  // namespace

NativeSerial OpenNativeSerial(const std::string& device) {
  const std::string path = PathOf(device);
  if (const std::string program = LockFileHolder(path); !program.empty()) {
    return {.handle = -1, .error = Busy(device, program)};
  }
  const int file = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return {.handle = -1, .error = OpenError(errno, device, path)};
  // The lock keeps out other programs of ours, those of root too, before anything is changed; the
  // exclusive mode keeps out all others but root's. The other end of a pseudo-terminal would keep
  // that mode alive beyond our end.
  if (flock(file, LOCK_EX | LOCK_NB) != 0 || !MakeRaw(file)) {
    const int number = errno;
    close(file);
    return {.handle = -1, .error = OpenError(number, device, path)};
  }
  if (!IsPseudoTerminal(file)) ioctl(file, TIOCEXCL);
  // Fails where there are no modem lines, as on pseudo-terminals.
  const int lines = TIOCM_DTR | TIOCM_RTS;
  ioctl(file, TIOCMBIS, &lines);
  tcflush(file, TCIFLUSH);
  return {.handle = file, .error = {}};
}

void ReleaseNativeSerial(SerialHandle handle) {
  // Closing would wait up to half a minute for bytes that do not go out.
  DiscardOutput(handle);
  ioctl(handle, TIOCNXCL);
}

void CloseNativeSerial(SerialHandle handle) { close(handle); }

std::size_t UnsentBytes(SerialHandle handle, std::size_t in_flight) {
  const std::size_t count = in_flight + QueuedOutput(handle);
  if (count > 0) return count;
  // The queue may be empty while the last bytes are still in the chip, if the driver can tell.
  unsigned status = TIOCSER_TEMT;
  if (ioctl(handle, TIOCSERGETLSR, &status) != 0) return 0;
  return (status & TIOCSER_TEMT) != 0 ? 0 : 1;
}

void DiscardOutput(SerialHandle handle) {
  // A pseudo-terminal never has a queue; there the call would take away what the far end has not
  // read yet.
  if (QueuedOutput(handle) > 0) tcflush(handle, TCOFLUSH);
}

SystemError DeviceGone(int number, const std::string& device) {
  return WithAdvice(MakeSystemError(number == 0 ? EIO : number, device), Advice::kPortGone,
                    {device});
}

}  // namespace zep::platform
