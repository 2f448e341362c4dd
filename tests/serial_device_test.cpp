#include "platform/serial_device.h"

#include <cstdlib>
#include <grp.h>
#include <numeric>
#include <thread>

#include <gtest/gtest.h>

#include "platform/pseudo_terminal.h"
#include "tests/platform_testing.h"
#include "tests/testing.h"

namespace zep::platform {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;
using testing::Say;

Bytes Counting(std::size_t count) {
  Bytes bytes(count);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
  return bytes;
}

class SerialDevice : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(Say(far_.Open()), "ok");
    port_ = MakeSerialDevice(far_.SlaveName());
    ASSERT_EQ(Say(port_->Open()), "ok");
  }

  // What arrives at the far end until there are count bytes, or none for so long.
  Bytes FarReceives(std::size_t count, Duration longest = 2s) {
    Bytes received;
    Bytes chunk(1000);
    PseudoTerminal* const terminals[] = {&far_};
    while (received.size() < count && PseudoTerminal::WaitAny(terminals, longest)) {
      chunk.resize(far_.Read(chunk));
      received.insert(received.end(), chunk.begin(), chunk.end());
      chunk.resize(1000);
    }
    return received;
  }

  Bytes PortReceives(std::size_t count) {
    Bytes received;
    while (received.size() < count) {
      const std::optional<std::uint8_t> byte = port_->Read();
      if (byte) {
        received.push_back(*byte);
      } else if (port_->WaitForInput(2s); port_->InputCount() == 0) {
        break;
      }
    }
    return received;
  }

  // The input count when it has reached count, or after two seconds.
  std::size_t InputReaches(std::size_t count) {
    for (int i = 0; i < 2000 && port_->InputCount() < count; ++i) SystemClock().Sleep(1ms);
    return port_->InputCount();
  }

  PseudoTerminal far_;
  std::unique_ptr<SerialPort> port_;
};

TEST_F(SerialDevice, EveryByteValuePassesUnchangedBothWays) {
  const Bytes all = Counting(256);
  port_->Close();
  ASSERT_EQ(std::system(("stty -F " + far_.SlaveName() + " sane").c_str()), 0);
  ASSERT_EQ(Say(port_->Open()), "ok");
  for (const std::uint8_t byte : all) port_->Write({&byte, 1});
  EXPECT_EQ(FarReceives(256), all);
  EXPECT_EQ(far_.Write(all), 256U);
  EXPECT_EQ(PortReceives(256), all);
}

TEST_F(SerialDevice, SpeedReachesTheLineWhileOpenAndWhenOpenedLater) {
  EXPECT_EQ(far_.BaudSetByProgram(), 9600);
  EXPECT_EQ(Say(port_->SetSettings("1200,n,8,1")), "ok");
  EXPECT_EQ(far_.BaudSetByProgram(), 1200);
  port_->Close();
  EXPECT_EQ(Say(port_->SetSettings("4800,N,8,2")), "ok");
  EXPECT_EQ(far_.BaudSetByProgram(), 1200);
  EXPECT_EQ(Say(port_->Open()), "ok");
  EXPECT_EQ(far_.BaudSetByProgram(), 4800);
}

TEST_F(SerialDevice, SettingsThatTheDeviceCannotHaveAreRefusedAndChangeNothing) {
  for (const char* settings : {"", "9600", "x,n,8,1", "0,n,8,1", "12345,n,8,1", "9600,m,8,1",
                               "9600,,8,1", "9600,n,9,1", "9600,n,8,3", "9600,n,8,1,1"}) {
    SCOPED_TRACE(settings);
    EXPECT_EQ(Say(port_->SetSettings(settings)), "22 " + far_.SlaveName() +
                                                     " does not accept the line settings \"" +
                                                     settings + "\". Please use another adapter.");
    EXPECT_EQ(far_.BaudSetByProgram(), 9600);
  }
  port_->Close();
  EXPECT_EQ(Say(port_->Open()), "ok");
}

TEST_F(SerialDevice, SecondOpenIsRefusedForRootTooAndNamesTheProgram) {
  const std::unique_ptr<SerialPort> second = MakeSerialDevice(far_.SlaveName());
  const SystemError busy = second->Open();
  EXPECT_EQ(Say(busy), "8005 " + far_.SlaveName() + " is in use by core_tests (" +
                           std::to_string(getpid()) +
                           "). Please close that program, then try again.");
  EXPECT_EQ(busy.description, "Device or resource busy");
  EXPECT_FALSE(second->IsOpen());
  EXPECT_EQ(Say(port_->Open()), "ok") << "opening an open port does nothing";
  port_->Close();
  EXPECT_EQ(Say(second->Open()), "ok");
}

TEST_F(SerialDevice, EachKindOfBadDeviceHasItsOwnErrorAndNextStep) {
  const testing::TempFolder folder;
  const std::string plug =
      " on this computer. Please plug in the adapter of the programming lead, or choose a device "
      "from the list of ports.";
  const std::string not_serial =
      " is not a serial device. Please choose a device from the list of ports.";
  const std::string file = folder.Write("image.bin", "x");
  const struct {
    std::string name, device, error;
  } rows[] = {
      {"missing", "/dev/ttyUSB99", "8002 There is no serial device /dev/ttyUSB99" + plug},
      {"ordinary file", file, "25 " + file + not_serial},
      {"folder", folder.Path(), "21 " + folder.Path() + not_serial},
      {"other device", "/dev/null", "25 /dev/null" + not_serial},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const std::unique_ptr<SerialPort> port = MakeSerialDevice(row.device);
    EXPECT_EQ(Say(port->Open()), row.error);
    EXPECT_FALSE(port->IsOpen());
  }
}

TEST_F(SerialDevice, WithoutPermissionTheGroupToJoinIsNamed) {
  namespace fs = std::filesystem;
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a device to others";
  const std::string device = far_.SlaveName();
  const struct group* const group = getgrnam("dialout");
  ASSERT_TRUE(group != nullptr && chown(device.c_str(), 0, group->gr_gid) == 0);
  const auto open_as_ordinary_user = [&](fs::perms permissions) {
    fs::permissions(device, permissions);
    const testing::OrdinaryUser user;
    return Say(MakeSerialDevice(device)->Open());
  };
  EXPECT_EQ(
      open_as_ordinary_user(fs::perms{0660}),
      "13 " + device +
          " is for members of the group dialout. Please run \"sudo usermod -a -G dialout nobody\", "
          "then log out and log in again.");
  EXPECT_EQ(open_as_ordinary_user(fs::perms{0620}),
            "13 You are not allowed to use " + device +
                ". Please ask the administrator of this computer for the right to read and write "
                "it.");
}

TEST_F(SerialDevice, PulledCableIsToldOnceAndThePortIsSilentFromThenOn) {
  EXPECT_EQ(far_.Write(Counting(3)), 3U);
  EXPECT_EQ(InputReaches(3), 3U);
  const std::string device = far_.SlaveName();
  far_.Close();
  port_->WaitForInput(2s);
  EXPECT_EQ(Say(port_->TakeError()),
            "5 " + device +
                " is gone: its adapter was unplugged or failed. Please plug it in again and repeat "
                "the job.");
  EXPECT_EQ(Say(port_->TakeError()), "ok");
  EXPECT_EQ(port_->InputCount(), 0U);
  EXPECT_FALSE(port_->Read());
  port_->Write(Counting(3));
  EXPECT_EQ(port_->OutputCount(), 0U);
  EXPECT_EQ(port_->Open().number, 8002) << "a failed port is opened afresh";
}

TEST_F(SerialDevice, InputCountIsTrueToTheByte) {
  const Bytes sent = Counting(300);
  EXPECT_EQ(far_.Write(sent), 300U);
  EXPECT_EQ(InputReaches(300), 300U);
  EXPECT_EQ(port_->Read(), 0);
  EXPECT_EQ(port_->InputCount(), 299U);
  EXPECT_EQ(far_.Write(sent), 300U);
  EXPECT_EQ(InputReaches(599), 599U);
  port_->ClearInput();
  EXPECT_EQ(port_->InputCount(), 0U);
  EXPECT_EQ(far_.Write(Bytes{7}), 1U);
  EXPECT_EQ(PortReceives(1), Bytes{7});
}

TEST_F(SerialDevice, WritingNeverWaitsAndKeepsTheOrder) {
  const Bytes first = Counting(200'000);
  port_->Write(first);
  port_->Write(Bytes{1, 2, 3});
  EXPECT_GT(port_->OutputCount(), 100'000U);
  port_->WaitForOutput(1ms);
  Bytes expected = first;
  expected.insert(expected.end(), {1, 2, 3});
  Bytes received;
  std::thread radio([&] { received = FarReceives(expected.size()); });
  while (port_->OutputCount() > 0) port_->WaitForOutput(2s);
  radio.join();
  EXPECT_EQ(received, expected);
}

TEST_F(SerialDevice, ClearedOutputIsNeverSentAndLaterOutputIs) {
  port_->Write(Counting(200'000));
  port_->ClearOutput();
  EXPECT_EQ(port_->OutputCount(), 0U);
  EXPECT_LT(FarReceives(200'000, 50ms).size(), 100'000U);
  port_->Write(Bytes{'^'});
  EXPECT_EQ(FarReceives(1), Bytes{'^'});
}

TEST_F(SerialDevice, ClosingLetsTheOutputGoOutFirst) {
  const Bytes sent = Counting(60'000);
  Bytes received;
  std::thread radio([&] { received = FarReceives(sent.size()); });
  port_->Write(sent);
  port_->Close();
  EXPECT_FALSE(port_->IsOpen());
  radio.join();
  EXPECT_EQ(received, sent);
}

}  // namespace
}  // namespace zep::platform
