#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sched.h>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "platform/advice.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/interrupt.h"
#include "platform/io_ports.h"
#include "platform/processes.h"
#include "platform/program_paths.h"
#include "platform/serial_list.h"
#include "platform/single_instance.h"
#include "platform/terminal.h"
#include "platform/thread_priority.h"
#include "tests/platform_testing.h"
#include "tests/testing.h"

namespace zep::platform {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::Say;

std::string Text(const std::tm& time) {
  char text[80] = "";
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S %A, day %j", &time)};
}

// An environment variable for the length of a test.
class Environment {
 public:
  Environment(const char* name, const std::string& value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    setenv(name, value.c_str(), 1);
  }
  ~Environment() {
    if (before_) {
      setenv(name_, before_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }

 private:
  const char* name_;
  std::optional<std::string> before_;
};

TEST(VirtualClock, TimeOfDayMovesWithTheSleepAndIntoTheNextYear) {
  VirtualClock clock;
  EXPECT_EQ(Text(clock.LocalTime()), "2026-11-21 07:05:33 Saturday, day 325");
  clock.Sleep(1999ms);
  clock.Sleep(-1h);
  EXPECT_EQ(Text(clock.LocalTime()), "2026-11-21 07:05:34 Saturday, day 325");
  clock.Sleep(40 * 24h + 17h);
  EXPECT_EQ(Text(clock.LocalTime()), "2027-01-01 00:05:34 Friday, day 001");
}

TEST(SystemClock, SleepsAtLeastAsLongAsAsked) {
  SystemClock clock;
  const Duration start = clock.Now();
  clock.Sleep(2ms);
  EXPECT_GE(clock.Now() - start, 2ms);
}

TEST(Advice, EveryTextIsASentenceWithItsPlaceholdersInOrder) {
  std::set<std::string_view> texts;
  for (const std::string_view text : AdviceTexts()) {
    SCOPED_TRACE(text);
    EXPECT_TRUE(text.ends_with('.'));
    EXPECT_TRUE(texts.insert(text).second) << "twice";
    const bool has_second = text.find("%1:s") != text.npos;
    EXPECT_TRUE(!has_second || text.find("%0:s") != text.npos);
  }
  EXPECT_GT(texts.size(), 20U);
  EXPECT_EQ(AdviceText(Advice::kIsFolder), "%0:s is a folder. Please choose a file.");
}

TEST(ProgramPaths, FollowTheEnvironmentWhereItIsAbsolute) {
  const Environment home("HOME", "/home/tech/");
  const Environment config("XDG_CONFIG_HOME", "relative");
  const Environment data("XDG_DATA_HOME", "/data");
  const Environment state("XDG_STATE_HOME", "");
  const Environment temporary("TMPDIR", "/scratch/");
  EXPECT_EQ(UserConfigFolder(), "/home/tech/.config/zepdlca");
  EXPECT_EQ(UserDataFolder(), "/data/zepdlca");
  EXPECT_EQ(UserStateFolder(), "/home/tech/.local/state/zepdlca");
  EXPECT_EQ(MachineConfigFolder(), "/etc/xdg/zepdlca");
  EXPECT_EQ(TemporaryFolder(), "/scratch");
  EXPECT_TRUE(FileExists(ProgramFolder() + "/core_tests"));
}

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

TEST(Terminal, PipesAndFilesAreNone) {
  int pipe_ends[2];
  ASSERT_EQ(pipe(pipe_ends), 0);
  const int input = dup(STDIN_FILENO);
  dup2(pipe_ends[0], STDIN_FILENO);
  EXPECT_FALSE(IsTerminal(StandardStream::kInput));
  EXPECT_FALSE(WaitForStandardInput(1ms));
  EXPECT_EQ(write(pipe_ends[1], "y", 1), 1);
  EXPECT_TRUE(WaitForStandardInput(10s));
  dup2(input, STDIN_FILENO);
  const char* const arguments[] = {"zepctl", "ports", "--json"};
  EXPECT_EQ(ProgramArguments(3, arguments), (std::vector<std::string>{"ports", "--json"}));
  EXPECT_EQ(ProgramArguments(0, nullptr), std::vector<std::string>());
}

TEST(ThreadPriority, IsRaisedAndPutBackOrRefusedWithoutEffect) {
  const SystemError error = SetThreadTimeCritical(true);
  EXPECT_EQ(sched_getscheduler(0) & ~SCHED_RESET_ON_FORK, error ? SCHED_OTHER : SCHED_FIFO);
  EXPECT_EQ(Say(SetThreadTimeCritical(false)), "ok");
  EXPECT_EQ(sched_getscheduler(0) & ~SCHED_RESET_ON_FORK, SCHED_OTHER);
  if (geteuid() != 0) {
    EXPECT_EQ(error.number, EPERM);
  }
}

class Processes : public ::testing::Test {
 protected:
  // What the program started writes, when it is done.
  std::string WaitFor(const std::string& name) const {
    for (int i = 0; i < 1000 && !folder_.Read(name); ++i) SystemClock().Sleep(5ms);
    return folder_.Read(name).value_or("(nothing)");
  }

  testing::TempFolder folder_;
  std::string out_ = folder_.Path("out");
};

TEST_F(Processes, StartedProgramGetsItsArgumentsAndASessionOfItsOwn) {
  const std::string script =
      "printf '%s|' \"$1\" \"$2\" \"$(cut -d ' ' -f 6 /proc/$$/stat)\" > $0.new; mv $0.new $0";
  EXPECT_EQ(Say(StartProgram("sh", {"-c", script, out_, "two words", "\"$HOME\""})), "ok");
  const std::string written = WaitFor("out");
  EXPECT_TRUE(written.starts_with("two words|\"$HOME\"|")) << written;
  EXPECT_FALSE(written.ends_with("|" + std::to_string(getsid(0)) + "|")) << written;
  EXPECT_EQ(Say(StartProgram("/no/such program", {})),
            "2 The program /no/such program cannot be started. Please check that it is installed.");
}

TEST_F(Processes, WebAddressGoesToTheDesktopsOpener) {
  folder_.Write("xdg-open",
                "#!/bin/sh\nprintf %s \"$1\" > " + out_ + ".new\nmv " + out_ + ".new " + out_);
  fs::permissions(folder_.Path("xdg-open"), fs::perms{0755});
  const Environment path("PATH", folder_.Path() + ":/usr/bin:/bin");
  EXPECT_EQ(Say(OpenWebAddress("www.vorn.example")), "ok");
  EXPECT_EQ(WaitFor("out"), "http://www.vorn.example");
  fs::remove(folder_.Path("xdg-open"));
  fs::remove(out_);
  const Environment nothing("PATH", folder_.Path());
  EXPECT_EQ(Say(OpenWebAddress("https://vorn.example/a")),
            "2 Please open https://vorn.example/a in a web browser yourself.");
}

TEST_F(Processes, TimeAndMemoryUsedAreMeasured) {
  const Duration start = ProcessorTime();
  while (ProcessorTime() - start < 5ms) {
  }
  const std::uint64_t before = PeakMemory();
  EXPECT_GT(before, 1'000'000U);
  const std::vector<char> much(before + 30'000'000, 'x');
  EXPECT_GE(PeakMemory(), before + 30'000'000U);
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
  void AddUsb(const std::string& device, const std::string& maker, const std::string& product,
              const std::string& serial) {
    const std::string usb = "sys/devices/" + device + "/";
    folder_.Write(usb + "idVendor", "0403\n");
    folder_.Write(usb + "idProduct", "6001\n");
    if (!maker.empty()) folder_.Write(usb + "manufacturer", maker + "\n");
    folder_.Write(usb + "product", product + "\n");
    if (!serial.empty()) folder_.Write(usb + "serial", serial + "\n");
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

TEST_F(SerialList, DevicesAreDescribedAndUsbAdaptersComeFirst) {
  AddTty("ttyS0", "pnp0/00:05", "4");
  AddTty("ttyS1", "platform/serial8250", "0");
  AddTty("ttyS2", "platform/soc/uart", "99");
  fs::create_symlink("../../../../bus/imx-uart",
                     folder_.Path("sys/devices/platform/soc/uart/driver"));
  AddTty("ttyUSB10", "usb1/1-2/1-2:1.0/ttyUSB10");
  AddUsb("usb1/1-2", "FTDI", "FT232R USB UART", "A50285BI");
  AddTty("ttyUSB9", "usb1/1-3/1-3:1.0/ttyUSB9");
  AddUsb("usb1/1-3", "", "USB-Serial Controller", "");
  AddTty("ttyACM0", "usb1/1-4/1-4:1.0");
  AddUsb("usb1/1-4", "Acme", "Acme Lead", "7");
  AddTty("ttyUSB11", "usb1/1-5");
  fs::remove(folder_.Path("dev/ttyUSB11"));
  fs::create_directories(folder_.Path("sys/class/tty/tty1"));
  folder_.Write("sys/class/tty/console/active", "tty0 ttyS0\n");
  EXPECT_EQ(List(),
            "ttyACM0|Acme Lead|0403:6001|7|free|\n"
            "ttyUSB9|USB-Serial Controller|0403:6001||free|\n"
            "ttyUSB10|FTDI FT232R USB UART|0403:6001|A50285BI|free|\n"
            "ttyS0|16550A|||console|\n"
            "ttyS2|imx-uart|||free|\n");
}

TEST_F(SerialList, StateTellsWhoUsesADeviceAndWhetherTheUserMay) {
  AddTty("ttyUSB0", "usb1/1-2");
  AddTty("ttyUSB1", "usb1/1-3");
  FileWriter user_of_it;
  EXPECT_EQ(Say(user_of_it.Open(folder_.Path("dev/ttyUSB0"), WriteMode::kAppend)), "ok");
  const std::string me = "core_tests (" + std::to_string(getpid()) + ")";
  EXPECT_EQ(List(), "ttyUSB0||||busy|" + me + "\nttyUSB1||||free|\n");
  LockFile lock;
  EXPECT_EQ(lock.TryAcquire(folder_.Path("dev/ttyUSB0")), LockState::kAcquired);
  user_of_it.Close();
  fs::permissions(folder_.Path("dev/ttyUSB1"), fs::perms{0});
  const testing::OrdinaryUser user;
  EXPECT_EQ(List(), "ttyUSB0||||busy|" + me + "\nttyUSB1||||forbidden|\n");
}

TEST_F(SerialList, NothingIsFoundWhereThereIsNothing) { EXPECT_EQ(List(), ""); }

TEST(IoPorts, AreRefusedToOrdinaryUsers) {
  const testing::OrdinaryUser user;
  SystemError error;
  EXPECT_EQ(OpenIoPorts(0x2A0, 0x20, error), nullptr);
  EXPECT_EQ(error.advice,
            "This computer does not let the program write to I/O ports. Please use serial ports "
            "that the operating system knows.");
}

}  // namespace
}  // namespace zep::platform
