#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

#include "platform/pseudo_terminal.h"

namespace zep::platform {
namespace {

struct Speed {
  speed_t code;
  int baud;
};

constexpr std::array kSpeeds = {
    Speed{B300, 300},     Speed{B600, 600},       Speed{B1200, 1200},     Speed{B2400, 2400},
    Speed{B4800, 4800},   Speed{B9600, 9600},     Speed{B19200, 19200},   Speed{B38400, 38400},
    Speed{B57600, 57600}, Speed{B115200, 115200}, Speed{B230400, 230400},
};

// Bytes as they are, and no speed, so that the speed of the first program can be told from the
// system's default.
void MakeRaw(int slave) {
  termios settings{};
  if (tcgetattr(slave, &settings) != 0) return;
  cfmakeraw(&settings);
  cfsetspeed(&settings, B0);
  tcsetattr(slave, TCSANOW, &settings);
}

}  // namespace

SystemError PseudoTerminal::Open() {
  if (IsOpen()) return {};
  master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  std::array<char, 128> name{};
  if (master_ >= 0 && grantpt(master_) == 0 && unlockpt(master_) == 0 &&
      ptsname_r(master_, name.data(), name.size()) == 0) {
    slave_ = open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  }
  if (slave_ < 0) {
    SystemError error = LastSystemError("/dev/ptmx");
    Close();
    return error;
  }
  MakeRaw(slave_);
  slave_name_ = name.data();
  return {};
}

void PseudoTerminal::Close() {
  if (slave_ >= 0) close(slave_);
  if (master_ >= 0) close(master_);
  slave_ = master_ = -1;
  slave_name_.clear();
}

int PseudoTerminal::BaudSetByProgram() const {
  termios settings{};
  if (!IsOpen() || tcgetattr(master_, &settings) != 0) return 0;
  for (const Speed& speed : kSpeeds) {
    if (speed.code == cfgetospeed(&settings)) return speed.baud;
  }
  return 0;
}

std::size_t PseudoTerminal::Read(std::span<std::uint8_t> bytes) {
  if (!IsOpen() || bytes.empty()) return 0;
  const ssize_t count = read(master_, bytes.data(), bytes.size());
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

std::size_t PseudoTerminal::Write(std::span<const std::uint8_t> bytes) {
  if (!IsOpen() || bytes.empty()) return 0;
  const ssize_t count = write(master_, bytes.data(), bytes.size());
  return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool PseudoTerminal::WaitAny(std::span<PseudoTerminal* const> terminals, Duration longest) {
  std::vector<pollfd> waiting;
  for (const PseudoTerminal* terminal : terminals) {
    if (terminal->IsOpen()) waiting.push_back({terminal->master_, POLLIN, 0});
  }
  const auto seconds =
      std::chrono::floor<std::chrono::seconds>(std::max(longest, Duration::zero()));
  const timespec limit{.tv_sec = seconds.count(),
                       .tv_nsec = (std::max(longest, Duration::zero()) - seconds).count()};
  return ppoll(waiting.data(), waiting.size(), &limit, nullptr) > 0;
}

}  // namespace zep::platform
