#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/simulator_testing.h"

namespace zep::simulator {
namespace {

using std::chrono::milliseconds;
using testing::RadioOnTable;

// Loaders full of the bytes that mean something elsewhere.
const Bytes kFirstLoader(256, 0xFF);
const Bytes kSecondLoader = {'E', 'E', 0x00, '^', '#', 0xFF, '0', 'B', 'E', 0x7B, '\r'};

std::string LoadFirst(RadioOnTable& table) {
  return table.SayBytes({0xFF}, 1200) + table.SayBytes(kFirstLoader, 1200);
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

// The rows of the first megabit of an A1 radio: bank, address, offset in the image, blocks.
struct Row {
  std::uint8_t bank;
  unsigned address;
  unsigned offset;
  unsigned blocks;
};
const std::vector<Row> kA1Rows = {
    {0, 0x0100, 0x00100, 30},  {0, 0x1080, 0x01080, 127}, {0, 0x8000, 0x08000, 108},
    {0, 0xB800, 0x0B800, 144}, {1, 0x0100, 0x10100, 30},  {1, 0x1080, 0x11080, 127},
    {2, 0x0100, 0x18100, 30},  {2, 0x1080, 0x19080, 127},
};
// The rows of both megabits of an E1 radio.
const std::vector<Row> kE1Rows = {
    {0, 0x0200, 0x00200, 28},  {0, 0x1080, 0x01080, 127}, {0, 0x8000, 0x08000, 108},
    {0, 0xB800, 0x0B800, 144}, {1, 0x0200, 0x10200, 28},  {1, 0x1080, 0x11080, 127},
    {2, 0x0200, 0x18200, 28},  {2, 0x1080, 0x19080, 127}, {3, 0x0200, 0x20200, 28},
    {3, 0x1080, 0x21080, 127}, {3, 0x8000, 0x28000, 108}, {3, 0xB800, 0x2B800, 144},
    {4, 0x0200, 0x30200, 28},  {4, 0x1080, 0x31080, 127}, {5, 0x0200, 0x38200, 28},
    {5, 0x1080, 0x39080, 127},
};

Bytes HeaderOf(const Row& row) {
  return {row.bank, static_cast<std::uint8_t>(row.address / 256),
          static_cast<std::uint8_t>(row.address % 256), 0, static_cast<std::uint8_t>(row.blocks)};
}

// Writes the rows; returns how many blocks were acknowledged.
unsigned WriteRows(RadioOnTable& table, const std::vector<Row>& rows, const Bytes& image) {
  EXPECT_EQ(table.Say("r0"), "r0");
  unsigned acknowledged = 0;
  for (const Row& row : rows) {
    EXPECT_EQ(table.SayBytes(HeaderOf(row)), HexText(HeaderOf(row)));
    for (unsigned block = 0; block < row.blocks; ++block) {
      const auto begin = image.begin() + row.offset + 128 * block;
      acknowledged += table.SayBytes({begin, begin + 128}) == "2E";
    }
  }
  return acknowledged;
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
  EXPECT_EQ(table.radio.Bootstrap().FirstLoader(), Bytes(256, 0xFF));
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
  Bytes expected = kSecondLoader;
  for (const char letter : std::string("ExE"))
    expected.push_back(static_cast<std::uint8_t>(letter));
  EXPECT_EQ(table.radio.Bootstrap().SecondLoader(), expected);
}

TEST(SimulatedBootstrap, ARadioIdentifiesItsFlashAndMicro) {
  struct Case {
    const char* radio;
    const char* bytes;
  };
  for (const Case& row : std::vector<Case>{
           {"conventional,micro=A1,flash=AT29C010A", "1FD561"},
           {"conventional,flash=AT29C020", "1FDA65"},
           {"conventional,flash=SST29EE020", "BF1065"},
           {"conventional,flash=SST29SF020", "BF2465"},
           {"conventional,flash=unnamed", "1F0165"},
           {"conventional,flash=unknown", "010265"},
           {"conventional,fault=wrong@identification:3=7A", "BF107A"},
           {"conventional,fault=drop@identification:2", "BF65"},
           {"conventional,fault=brace@identification", "7B4330317D0D3E1065"},
           {"conventional,fault=silent@identification:3", "BF10"},
           {"conventional,fault=drop@bootstrap:100", ""},
           {"conventional,fault=wrong@bootstrap:100", ""},
           {"conventional,fault=wrong@loader:5", ""},
           {"conventional,fault=drop@loader:1", ""},
           {"conventional,fault=drop@speed", ""},
           {"conventional,fault=silent@loader:3", ""},
       }) {
    SCOPED_TRACE(row.radio);
    RadioOnTable table(row.radio);
    EXPECT_EQ(StartLoader(table), row.bytes);
  }
}

TEST(SimulatedBootstrap, TheConfigurationByteCanBeWrong) {
  RadioOnTable wrong("torvik,fault=wrong@config=43");
  EXPECT_EQ(LoadFirst(wrong), "43");
  RadioOnTable damaged("torvik,fault=wrong@bootstrap:100");
  EXPECT_EQ(LoadFirst(damaged), "");
  RadioOnTable other("torvik,config=42");
  EXPECT_EQ(LoadFirst(other), "42");
}

TEST(SimulatedBootstrap, AnInterruptedStartCanBeBegunAnew) {
  RadioOnTable table("torvik");
  table.SayBytes({0xFF}, 1200);
  table.SayBytes(Bytes(100, 0xFF), 1200);
  table.Wait(milliseconds(1000));
  EXPECT_EQ(LoadFirst(table), "0F");
  EXPECT_EQ(StartLoader(table), "1FD561");
  EXPECT_EQ(StartLoader(table), "1FD561");
  EXPECT_EQ(table.Say("^"), "v");  // the technician has switched it off and on
}

TEST(SimulatedBootstrap, AManualRadioWaitsForItsTechnician) {
  RadioOnTable table("torvik,manual");
  EXPECT_EQ(StartLoader(table), "");
  table.radio.PutIntoBootstrapMode();
  EXPECT_EQ(StartLoader(table), "1FD561");
  EXPECT_EQ(table.Say("^"), "P");  // no prompt that the loader knows
  table.radio.SwitchOffAndOn();
  EXPECT_EQ(table.Say("^"), "v");
}

TEST(SimulatedLoader, Model31IsOffAfterwards) {
  for (const bool manual : {false, true}) {
    RadioOnTable table(manual ? "model31,manual" : "model31");
    table.radio.PutIntoBootstrapMode();
    StartLoader(table);
    table.Say("r0");
    table.SayBytes({0xFF});
    EXPECT_EQ(table.Say("^"), manual ? "" : "v");
    table.radio.SwitchOffAndOn();
    EXPECT_EQ(table.Say("^"), "v");
  }
}

TEST(SimulatedLoader, WritesOneMegabitIntoAnA1Radio) {
  RadioOnTable table("torvik");
  const Bytes before = table.radio.FlashMemory().Contents();
  const Bytes image = MakeFirmwareImage({"11", Micro::kA1, 131072, {"0126", "0405", "0103"}});
  EXPECT_FALSE(table.radio.FlashMatches(image));
  StartLoader(table);
  EXPECT_EQ(WriteRows(table, kA1Rows, image), 723U);
  EXPECT_TRUE(table.radio.FlashMatches(image));

  const FlashComparison same =
      CompareFlash(table.radio.FlashMemory().Contents(), image, Micro::kA1);
  EXPECT_EQ(same.compared, 723U * 128);
  const Bytes& after = table.radio.FlashMemory().Contents();
  for (const std::size_t kept :
       {0x00000U, 0x000FFU, 0x01000U, 0x0107FU, 0x05000U, 0x07FFFU, 0x0B600U, 0x0B7FFU, 0x10000U,
        0x15000U, 0x180FFU, 0x1D000U, 0x1FFFFU}) {
    EXPECT_EQ(after[kept], before[kept]) << kept;
  }

  EXPECT_EQ(table.SayBytes({0xFF}), "");
  EXPECT_EQ(table.Say("^#r00|"), "v>0000185A45502D483131313030313236303430352C303130333031DE|>");
  EXPECT_EQ(table.Records("1E").size(), 20U);  // 625 bytes from database 4.02 on
  EXPECT_EQ(table.Records("2C")[4].substr(0, 6), "2C0406");
}

TEST(SimulatedLoader, WritesTwoMegabitsIntoAnE1Radio) {
  RadioOnTable table("conventional");
  Bytes image = MakeFirmwareImage({"51", Micro::kE1, 262144, {"0336", "0405", "0103"}});
  StartLoader(table);
  EXPECT_EQ(WriteRows(table, kE1Rows, image), 1434U);
  EXPECT_TRUE(table.radio.FlashMatches(image));
  table.SayBytes({0xFF});
  EXPECT_EQ(table.Say("^#b|w0900021234AF|e|"), "v>>>>");

  for (const std::size_t offset : {0x00200U, 0x00FFFU, 0x3CFFFU, 0x2FFFFU}) {
    image[offset] ^= 1;
    const FlashComparison found =
        CompareFlash(table.radio.FlashMemory().Contents(), image, Micro::kE1);
    EXPECT_EQ(found.different, 1U);
    EXPECT_EQ(found.first_difference, offset);
    image[offset] ^= 1;
  }
  image[0x001FF] ^= 1;  // boot code
  image[0x3D000] ^= 1;  // behind the last row
  EXPECT_TRUE(table.radio.FlashMatches(image));
}

TEST(SimulatedLoader, ANewFirmwareKeepsDataOfTheSameLayout) {
  RadioOnTable table("conventional");
  table.Say("#b|w0900021234AF|e|");
  StartLoader(table);
  WriteRows(table, {kE1Rows[2]},
            MakeFirmwareImage({"51", Micro::kE1, 262144, {"0336", "0405", "0102"}}));
  table.SayBytes({0xFF});
  EXPECT_EQ(table.Say("#r09|"), ">0900021234AF|>");
  EXPECT_EQ(table.Say("r00|").substr(24, 8), "30333336");
  EXPECT_EQ(table.Records("2C")[4].substr(0, 6), "2C040D");  // 141 bytes of calibration now
}

TEST(SimulatedLoader, ReadsWhatIsInTheFlash) {
  RadioOnTable table("torvik");
  StartLoader(table);
  EXPECT_EQ(table.Say("t0"), "t0");
  const Bytes& flash = table.radio.FlashMemory().Contents();
  EXPECT_EQ(table.SayBytes({2, 0x10, 0x80, 0, 2}), "0210800002");
  EXPECT_EQ(table.Say("x"), "");
  EXPECT_EQ(table.SayBytes({'.'}),
            HexText(Bytes(flash.begin() + 0x19080, flash.begin() + 0x19100)));
  EXPECT_EQ(table.SayBytes({'.'}),
            HexText(Bytes(flash.begin() + 0x19100, flash.begin() + 0x19180)));
  EXPECT_EQ(table.SayBytes({0x00}), "00");  // the next header
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
           {"an address between pages", {0, 0x01, 0x40, 0, 1}, "0001400041"},
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
}

TEST(SimulatedLoader, FaultsHappenAtTheirStep) {
  struct Case {
    const char* fault;
    const char* mode;
    const char* header;
    unsigned acknowledged;
    std::size_t restarts;
  };
  for (const Case& row : std::vector<Case>{
           {"wrong@block:10=53", "r0", "000100001E", 29, 1},
           {"drop@block:30", "r0", "000100001E", 29, 1},
           {"brace@block:2=C10", "r0", "000100001E", 29, 0},  // one block is still to come
           {"silent@block:3", "r0", "000100001E", 2, 0},
           {"silent@mode:2", "r", "", 0, 0},
           {"wrong@header:4=53", "r0", "000100531E", 30, 1},
           {"cut@header:3", "r0", "0001", 0, 0},
           {"drop@finish", "r0", "000100001E", 30, 0},
       }) {
    SCOPED_TRACE(row.fault);
    RadioOnTable table("torvik,manual,fault=" + std::string(row.fault));
    table.radio.PutIntoBootstrapMode();
    StartLoader(table);
    EXPECT_EQ(table.Say("r0"), row.mode);
    EXPECT_EQ(table.SayBytes({0, 0x01, 0x00, 0, 30}), row.header);
    unsigned acknowledged = 0;
    for (int block = 0; block < 30; ++block) {
      acknowledged += table.SayBytes(Bytes(128, 0x55)) == "2E";
    }
    EXPECT_EQ(acknowledged, row.acknowledged);
    table.SayBytes({0xFF});
    EXPECT_EQ(table.radio.Counts().restarts, row.restarts);
  }
}

}  // namespace
}  // namespace zep::simulator
