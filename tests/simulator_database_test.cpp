#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/simulator_testing.h"

namespace zep::simulator {
namespace {

using testing::RadioOnTable;

TEST(SimulatedDatabase, AnswersItsCommands) {
  struct Row {
    const char* name;
    const char* radio;
    const char* said;
    const char* answer;
  };
  const std::vector<Row> rows = {
      {"greeting", "conventional", "^^", "vv"},
      {"no command before the prompt", "conventional", "r00|l|", ""},
      {"prompt", "conventional", "^#", "v>"},
      {"greeting ends the command set", "conventional", "#^r09|", ">v"},
      {"greeting in the middle of a command", "conventional", "#r0^", ">v"},
      {"an empty line", "conventional", "#|", ">>"},
      {"identity of 48 characters", "torvik", "#r00|",
       ">0000185A45502D483131313030313235303430302C303130303031E7|>"},
      {"identity of 58 characters", "conventional,item0=58", "#r00|",
       ">00001D5A45502D4831353130303333352C30323031303430352C303130333031E4|>"},
      {"identity of 66 characters", "conventional", "#r00|",
       ">0000215A45502D4831353130303333352C5354442C30323031303430352C303130333031C9|>"},
      {"band", "torvik,band=E8,bandwidth=2", "#r2A|", ">2A0006E83200000000B6|>"},
      {"blank serial number", "conventional,serial=none", "#r27|", ">270003FFFFFFD9|>"},
      {"networks of a trunked radio", "trunked", "#r3C|", ">3C000107BC|>"},
      {"serial number of a trunked radio", "trunked,serial=10004711", "#r3D|", ">3D000300126747|>"},
      {"band of a trunked radio", "trunked", "#r40|", ">40000648310000000041|>"},
      {"an item without data", "conventional", "#r0B|", ">0B0000F5|>"},
      {"the item list", "conventional", "#l|",
       ">00200102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F20D0|"
       "010E21222324252628292B2C2D2E2F30BA|>"},
      {"selecting networks", "trunked,networks=2", "#d01|d02|", ">>>"},
      {"missing networks", "trunked,networks=2", "#d03|d00|d0|d1|",
       ">{C04}|>{C04}|>{C04}|>{C04}|>"},
      {"no networks on a conventional radio", "conventional", "#d01|", ">{C01}|>"},
      {"an unknown command", "conventional", "#x|R00|ll|", ">{C01}|>{C01}|>{C01}|>"},
      {"an unknown item", "conventional", "#rFE|r0|r1e|r|", ">{C04}|>{C04}|>{C04}|>{C04}|>"},
      {"model configuration error", "conventional,x31", "^#r0B|", "v{X31}|>0B0000F5|>"},
      {"corrupted until programmed", "conventional,x32", "#^#", "{X32}|>v{X32}|>"},
      {"corrupted, then programmed", "conventional,x32", "#b|e|#", "{X32}|>>>>"},
      {"taking up the networks without begin", "trunked", "#|w4F80010000|^", ">>>v"},
      {"which a conventional radio does not know", "conventional", "#w4F80010000|", ">{C03}|>"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(RadioOnTable(row.radio).Say(row.said), row.answer);
  }
}

TEST(SimulatedDatabase, ChecksWhatIsWritten) {
  struct Row {
    const char* name;
    const char* radio;
    std::string said;
    const char* answer;
  };
  const std::string too_long(2 * 69, '0');
  const std::vector<Row> rows = {
      {"a good record", "conventional", "w0900021234AF|e|", ">>"},
      {"a wrong checksum", "conventional", "w0900021234AE|", "{C02}|>"},
      {"lower-case digits", "conventional", "w0900021234af|", "{C02}|>"},
      {"half a byte", "conventional", "w0900021234A|", "{C02}|>"},
      {"too short for a record", "conventional", "w0900F7|", "{C02}|>"},
      {"more data than the length says", "conventional", "w0900011234B0|", "{C05}|>"},
      {"less data than the length says", "conventional", "w0900031234AE|", "{C05}|>"},
      {"65 bytes of data", "conventional", "w" + too_long + "|", "{C08}|>"},
      {"an unknown item", "conventional", "wFE000102FF|", "{C04}|>"},
      {"one byte more than the item holds", "conventional", "w09000312345658|", "{C06}|>"},
      {"one byte less than the item holds", "conventional", "w09000112E4|e|", ">{C05}|>"},
      {"a read-only item", "conventional", "w2E000212348A|", "{C07}|>"},
      {"the serial number", "conventional", "w270003000001D5|", "{C07}|>"},
      {"the band on a trunked radio", "trunked", "w40000648310000000041|", "{C07}|>"},
      {"a worn item", "conventional,worn=09", "w0900021234AF|", "{C10}|>"},
      {"a record out of turn", "conventional", "w0901021234AE|", "{C03}|>"},
      {"out of turn anew", "conventional", "w0900021234AF|e|b|w0901021234AE|", ">>>{C03}|>"},
      {"the same item twice", "conventional", "w0900021234AF|w0900021234AF|e|", ">>>"},
      {"identity of a file", "torvik", "w0000115A45502D4831313130303430303030303044|", ">"},
      {"longest identity", "conventional", "w0000155A45502D4831353130303430353032303134|", ">"},
      {"another version", "conventional", "w0000155A45502D4831353130303430323032303137|",
       "{C03}|>"},
      {"another model", "conventional,model=41", "w0000155A45502D4831353130303430353032303134|",
       "{C03}|>"},
      {"after the end", "conventional", "e|w0900021234AF|e|", ">{C03}|>{C03}|>"},
      {"after a greeting", "conventional", "^#w0900021234AF|", "v>{C03}|>"},
  };
  for (const Row& row : rows) {
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
    const int sum = 0x15 + std::stoi(counter, nullptr, 16) + 0x12;
    const std::string checksum = HexByte(static_cast<std::uint8_t>(256 - sum % 256));
    ASSERT_EQ(table.Say("w15" + counter + "12" + data + checksum + "|"), ">") << number;
  }
  EXPECT_EQ(table.Say("w154212" + std::string(36, '0') + "97|"), "{C09}|>");
  EXPECT_EQ(table.Say("e|"), ">");
  EXPECT_EQ(table.Records("15").size(), 42U);

  RadioOnTable old("conventional,database=0399");
  EXPECT_EQ(old.Say("#r15|").substr(1, 6), "150013");  // 19 bytes
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

// What is read from any radio can be written back as it is, and changes nothing.
TEST(SimulatedDatabase, EveryRadioTakesBackItsOwnData) {
  for (const std::string radio :
       {"conventional", "trunked", "conventional2", "model31", "torvik",
        "torvik,model=12,networks=2", "trunked,networks=4,database=0311,calibration=0102"}) {
    SCOPED_TRACE(radio);
    RadioOnTable table(radio);
    table.Say("^#");
    const std::set<std::string> read_only =
        table.radio.Profile().IsTrunked()
            ? std::set<std::string>{"2F", "3D", "3E", "3F", "45", "46", "48"}
            : std::set<std::string>{"28", "29", "2D", "2E"};
    for (int network = 1; network <= table.radio.Profile().networks; ++network) {
      if (table.radio.Profile().IsTrunked()) {
        ASSERT_EQ(table.Say("d0" + std::to_string(network) + "|"), ">");
      }
      std::vector<std::string> before;
      const std::vector<std::string> items = table.List();
      EXPECT_GE(items.size(), 40U);
      for (const std::string& item : items) {
        for (const std::string& record : table.Records(item)) {
          EXPECT_EQ(ByteSum(BytesFromHex(record).value()), 0) << record;
          before.push_back(record);
        }
      }
      ASSERT_EQ(table.Say("b|"), ">");
      for (const std::string& record : before) {
        if (record.substr(4, 2) == "00") continue;
        const bool refused = read_only.count(record.substr(0, 2)) > 0;
        EXPECT_EQ(table.Say("w" + record + "|"), refused ? "{C07}|>" : ">") << record;
      }
      ASSERT_EQ(table.Say("e|"), ">");
      std::vector<std::string> after;
      for (const std::string& item : items) {
        for (const std::string& record : table.Records(item)) after.push_back(record);
      }
      EXPECT_EQ(after, before);
    }
  }
}

TEST(SimulatedDatabase, NetworksHaveTheirOwnItemsAndShareTheRest) {
  RadioOnTable table("trunked,networks=2");
  table.Say("#d01|");
  const auto channels_1 = table.Records("15");
  const auto shared_1 = table.Records("32");
  table.Say("d02|");
  EXPECT_NE(table.Records("15"), channels_1);
  EXPECT_EQ(table.Records("32"), shared_1);

  EXPECT_EQ(table.Say("b|w0900021234AF|e|"), ">>>");
  EXPECT_EQ(table.Say("r09|"), "0900021234AF|>");
  table.Say("d01|");
  EXPECT_NE(table.Say("r09|"), "0900021234AF|>");
  EXPECT_EQ(table.Say("d02|^#"), ">v>");  // back in the first network
  EXPECT_EQ(table.Records("15"), channels_1);
}

TEST(SimulatedDatabase, ATrunkedRadioTakesUpItsNetworksInAnyState) {
  RadioOnTable table("trunked");
  EXPECT_EQ(table.Say("|w4F80010000|^"), "v");
  EXPECT_TRUE(table.radio.Database().NetworksTakenUp());
  table.radio.SwitchOffAndOn();
  EXPECT_FALSE(table.radio.Database().NetworksTakenUp());
}

TEST(SimulatedDatabase, FaultsHappenAtTheirStep) {
  struct Row {
    const char* fault;
    const char* said;
    const char* answer;
  };
  const std::vector<Row> rows = {
      {"silent@prompt", "^#^#", "v"},
      {"silent@read:2", "#r0B|r0B|r0B|^", ">0B0000F5|>"},
      {"wrong@caret=78", "^^", "xv"},
      {"wrong@begin", "#b|b|", ">?>"},
      {"brace@write:2=C10", "#b|w0900021234AF|w0900021235AE|w0900021236AD|r09|",
       ">>>{C10}|>>0900021236AD|>"},
      {"brace@list", "#l|", ">{C01}|>"},
      {"brace@network=C04", "#d01|d01|", ">{C04}|>>"},
      {"badsum@read:2+", "#r0B|r0B|r3C|", ">0B0000F5|>0B000005|>3C0001070C|>"},
      {"drop@read=3", "#r0B|r0B|", ">0B000F5|>0B0000F5|>"},
      {"drop@end:2", "#b|e|b|e|", ">>>>"},
      {"cut@read", "#r0B|^", ">"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    RadioOnTable table("trunked,fault=" + std::string(row.fault));
    EXPECT_EQ(table.Say(row.said), row.answer);
  }
}

}  // namespace
}  // namespace zep::simulator
