#include <chrono>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "simulator/samples.h"
#include "simulator/simulated_port.h"
#include "tests/simulator_testing.h"

namespace zep::simulator {
namespace {

using platform::VirtualClock;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using testing::RadioOnTable;

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

TEST(RadioText, UnknownTextsSayWhatIsAllowed) {
  struct Row {
    const char* text;
    const char* error;
  };
  for (const Row& row : std::vector<Row>{
           {"sim:", "\"\" is no simulated radio. There are: conventional, trunked, "},
           {"trunk,old", "\"trunk\" is no simulated radio. There are: "},
           {"torvik,new", "\"new\" is no option of a simulated radio. There are: old, model, "},
           {"trunked,networks=5", "\"networks=5\" is not understood. Write networks=1..4: "},
           {"torvik,old=1", "\"old=1\" is not understood. Write old: first generation"},
           {"torvik,item0", "\"item0\" is not understood. Write item0=48|58|66: "},
           {"torvik,firmware=303", "\"firmware=303\" is not understood. Write firmware=NNNN: "},
           {"torvik,serial=9999999", "Write serial=NUMBER|none: serial number from 10000000 on"},
           {"torvik,networks=2", "Only a trunked radio has more than one network."},
           {"torvik,fault=silent", "\"silent\": a fault is KIND@STEP[:N[+]][=VALUE], as "},
           {"torvik,fault=loud@block", "there are the faults silent, wrong, brace, badsum, "},
           {"torvik,fault=cut@lunch", "there are the steps caret, prompt, list, read, network, "},
           {"torvik,fault=badsum@list", "\"badsum@list\": this fault cannot happen at this step."},
           {"torvik,fault=cut@read:0", "\"cut@read:0\": steps are counted from 1, as block:100."},
           {"torvik,fault=cut@read=1", "\"cut@read=1\": cut takes no value."},
           {"torvik,fault=wrong@read=4",
            "wrong takes a byte as two upper-case hexadecimal digits."},
       }) {
    SCOPED_TRACE(row.text);
    VirtualClock clock;
    const std::string error = MakeSimulatedPort(row.text, clock).error;
    EXPECT_NE(error.find(row.error), std::string::npos) << error;
  }
}

TEST(RadioText, OptionsAreAppliedInTheirOrder) {
  const RadioProfile profile = testing::ProfileOf(
      "sim:trunked,networks=2,old,firmware=0309,item0=58,flash=SST29SF020,micro=E1,serial=10000255,"
      "band=none,config=43,worn=09,x31,x32,manual,unpaced,fault=slow@read:3+,fault=brace@write:2="
      "C04");
  EXPECT_EQ(profile.model_code, "12");
  EXPECT_EQ(profile.versions, (Versions{"0309", "0400", "0100"}));
  EXPECT_EQ(profile.networks, 2);
  EXPECT_EQ(profile.item_0_format, 58);
  EXPECT_EQ(profile.flash.device, 0x24);
  EXPECT_EQ(profile.micro, Micro::kE1);
  EXPECT_EQ(profile.serial_number, 255U);
  EXPECT_FALSE(profile.band.has_value());
  EXPECT_EQ(profile.config_byte, 0x43);
  EXPECT_EQ(profile.worn_item, 0x09);
  EXPECT_TRUE(profile.model_error && profile.corrupt && profile.manual);
  EXPECT_FALSE(profile.paced);
  ASSERT_EQ(profile.faults.size(), 2U);
  EXPECT_EQ(FaultText(profile.faults[0]), "slow@read:3+=1000");
  EXPECT_EQ(FaultText(profile.faults[1]), "brace@write:2=C04");
}

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

TEST(SimulatedPort, TheFirstLoaderTakesTwoSeconds) {
  PortOnTable table("sim:torvik", "1200,n,8,1");
  table.Write(std::string(257, '\xFF'));
  table.port.WaitForOutput(std::chrono::seconds(1));
  EXPECT_EQ(table.clock.Now(), std::chrono::seconds(1));
  table.port.WaitForOutput(std::chrono::seconds(9));
  EXPECT_EQ(table.clock.Now() / microseconds(1), 2141666);  // 257 * 10 / 1200 s
  EXPECT_EQ(table.Read(milliseconds(9)), "\x0F");           // the configuration byte, 8.3 ms later
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

TEST(SimulatedPort, AtAnotherSpeedNothingIsUnderstood) {
  PortOnTable table("sim:torvik");
  table.Write("^");
  EXPECT_FALSE(table.port.SetSettings("1200,n,8,1"));  // before the answer
  EXPECT_EQ(table.Read(milliseconds(10)), "");
  table.Write("^");
  EXPECT_EQ(table.Read(milliseconds(20)), "");
  EXPECT_EQ(table.port.SetSettings("fast").number, 22);
  EXPECT_FALSE(table.port.SetSettings("9600,n,8,1"));
  table.Write("^");
  EXPECT_EQ(table.Read(milliseconds(20)), "v");
}

TEST(SimulatedPort, TheLoaderIdentifiesItselfInAPause) {
  PortOnTable table("sim:torvik,config=none", "1200,n,8,1");
  table.Write(std::string(257, '\xFF') + "0");
  table.port.WaitForOutput(std::chrono::seconds(4));
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
  EXPECT_EQ(table.port.InputCount(), 0U);
  EXPECT_EQ(table.port.OutputCount(), 0U);
  const platform::SystemError error = table.port.TakeError();
  EXPECT_EQ(error.number, 5);
  EXPECT_EQ(error.subject, "sim:torvik,fault=cut@prompt");
  EXPECT_FALSE(table.port.TakeError());
  table.Write("^");
  EXPECT_EQ(table.Read(milliseconds(20)), "");

  table.port.Close();
  EXPECT_FALSE(table.port.Open());
  table.Write("^");
  EXPECT_EQ(table.Read(milliseconds(20)), "v");
}

TEST(SimulatedPort, ClosingLetsTheLastBytesOut) {
  PortOnTable table("sim:torvik");
  std::string heard;
  table.port.SetListener([&](const WireByte& byte) {
    if (!byte.from_radio) heard += static_cast<char>(byte.value);
  });
  table.Write("w0900021234AF\r^");
  table.port.Close();
  EXPECT_EQ(heard, "w0900021234AF\r^");
  EXPECT_EQ(table.port.InputCount(), 0U);
  table.Write("^");
  EXPECT_EQ(table.port.OutputCount(), 0U);
}

TEST(Samples, DataFilesFitTheRadiosTheyAreMadeFor) {
  struct Row {
    const char* radio;
    const char* title;
    const char* identity;
    const char* calibration_identity;
  };
  const std::string saved =
      "Saved with the ZEP Download and Configuration Application Version 1.0.0\r\n###\r\n---\r\n";
  for (const Row& row : std::vector<Row>{
           {"conventional", "ZEP Data File\r\n", "0000155A45502D4831353130303430353032303134\r\n",
            "0000205A45502D4831353130"},
           {"trunked", "ZEP Multiple Network Data File\r\nContains data for 3 networks\r\n",
            "0000155A",
            "0000205A45502D4831353230303333352C5354442C30323031303430352C303100126714\r\n"},
           {"torvik", "ZEP Data File\r\n", "0000115A45502D4831313130303430303030303044\r\n",
            "00001C5A45502D4831313130303132352C30303030303430302C303100007D3B\r\n"},
           {"model31", "ZEP Data File\r\n", "0000115A", "00001C5A"},
           {"conventional2", "ZEP Data File\r\n", "0000115A", "00001C5A"},
       }) {
    SCOPED_TRACE(row.radio);
    const RadioProfile profile = testing::ProfileOf(row.radio);
    const std::string start = "***\r\n" + std::string(row.title) + saved;
    const std::string text = DataFileText(profile);
    EXPECT_EQ(text.substr(0, start.size()), start);
    EXPECT_EQ(text.find(row.identity), start.size());
    const std::string calibration = CalibrationFileText(profile);
    EXPECT_EQ(calibration.find("***\r\n" + saved + row.calibration_identity), 0U);

    RadioOnTable table(row.radio);
    table.Say("^#d01|b|");
    // The calibration comes last, without its header and its identity line.
    std::istringstream lines(text.substr(start.size()) +
                             calibration.substr(calibration.find("\n00") + 1));
    std::size_t count = 0;
    int network = 1;
    for (std::string line; std::getline(lines, line); ++count) {
      if (line == "~~~\r") {
        EXPECT_EQ(table.Say("e|d0" + std::to_string(++network) + "|b|"), ">>>");
      } else if (!line.starts_with("00001C") && !line.starts_with("000020")) {
        EXPECT_NE(line.substr(4, 2), "00") << line;
        EXPECT_EQ(table.Say("w" + line), ">") << line;
      }
    }
    EXPECT_EQ(table.Say("e|"), ">");
    EXPECT_EQ(network, profile.networks);
    EXPECT_GT(count, 100U);
  }
}

TEST(Samples, ImagesPassForFirmware) {
  for (const SampleImage& sample : SampleImages()) {
    SCOPED_TRACE(sample.name);
    const Bytes image = MakeSampleImage(sample);
    EXPECT_EQ(image.size(), sample.size);
    EXPECT_TRUE(image.size() == 131072 || image.size() == 262144);
    const std::string text = TextOf(image);
    const std::size_t marker = text.find("ZEP-xx" + std::string(sample.model_code));
    EXPECT_GE(marker, 0x7FFFU);
    EXPECT_LE(marker, 0xFFFEU - 5);
    const bool blank = text.find_first_not_of('\xFF', 0xFF) > 0x17E;
    EXPECT_EQ(blank, sample.micro == Micro::kE1);
    EXPECT_EQ(FindVersions(image), (Versions{std::string(sample.firmware), "0405", "0103"}));
  }
}

}  // namespace
}  // namespace zep::simulator
