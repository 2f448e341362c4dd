#include <cerrno>
#include <csignal>

#include <gtest/gtest.h>

#include "platform/interrupt.h"
#include "platform/lock_file.h"
#include "platform/serial_list.h"
#include "platform/single_instance.h"
#include "tests/platform_testing.h"
#include "tests/testing.h"

namespace zep::platform {
namespace {

namespace fs = std::filesystem;

TEST(SingleInstance, SecondCopyIsRefusedUntilTheFirstEnds) {
  const testing::TempFolder folder;
  const std::string state = folder.Path("state");
  auto first = std::make_unique<SingleInstance>("zepdlca", state);
  SingleInstance second("zepdlca", state);
  SingleInstance other_program("zepctl", state);
  EXPECT_TRUE(first->TryAcquire());
  EXPECT_FALSE(second.TryAcquire());
  EXPECT_TRUE(other_program.TryAcquire());
  first.reset();
  EXPECT_TRUE(second.TryAcquire());
  EXPECT_TRUE(SingleInstance("zepdlca", "/proc/nowhere").TryAcquire()) << "no place for a lock";
}

TEST(LockFile, HoldsForEveryUserWhoMayReadIt) {
  const struct {
    const char* name;
    fs::perms permissions;  // of a file of root's, which an ordinary user finds
    bool is_held;
    LockState state;
    int error;
  } rows[] = {
      {"held", fs::perms{0444}, true, LockState::kHeldByAnother, EWOULDBLOCK},
      {"left behind", fs::perms{0444}, false, LockState::kAcquired, 0},
      {"may not be read", fs::perms{0}, true, LockState::kFailed, EACCES},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const testing::TempFolder folder;
    const std::string path = folder.Write("a.lock", "");
    LockFile holder;
    ASSERT_TRUE(!row.is_held || holder.TryAcquire(path) == LockState::kAcquired);
    fs::permissions(path, row.permissions);
    const testing::OrdinaryUser user;
    LockFile lock;
    EXPECT_EQ(lock.TryAcquire(path), row.state);
    EXPECT_EQ(lock.Error().number, row.error);
  }
}

TEST(Interrupts, AreCountedWhileWantedAndDeadlyAfterwards) {
  {
    Interrupts interrupts;
    EXPECT_EQ(interrupts.Take(), 0);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::raise(signal);
    EXPECT_EQ(interrupts.Take(), 3);
    EXPECT_EQ(interrupts.Take(), 0);
  }
  EXPECT_EXIT(std::raise(SIGTERM), ::testing::KilledBySignal(SIGTERM), "");
}

class SerialList : public ::testing::Test {
 protected:
  // A device of sysfs below devices/, and its node.
  void AddTty(const std::string& name, const std::string& device, const std::string& type = {}) {
    fs::create_directories(folder_.Path("sys/devices/" + device));
    fs::create_directories(folder_.Path("sys/class/tty/" + name));
    fs::create_symlink(folder_.Path("sys/devices/" + device),
                       folder_.Path("sys/class/tty/" + name + "/device"));
    if (!type.empty()) folder_.Write("sys/class/tty/" + name + "/type", type + "\n");
    folder_.Write("dev/" + name, "");
  }
  std::string List() const {
    const std::string devices = folder_.Path("dev");
    std::string text;
    for (const SerialDeviceInfo& info :
         ListSerialDevices({.system = folder_.Path("sys"), .devices = devices})) {
      const std::string state = info.state == SerialDeviceState::kBusy           ? "busy"
                                : info.state == SerialDeviceState::kNoPermission ? "forbidden"
                                : info.state == SerialDeviceState::kConsole      ? "console"
                                                                                 : "free";
      text += info.device.substr(devices.size() + 1) + "|" + info.description + "|" + info.usb_id +
              "|" + info.serial_number + "|" + state + "|" + info.busy_with + "\n";
    }
    return text;
  }

  testing::TempFolder folder_;
};

TEST_F(SerialList, UsbAdaptersComeFirstWithTheirMakersAndWhoMayUseThem) {
  AddTty("ttyS0", "pnp0/00:05", "4");
  AddTty("ttyS1", "platform/serial8250", "0");
  AddTty("ttyUSB10", "usb1/1-2/1-2:1.0/ttyUSB10");
  AddTty("ttyUSB9", "usb1/1-2/1-2:1.1/ttyUSB9");
  folder_.Write("sys/devices/usb1/1-2/idVendor", "0403\n");
  folder_.Write("sys/devices/usb1/1-2/idProduct", "6001\n");
  folder_.Write("sys/devices/usb1/1-2/manufacturer", "FTDI\n");
  folder_.Write("sys/devices/usb1/1-2/product", "FT232R USB UART\n");
  folder_.Write("sys/devices/usb1/1-2/serial", "A50285BI\n");
  folder_.Write("sys/class/tty/console/active", "tty0 ttyS0\n");
  LockFile lock;
  EXPECT_EQ(lock.TryAcquire(folder_.Path("dev/ttyUSB9")), LockState::kAcquired);
  fs::permissions(folder_.Path("dev/ttyUSB10"), fs::perms{0});
  const testing::OrdinaryUser user;
  EXPECT_EQ(List(), "ttyUSB9|FTDI FT232R USB UART|0403:6001|A50285BI|busy|core_tests (" +
                        std::to_string(getpid()) +
                        ")\n"
                        "ttyUSB10|FTDI FT232R USB UART|0403:6001|A50285BI|forbidden|\n"
                        "ttyS0|16550A|||console|\n");
}

}  // namespace
}  // namespace zep::platform
