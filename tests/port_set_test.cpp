// Which ports there are and how they are opened, set and released.
#include <array>

#include <gtest/gtest.h>

#include "link/port_devices.h"
#include "link/port_texts.h"
#include "link/programming_mode.h"
#include "link/wire_trace.h"
#include "tests/link_testing.h"

namespace zep::link {
namespace {

using testing::TestLink;
using testing::TestSession;

TEST(PortSet, StatesFollowWhatCanBeOpenedAndTheUsersChoice) {
  TestLink test;
  test.settings.AppSaveUserSetting(services::AppType::kDownload, "CommPort1State", "1");
  test.settings.AppSaveUserSetting(services::AppType::kDownload, "CommPort2State", "1");
  test.settings.AppSaveUserSetting(services::AppType::kDownload, "CommPort3State", "3");
  test.settings.AppSaveUserSetting(services::AppType::kDownload, "CommPort4State", "many");
  test.port(2).open_error.number = platform::kPortInUse;
  EXPECT_EQ(CheckCommPorts(test.link, true), 3);
  EXPECT_EQ(TestLink::States(test.link.CommStates), "1322");
  EXPECT_FALSE(test.port(1).IsOpen());

  test.port(2).open_error = {};
  EXPECT_EQ(TryPorts(test.link, test.link.CommStates), 4);
  EXPECT_EQ(TestLink::States(test.link.CommStates), "1222")
      << "a port that can be opened again is Available, not Active";
}

TEST(PortSet, ASingleRadioNeedsExactlyOneActivePort) {
  TestLink test;
  test.windows.on_preferences = [](Link& link, PortStates& states) {
    ApplyPreferences(link, states, {true, true, {}, false});
  };
  test.windows.on_selection = [](Job& job) { SelectPort(job, 2); };
  EXPECT_TRUE(SelectSinglePort(test.job));
  EXPECT_EQ(test.windows.shown, "preferences port selection ");
  EXPECT_EQ(test.States(), "2122");
  EXPECT_EQ(test.settings.AppGetUserSetting(services::AppType::kDownload, "CommPort1State", "?"),
            "1");
  EXPECT_EQ(test.settings.AppGetUserSetting(services::AppType::kDownload, "CommPort4State", "?"),
            "2");

  TestLink given_up;
  EXPECT_FALSE(SelectSinglePort(given_up.job));
  EXPECT_FALSE(InitialiseComms(given_up.job));
  EXPECT_EQ(given_up.windows.shown, "preferences preferences ");
}

TEST(PortSet, AChoiceMadeDuringAnActionOutlastsIt) {
  TestLink test;
  test.windows.on_preferences = [](Link& link, PortStates& states) {
    ApplyPreferences(link, states, {true, {}, {}, {}});
  };
  EXPECT_TRUE(InitialiseComms(test.job));
  EXPECT_EQ(test.States(), "1222");
  EXPECT_EQ(TestLink::States(test.link.CommStates), "1222");
}

TEST(PortSet, APortThatIsPulledMeanwhileStaysTheUsersChoice) {
  TestLink test;
  test.Choose(1);
  test.port(1).open_error.number = platform::kPortDoesNotExist;
  std::string shown;
  test.windows.on_preferences = [&shown](Link&, PortStates& states) {
    shown = TestLink::States(states);
  };
  EXPECT_FALSE(SelectSinglePort(test.job));
  EXPECT_EQ(shown, "3222");
  EXPECT_EQ(TestLink::States(test.link.CommStates), "1222");
}

TEST(PortSet, EveryPortHasADeviceOfItsOwn) {
  TestSession test;
  const std::array<std::string, kPortCount> by_default = DevicesOfPorts(test.settings);
  SavePortDevice(test.settings, 2, by_default[0].empty() ? "/dev/ttyUSB7" : by_default[0]);
  const std::array<std::string, kPortCount> devices = DevicesOfPorts(test.settings);
  EXPECT_EQ(devices[1], by_default[0].empty() ? "/dev/ttyUSB7" : by_default[0]);
  for (const std::size_t other : {0U, 2U, 3U}) EXPECT_NE(devices[other], devices[1]);
}

TEST(PortSet, OnlySimulatedRadiosMayBeOnTwoPorts) {
  using Clash = std::optional<std::pair<int, int>>;
  EXPECT_EQ(PortsWithSameDevice({"/dev/a", "/dev/b", "/dev/c", "/dev/b"}), Clash({2, 4}));
  EXPECT_EQ(PortsWithSameDevice({"/dev/null", "/dev/../dev/null", "", ""}), Clash({1, 2}));
  EXPECT_EQ(PortsWithSameDevice({"sim:trunked", "", "sim:trunked", ""}), std::nullopt);
}

TEST(PortTexts, AnOfferedDeviceIsStoredWithoutItsAdapter) {
  std::vector<platform::SerialDeviceInfo> devices(2);
  devices[0].device = "/dev/ttyUSB0";
  devices[0].description = "UART - two";
  devices[1].device = "/dev/ttyS1";
  EXPECT_EQ(DeviceOfText(DeviceLabel(devices[0]), devices), "/dev/ttyUSB0");
  EXPECT_EQ(DeviceOfText(DeviceLabel(devices[1]), devices), "/dev/ttyS1");
  EXPECT_EQ(DeviceOfText("  sim:trunked ", devices), "sim:trunked");
  EXPECT_EQ(DeviceOfText("  ", devices), "");
}

TEST(PortSet, OpeningReportsThePortThatCannotBeOpened) {
  const std::vector<std::pair<int, std::string>> rows = {
      {platform::kPortDoesNotExist,
       "A communication port has been selected that does not exist on the PC, please select "
       "another port from menu "
       "File->Preferences."},
      {platform::kPortInUse,
       "Communication port 2 already in use, please select another port from menu "
       "File->Preferences."},
      {13, "Error: 13 Permission denied[InitialiseComms]"},
  };
  for (const auto& [number, text] : rows) {
    SCOPED_TRACE(number);
    TestLink test;
    test.job.CommStates = {PortState::kActive, PortState::kActive, PortState::kAvailable,
                           PortState::kAvailable};
    test.port(1).Receive("old");
    test.port(2).open_error = {number, "Permission denied", "", "Ask %0:s.", {"Anne"}};
    EXPECT_FALSE(InitialiseComms(test.job)) << "the last Active port is not open";
    EXPECT_EQ(test.user.Boxes(), "critical " + text + "\nAsk Anne. -> OK\n");
    EXPECT_EQ(test.States(), "1322");
    EXPECT_EQ(test.port(1).InputCount(), 0U) << "what was pending is discarded";
  }
}

TEST(PortSet, LineSpeedsAreSetOnActivePortsOnly) {
  TestLink test({1, 3});
  test.port(2).Receive("x");
  SelectBaudRate(test.job, 1200);
  SelectBaudRate(test.job, 9600);
  SelectBaudRate(test.job, 19200);
  EXPECT_EQ(test.port(1).settings, (std::vector<std::string>{"1200,n,8,1", "9600,n,8,1"}));
  EXPECT_EQ(test.port(3).settings, (std::vector<std::string>{"1200,n,8,1", "9600,n,8,1"}));
  EXPECT_TRUE(test.port(2).settings.empty());
  EXPECT_EQ(test.port(2).InputCount(), 0U);
  EXPECT_EQ(test.user.Boxes(), "critical Baud rate: 19200 not valid -> OK\n");
  EXPECT_EQ(test.io.writes, "");
}

TEST(PortSet, TheHighSpeedCardIsProgrammedRegisterByRegister) {
  TestLink test({1});
  test.session.high_speed = true;
  test.settings.AppSaveUserSetting(services::AppType::kDownload, "Port2", "9");
  InitHighSpeedCard(test.link);
  EXPECT_EQ(std::exchange(test.io.writes, {}), "2A7=FF 2AF=FF 2B0=FF 2BF=FF");
  EXPECT_EQ(test.port(1).PortNumber(), 3);
  EXPECT_EQ(test.port(2).PortNumber(), 9);
  EXPECT_EQ(test.port(4).PortNumber(), 6);

  const std::vector<std::pair<int, std::string>> divisors = {
      {1200, "68"}, {125000, "01"}, {9600, "0D"}, {300, "0D"}};
  for (const auto& [baud, divisor] : divisors) {
    SelectBaudRate(test.job, baud);
    EXPECT_EQ(std::exchange(test.io.writes, {}),
              "2A3=83 2AB=83 2B3=83 2BB=83 2A1=00 2A9=00 2B1=00 2B9=00 2A0=" + divisor + " 2A8=" +
                  divisor + " 2B0=" + divisor + " 2B8=" + divisor + " 2A3=03 2AB=03 2B3=03 2BB=03");
  }
  EXPECT_TRUE(test.port(1).settings.empty());
}

TEST(ProgrammingMode, TheHandshakeGoesPortByPortAndEndsAtTheFirstSilentOne) {
  TestLink test({1, 2, 3});
  for (const int port : {1, 3}) {
    test.port(port).Answer("^", "v");
    test.port(port).Answer("#", ">");
  }
  PutActiveCommsInProgMode(test.job);
  EXPECT_EQ(test.Wire(), "1<^ 1>v 1<# 1>> 2<^");
  EXPECT_TRUE(test.job.DownloadError);

  ReleaseFromProgMode(test.job);
  EXPECT_EQ(test.Wire(), "1<^ 2<^")
      << "every radio that was spoken to is released, failed ones too";
}

TEST(ProgrammingMode, AnActionLeavesRadiosReleasedPortsClosedAndStatesAsTheyWere) {
  TestLink test({2});
  {
    Job job(test.link);
    PutActiveCommsInProgMode(job);
    EXPECT_EQ(TestLink::States(job.CommStates), "2422");
    test.Wire();
  }
  EXPECT_EQ(test.Wire(), "2<^");
  EXPECT_EQ(TestLink::States(test.link.CommStates), "2122");
  EXPECT_FALSE(test.port(2).IsOpen());
}

TEST(WatchedPort, LetsAPortThatHasFailedBeOpenedAnew) {
  TestLink test;
  std::string wire;
  auto owned = std::make_unique<testing::ScriptedPort>(test.clock, 1, wire);
  testing::ScriptedPort& port = *owned;
  std::uint64_t bytes = 0;
  WatchedPort watched(std::move(owned), bytes, nullptr);
  EXPECT_EQ(watched.Open().number, 0);
  port.open_error = {.number = 8002};
  EXPECT_EQ(watched.Open().number, 8002) << "it counts as open still";
}

}  // namespace
}  // namespace zep::link
