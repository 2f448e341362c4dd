#include <chrono>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "simulator/simulated_port.h"
#include "tests/simulator_testing.h"

namespace zep::simulator {
namespace {

using platform::VirtualClock;
using std::chrono::microseconds;
using std::chrono::milliseconds;

struct PortOnTable {
  explicit PortOnTable(std::string_view device, std::string_view settings = "9600,n,8,1")
      : made(MakeSimulatedPort(device, clock)), port(*made.value.value()) {
    EXPECT_FALSE(port.SetSettings(settings));
    EXPECT_FALSE(port.Open());
  }
  void Write(std::string_view text) { port.Write(BytesOf(text)); }
  // What arrives in that time.
  std::string Read(platform::Duration time) {
    const platform::Duration end = clock.Now() + time;
    std::string text;
    while (clock.Now() < end) {
      port.WaitForInput(end - clock.Now());
      while (const auto byte = port.Read()) text += static_cast<char>(*byte);
    }
    return text;
  }
  VirtualClock clock;
  Parsed<std::unique_ptr<SimulatedPort>> made;
  SimulatedPort& port;
};

TEST(SimulatedPort, BytesTakeTheirTimeInBothDirections) {
  PortOnTable table("sim:torvik");
  table.Write("^^");
  EXPECT_EQ(table.port.OutputCount(), 2U);
  EXPECT_EQ(table.Read(microseconds(2083)), "");  // two bytes of 10 bits at 9600 baud: 2083.3 us
  EXPECT_EQ(table.port.OutputCount(), 1U);
  EXPECT_EQ(table.Read(microseconds(1)), "v");
  EXPECT_EQ(table.port.OutputCount(), 0U);
  EXPECT_EQ(table.Read(microseconds(1040)), "");
  EXPECT_EQ(table.Read(microseconds(1)), "v");
}

TEST(SimulatedPort, AnAnswerWaitsForTheOneBefore) {
  PortOnTable table("sim:torvik");
  table.Write("#rFE\r^");
  // The "{" starts when five bytes are through, 5208 us, and the prompt ends seven bytes later.
  EXPECT_EQ(table.Read(microseconds(12501)), ">{C04}\r>");
  EXPECT_EQ(table.Read(microseconds(1040)), "");
  EXPECT_EQ(table.Read(microseconds(2)), "v");
}

TEST(SimulatedPort, WaitingEndsWithTheInputOrTheTime) {
  PortOnTable table("sim:torvik,fault=slow@caret:2=300");
  table.port.WaitForInput(milliseconds(50));
  EXPECT_EQ(table.clock.Now(), milliseconds(50));
  table.Write("^");
  table.port.WaitForInput(milliseconds(50));
  EXPECT_EQ(table.clock.Now() / microseconds(1), 52083);
  EXPECT_EQ(table.port.Read(), 'v');
  table.Write("^");
  table.port.WaitForInput(std::chrono::seconds(4));
  EXPECT_EQ(table.clock.Now() / microseconds(1), 354166);
}

TEST(SimulatedPort, TheLoaderIdentifiesItselfInAPause) {
  PortOnTable table("sim:torvik,config=none", "1200,n,8,1");
  table.Write(std::string(257, '\xFF') + "0");
  table.port.WaitForOutput(std::chrono::seconds(4));
  EXPECT_EQ(table.clock.Now() / microseconds(1), 2149999);  // 258 times 8333333 ns
  EXPECT_FALSE(table.port.SetSettings("9600,n,8,1"));
  table.Write("BxE");
  table.port.WaitForOutput(std::chrono::seconds(1));
  const platform::Duration sent = table.clock.Now();
  table.port.WaitForInput(std::chrono::seconds(4));
  EXPECT_EQ((table.clock.Now() - sent) / microseconds(1), 501041);
  EXPECT_EQ(table.Read(milliseconds(3)),
            "\x1F\xD5"
            "a");
}

TEST(SimulatedPort, ACutLineIsAnErrorUntilThePortIsOpenedAgain) {
  PortOnTable table("sim:torvik,fault=cut@prompt");
  table.Write("^#^^");
  EXPECT_EQ(table.Read(milliseconds(2)), "");
  EXPECT_FALSE(table.port.TakeError());
  table.port.WaitForInput(std::chrono::seconds(4));
  EXPECT_LT(table.clock.Now(), milliseconds(4));  // the failure ends the wait
  EXPECT_EQ(table.port.TakeError().number, 5);
  table.Write("^");
  EXPECT_EQ(table.Read(milliseconds(20)), "");

  table.port.Close();
  EXPECT_FALSE(table.port.Open());
  table.Write("^");
  EXPECT_EQ(table.Read(milliseconds(20)), "v");
}

}  // namespace
}  // namespace zep::simulator
