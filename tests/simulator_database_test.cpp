#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/simulator_testing.h"
#include "tests/upgrade_testing.h"

namespace zep::simulator {
namespace {

using testing::RadioOnTable;

struct Talk {
  const char *name, *radio;
  std::string said;
  const char* answer;
};

TEST(SimulatedDatabase, AnswersItsCommands) {
  const std::vector<Talk> rows = {
      {"greeting", "conventional", "^^", "vv"},
      {"no command before the prompt", "conventional", "r00|l|", ""},
      {"prompt", "conventional", "^#", "v>"},
      {"greeting ends the command set", "conventional", "#^r09|", ">v"},
      {"identity of 48 characters", "torvik", "#r00|",
       ">0000185A45502D483131313030313235303430302C303130303031E7|>"},
      {"identity of 66 characters", "conventional", "#r00|",
       ">0000215A45502D4831353130303333352C5354442C30323031303430352C303130333031C9|>"},
      {"blank serial number", "conventional,serial=none", "#r27|", ">270003FFFFFFD9|>"},
      {"serial number of a trunked radio", "trunked,serial=10004711", "#r3D|", ">3D000300126747|>"},
      {"the item list", "conventional", "#l|",
       ">00200102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F20D0|"
       "010E21222324252628292B2C2D2E2F30BA|>"},
      {"selecting networks", "trunked,networks=2", "#d01|d02|", ">>>"},
      {"missing networks", "trunked,networks=2", "#d03|d00|d0|d1|",
       ">{C04}|>{C04}|>{C04}|>{C04}|>"},
      {"an unknown command", "conventional", "#x|R00|ll|", ">{C01}|>{C01}|>{C01}|>"},
      {"an unknown item", "conventional", "#rFE|r0|r1e|r|", ">{C04}|>{C04}|>{C04}|>{C04}|>"},
      {"model configuration error", "conventional,x31", "^#r0B|", "v{X31}|>0B0000F5|>"},
      {"corrupted until programmed", "conventional,x32", "#^#", "{X32}|>v{X32}|>"},
      {"corrupted, then programmed", "conventional,x32", "#b|e|#", "{X32}|>>>>"},
      {"taking up the networks without begin", "trunked", "#|w4F80010000|^", ">>>v"},
      {"silent", "trunked,fault=silent@read:2", "#r0B|r0B|r0B|^", ">0B0000F5|>"},
      {"a wrong byte", "trunked,fault=wrong@caret=78", "^^", "xv"},
      {"an error once", "trunked,fault=brace@write:2=C10",
       "#b|w0900021234AF|w0900021235AE|w0900021236AD|r09|", ">>>{C10}|>>0900021236AD|>"},
      {"wrong sums from then on", "trunked,fault=badsum@read:2+", "#r0B|r0B|r3C|",
       ">0B0000F5|>0B000005|>3C0001070C|>"},
      {"a lost byte", "trunked,fault=drop@read=3", "#r0B|r0B|", ">0B000F5|>0B0000F5|>"},
      {"a lost end", "trunked,fault=drop@end:2", "#b|e|b|e|", ">>>>"},
      {"a cut line", "trunked,fault=cut@read", "#r0B|^", ">"},
  };
  for (const Talk& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(RadioOnTable(row.radio).Say(row.said), row.answer);
  }
}

TEST(SimulatedDatabase, ChecksWhatIsWritten) {
  const std::string too_long(2 * 69, '0');
  const std::vector<Talk> rows = {
      {"a good record", "conventional", "w0900021234AF|e|", ">>"},
      {"a wrong checksum", "conventional", "w0900021234AE|", "{C02}|>"},
      {"half a byte", "conventional", "w0900021234A|", "{C02}|>"},
      {"more data than the length says", "conventional", "w0900011234B0|", "{C05}|>"},
      {"less data than the length says", "conventional", "w0900031234AE|", "{C05}|>"},
      {"65 bytes of data", "conventional", "w" + too_long + "|", "{C08}|>"},
      {"one byte more than the item holds", "conventional", "w09000312345658|", "{C06}|>"},
      {"one byte less than the item holds", "conventional", "w09000112E4|e|", ">{C05}|>"},
      {"a read-only item", "conventional", "w2E000212348A|", "{C07}|>"},
      {"the serial number", "conventional", "w270003000001D5|", "{C07}|>"},
      {"a worn item", "conventional,worn=09", "w0900021234AF|", "{C10}|>"},
      {"a record out of turn", "conventional", "w0901021234AE|", "{C03}|>"},
      {"identity of a file", "torvik", "w0000115A45502D4831313130303430303030303044|", ">"},
      {"another version", "conventional", "w0000155A45502D4831353130303430323032303137|",
       "{C03}|>"},
      {"another model", "conventional,model=41", "w0000155A45502D4831353130303430353032303134|",
       "{C03}|>"},
      {"after the end", "conventional", "e|w0900021234AF|e|", ">{C03}|>{C03}|>"},
  };
  for (const Talk& row : rows) {
    SCOPED_TRACE(row.name);
    RadioOnTable table(row.radio);
    table.Say("^#b|");
    EXPECT_EQ(table.Say(row.said), row.answer);
  }
}

TEST(SimulatedDatabase, TablesMayShrinkButNotOutgrowTheRoom) {
  RadioOnTable table("conventional,room=1000");
  table.Say("#");
  const std::vector<std::string> channels = table.Records("15");
  ASSERT_EQ(channels.size(), 40U);
  EXPECT_EQ(channels[9].substr(0, 8), "1509120A");  // the tenth record, 18 bytes, channel 10

  // 8 scan groups of 29 bytes leave room for 42 channels.
  table.Say("b|");
  for (int number = 0; number < 42; ++number) {
    const std::string data = std::string(36, '0');
    const std::string counter = std::to_string(100 + number).substr(1);
    ASSERT_EQ(table.Say("w" + testing::Record("15" + counter + "12", data) + "|"), ">") << number;
  }
  EXPECT_EQ(table.Say("w154212" + std::string(36, '0') + "97|"), "{C09}|>");
  EXPECT_EQ(table.Say("e|"), ">");
  EXPECT_EQ(table.Records("15").size(), 42U);
}

TEST(SimulatedDatabase, CalibrationMustAddUp) {
  RadioOnTable table("conventional");
  table.Say("#");
  std::vector<std::string> records = table.Records("2C");
  ASSERT_EQ(records.size(), 5U);  // 134 bytes: four records of 32 bytes and one of 6
  EXPECT_EQ(records[4].substr(0, 6), "2C0406");

  table.Say("b|");
  for (const std::string& record : records) EXPECT_EQ(table.Say("w" + record + "|"), ">");
  EXPECT_EQ(table.Say("e|"), ">");

  records[0] = "2C0020" + std::string(64, '0') + "B4";
  table.Say("b|");
  for (const std::string& record : records) EXPECT_EQ(table.Say("w" + record + "|"), ">");
  EXPECT_EQ(table.Say("e|"), "{C03}|>");
}

TEST(SimulatedDatabase, NetworksHaveTheirOwnItemsAndShareTheRest) {
  RadioOnTable table("trunked,networks=2");
  table.Say("#d01|");
  const auto channels_1 = table.Records("15");
  table.Say("d02|");
  EXPECT_NE(table.Records("15"), channels_1);
  EXPECT_EQ(table.Say("b|w0900021234AF|e|"), ">>>");
  EXPECT_EQ(table.Say("r09|"), "0900021234AF|>");
  table.Say("d01|");
  EXPECT_NE(table.Say("r09|"), "0900021234AF|>");
  EXPECT_EQ(table.Say("d02|^#"), ">v>");  // back in the first network
  EXPECT_EQ(table.Records("15"), channels_1);
}

}  // namespace
}  // namespace zep::simulator
