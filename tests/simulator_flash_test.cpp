#include <gtest/gtest.h>

#include "tests/firmware_testing.h"
#include "tests/simulator_testing.h"

namespace zep::simulator {
namespace {

using std::chrono::milliseconds;
using testing::RadioOnTable;

// A loader full of the bytes that mean something elsewhere.
const Bytes kSecondLoader = {'E', 'E', 0x00, '^', '#', 0xFF, '0', 'B', 'E', 0x7B, '\r'};

std::string LoadFirst(RadioOnTable& table) {
  return table.SayBytes({0xFF}, 1200) + table.SayBytes(Bytes(256, 0xFF), 1200);
}

// Everything up to the identification bytes, which are returned.
std::string StartLoader(RadioOnTable& table) {
  LoadFirst(table);
  table.Say("0", 1200);
  table.Say("B");
  table.SayBytes(kSecondLoader);
  table.Say("E");
  return table.Wait(milliseconds(1000));
}

TEST(SimulatedBootstrap, LoadersAreHeardAtTheirSpeedOnly) {
  RadioOnTable table("torvik");
  EXPECT_EQ(table.SayBytes({0xFF}, 9600), "");
  EXPECT_EQ(table.Say("^", 9600), "v");
  EXPECT_EQ(table.SayBytes({0xFF}, 1200), "");
  EXPECT_EQ(table.Say("^", 9600), "");  // noise
  EXPECT_EQ(table.SayBytes(Bytes(255, 0xFF), 1200), "");
  EXPECT_EQ(table.SayBytes({0xFF}, 1200), "0F");  // the configuration byte
  EXPECT_EQ(table.Say("0B", 9600), "");
  EXPECT_EQ(table.Say("0", 1200), "");
  EXPECT_EQ(table.Say("B", 1200), "");
  EXPECT_EQ(table.Say("BE", 9600), "");
  EXPECT_EQ(table.Wait(milliseconds(499)), "");
  EXPECT_EQ(table.Wait(milliseconds(1)), "1FD561");
}

TEST(SimulatedBootstrap, TheSecondLoaderEndsWithAnEAndAPause) {
  RadioOnTable table("torvik,config=none");
  EXPECT_EQ(LoadFirst(table), "");
  table.Say("0", 1200);
  table.Say("B");
  table.SayBytes(kSecondLoader);
  EXPECT_EQ(table.Wait(milliseconds(5000)), "");  // "\r" came last
  table.Say("E");
  EXPECT_EQ(table.Wait(milliseconds(400)), "");
  table.Say("xE");  // it was not the last "E" after all
  EXPECT_EQ(table.Wait(milliseconds(400)), "");
  EXPECT_EQ(table.Wait(milliseconds(200)), "1FD561");
}

TEST(SimulatedBootstrap, ARadioIdentifiesItsFlashAndMicro) {
  for (const auto& [radio, bytes] : std::vector<std::pair<const char*, const char*>>{
           {"conventional,micro=A1,flash=AT29C010A", "1FD561"},
           {"conventional,flash=SST29SF020", "BF2465"},
           {"conventional,flash=unknown", "010265"},
           {"conventional,fault=wrong@identification:3=7A", "BF107A"},
           {"conventional,fault=drop@identification:2", "BF65"},
           {"conventional,fault=wrong@bootstrap:100", ""},
           {"conventional,fault=drop@loader:1", ""},
       }) {
    SCOPED_TRACE(radio);
    RadioOnTable table(radio);
    EXPECT_EQ(StartLoader(table), bytes);
  }
}

TEST(SimulatedBootstrap, AManualRadioWaitsForItsTechnician) {
  RadioOnTable table("model31,manual");
  EXPECT_EQ(StartLoader(table), "");
  table.radio.PutIntoBootstrapMode();
  EXPECT_EQ(StartLoader(table), "1FDA61");
  EXPECT_EQ(table.Say("^"), "P");  // no prompt that the loader knows
  table.Say("r0");
  table.SayBytes({0xFF});
  EXPECT_EQ(table.Say("^"), "");  // this model is off afterwards
  table.radio.SwitchOffAndOn();
  EXPECT_EQ(table.Say("^"), "v");
}

TEST(SimulatedLoader, WritesTheRowsOfItsMapAndStartsWhatTheyHold) {
  struct Case {
    const char* radio;
    ImageOptions image;
    const char* run;                   // how the download goes
    std::vector<std::size_t> written;  // ends of the rows
    std::vector<std::size_t> kept;     // beside them: boot code and the radio's own data
    const char* answer;                // of the new firmware, with the data of before
  };
  for (const Case& row : std::vector<Case>{
           {"torvik",
            {"11", Micro::kA1, 131072, {"0126", "0400", "0100"}},
            "1000 723 0",
            {0x00100, 0x0B800, 0x1CFFF},
            {0x000FF, 0x01000, 0x05000, 0x0B7FF, 0x180FF, 0x1D000, 0x1FFFF},
            "v>0000185A45502D483131313030313236303430302C303130303031E6|>0900021234AF|>"},
           {"conventional",
            {"51", Micro::kE1, 262144, {"0336", "0405", "0103"}},
            "1000 1434 0",
            {0x00200, 0x3CFFF},
            {0x001FF, 0x3D000},
            "v>0000215A45502D4831353130303333362C5354442C30323031303430352C303130333031C8|>"
            "0900021234AF|>"}}) {
    SCOPED_TRACE(row.radio);
    testing::FirmwareBench bench;
    bench.Simulate(row.radio);
    RadioOnTable table(bench.simulated[0]->Radio());
    table.Say("#b|w0900021234AF|e|^");
    const Bytes before = table.radio.FlashMemory().Contents();
    Bytes image = MakeFirmwareImage(row.image);
    EXPECT_FALSE(table.radio.FlashMatches(image));
    bench.Choose({image.begin(), image.end()});
    EXPECT_EQ(bench.Run(), row.run);
    EXPECT_TRUE(table.radio.FlashMatches(image));
    for (const std::size_t at : row.kept)
      EXPECT_EQ(table.radio.FlashMemory().Contents()[at], before[at]) << at;
    table.now = bench.clock.Now();
    EXPECT_EQ(table.Say("^#r00|r09|"), row.answer);

    for (const std::size_t at : row.kept) image[at] ^= 1;
    EXPECT_TRUE(table.radio.FlashMatches(image));
    for (const std::size_t at : row.written) {
      image[at] ^= 1;
      EXPECT_FALSE(table.radio.FlashMatches(image)) << at;
      image[at] ^= 1;
    }
  }
}

TEST(SimulatedLoader, RefusesWhatItCannotDo) {
  struct Case {
    const char* name;
    Bytes header;
    const char* answer;
  };
  for (const Case& row : std::vector<Case>{
           {"a bank that does not exist", {6}, "47"},
           {"a bank of the second megabit", {3, 0x01, 0x00, 0, 1}, "0301000041"},
           {"more blocks than there is flash", {2, 0x01, 0x00, 0, 255}, "0201000041"},
           {"no blocks", {0, 0x01, 0x00, 0, 0}, "0001000000"},
       }) {
    SCOPED_TRACE(row.name);
    RadioOnTable table("torvik");
    StartLoader(table);
    EXPECT_EQ(table.Say("x"), "P");
    table.Say("r0");
    EXPECT_EQ(table.SayBytes(row.header), row.answer);
    EXPECT_EQ(table.SayBytes({1}), "01");  // ready for a header
  }
  RadioOnTable table("torvik");
  StartLoader(table);
  table.Say("t0");
  EXPECT_EQ(table.SayBytes({2, 0x10, 0x80, 0, 2}), "0210800002");
  EXPECT_EQ(table.Say("x"), "") << "a dot asks for a block";
}

}  // namespace
}  // namespace zep::simulator
