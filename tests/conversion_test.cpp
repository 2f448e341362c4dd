// Conversions of radio data, on values only: linked with conversion/ and what that stands on.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "conversion/calibration_conversion.h"
#include "conversion/checked_data.h"
#include "conversion/data_file_differences.h"
#include "conversion/display_texts.h"
#include "conversion/personality_conversion.h"
#include "conversion/personality_steps.h"
#include "tests/upgrade_testing.h"

namespace zep::conversion {
namespace {

using radiodb::DataFile;
using testing::Count;
using testing::DataFileOf;
using ::testing::EndsWith;
using testing::Fields;
using ::testing::HasSubstr;
using testing::Identity;
using testing::Lines;
using testing::Record;
using testing::Repeat;
using ::testing::StartsWith;

DataFile FileOf(const std::vector<std::string>& lines) {
  return *DataFile::Parse("saved.ops", DataFileOf(lines));
}

// What the steps from one version to the other make of the items.
ItemArray Convert(ItemArray items, const ItemArray& defaults, int from, int to,
                  std::string* remarks = nullptr) {
  PersonalityData data;
  data.networks.resize(1);
  data.networks[0].items = std::move(items);
  const DatabaseResult result =
      ConvertDatabase({from, to, "0" + std::to_string(to), defaults}, data);
  if (remarks != nullptr) {
    for (const Remark& remark : result.remarks) *remarks += English(remark.text) + "\n";
  }
  return data.networks[0].items;
}

TEST(Conversion, ReadsAndWritesBytesOfAnItem) {
  std::string item = "00A1FE";
  EXPECT_EQ(GetByte(item, 1), 0xA1);
  EXPECT_EQ(GetByteRange(item, 2) + GetByteRange(item, 3) + GetByteRange("", 0), "FE0000");
  SetByte(item, 1, 0x5C);
  SetByte(item, 3, 0x07);
  EXPECT_EQ(item, "005CFE07");
}

TEST(Conversion, CopiesTheWholeByteForOneBitAndOnlyTheBitsForSeveral) {
  const std::initializer_list<int> none;
  const struct {
    std::initializer_list<int> bits;
    std::string row;  // what it shows, item, default item, expected
  } rows[] = {
      {{7}, "one bit copies all eight|0055|00AB|00AB"},
      {{0}, "bit 0 likewise|0055|00AB|00AB"},
      {{6, 7}, "several bits are set and cleared|007F|0080|00BF"},
      {{4, 5, 6, 7}, "the other bits stay|002C|00DF|00DC"},
      {none, "no bits change nothing|0055|00AB|0055"},
      {{7}, "a default item that is too short counts 0|0055|00|0000"},
      {{7}, "an item that is too short stays|00|00AB|00"},
      {{7}, "a missing item stays missing||00AB|"},
  };
  for (const auto& [bits, row] : rows) {
    std::vector<std::string> fields = Fields(row);
    CopyByte(fields[1], fields[2], 1, bits);
    EXPECT_EQ(fields[1], fields[3]) << fields[0];
  }
}

TEST(Conversion, HasTheDisplayTextsByteForByte) {
  const std::string table = DisplayTextTable();
  ASSERT_EQ(table.size(), 1250U);
  int places = 0;  // every byte by its place, from 1
  for (int at = 0; at < 625; ++at)
    places += (at + 1) * GetByte(table, static_cast<std::size_t>(at));
  EXPECT_EQ(places, 20868138);
  // Ten empty texts, "ENTER CODE:", "    UNIT", "** DIVERT **", " CCDI  BUSY".
  EXPECT_THAT(table, StartsWith("00FEFEFEFEFEFEFEFEFEFE454E54455220434F44453AFE20202020554E4954FE"
                                "2A2A20444956455254202A2AFE2043434449202042555359FE"));
  // " BATTERY IS", twelve empty texts, " STATUS "; "Q", "", "S", "NS", ..., "", "", "SDM", "".
  EXPECT_THAT(table,
              HasSubstr("FE2042415454455259204953FEFEFEFEFEFEFEFEFEFEFEFEFE2053544154555320FE"));
  EXPECT_THAT(table, HasSubstr("FE51FEFE53FE4E53FE5031FE5032FE54FE50FEFEFE53444DFEFE"));
  // "SIGNAL", "", " STAT ", "NO STAT", "LOCKED", "ADJUST".
  EXPECT_THAT(table, EndsWith("5349474E414CFEFE205354415420FE4E4F2053544154FE4C4F434B4544FE41444A"
                              "555354FE"));
}

TEST(Conversion, TakesEachStepAsItIsWrittenDown) {
  // The step, the item, its data, the default settings' data, what it becomes.
  const std::string channel = "00010203040506A508090A0B0C3F2C0F1011";
  const std::string default_channel = "00010203040506C708090A0B0C80DF0F1011";
  const std::string bytes = Count(0, 21);
  for (const std::string& row : std::vector<std::string>{
           "400|5|000102030405|E0E1E2E3E4|E0010203E405", "400|6|1011121314|F0F1F2F3F4|10111213F4",
           // Byte 7 as a whole, bits 6 and 7 of byte 13; byte 18 goes.
           "400|21|" + Repeat(channel + "12", 2) + "|" + default_channel + "12|" +
               Repeat("00010203040506C708090A0B0CBF2C0F1011", 2),
           "400|43|" + bytes + "|" + Count(128, 149) + "|" + bytes,
           "401|5|000102030405|E0E1E2E3E4|000102030405", "402|5|0001020304|E0E1E2E3E4|00010203E4",
           "402|7|1011|F0F1F2|10F1",
           // No single byte is ever the ID 510.
           "402|21|FE" + channel.substr(2) + "FF" + channel.substr(2) + "|" + default_channel +
               "|FE" + channel.substr(2) + "FF" + channel.substr(2),
           "402|22|FE" + Count(1, 12) + Repeat("FF", 16) + "|00|FE" + Count(1, 12) +
               Repeat("FF", 16),
           "402|30|00FE|01FE|" + DisplayTextTable(),
           "403|13|" + bytes + "|" + Count(128, 149) + "|" + bytes,
           // Bits 4 to 7 of byte 14.
           "403|21|" + Repeat(channel, 2) + "|" + default_channel + "|" +
               Repeat("00010203040506A508090A0B0C3FDC0F1011", 2),
           "404|21|" + channel + "|" + default_channel + "|" + channel,
           "405|21|" + channel + "|" + default_channel + "|" + channel}) {
    const std::vector<std::string> fields = Fields(row);
    const std::size_t item = std::stoul(fields[1]);
    ItemArray items;
    items[item] = fields[2];
    ItemArray defaults;
    defaults[item] = fields[3];
    const int to = std::stoi(fields[0]);
    EXPECT_EQ(Convert(items, defaults, to - 1, to)[item], fields[4]) << row;
  }
}

TEST(Conversion, RunsTheStepsThatLieBetweenTheVersions) {
  ItemArray items;
  items[0] =
      "5A45502D483135313230343032"
      "30323031";
  items[21] = Count(0, 18);
  items[30] = "00";
  // From, to; then characters of the channel and of the texts, and the version in item 0.
  for (const char* row :
       {"399|399|38|2|30343032", "399|400|36|2|30343030", "399|401|36|2|30343031",
        "399|402|36|1250|30343032", "399|405|36|1250|30343035", "400|405|38|1250|30343035",
        "402|404|38|2|30343034", "404|405|38|2|30343035", "402|402|38|2|30343032",
        "405|402|38|2|30343032"}) {
    const std::vector<std::string> fields = Fields(row);
    const ItemArray converted = Convert(items, {}, std::stoi(fields[0]), std::stoi(fields[1]));
    EXPECT_EQ(std::to_string(converted[21].size()), fields[2]) << row;
    EXPECT_EQ(std::to_string(converted[30].size()), fields[3]) << row;
    EXPECT_EQ(converted[0], "5A45502D4831353132" + fields[4] + "30323031") << row;
  }
}

TEST(Conversion, KeepsWhatIsTooShortForAStepAndRemarksIt) {
  ItemArray defaults;
  defaults[6] = "00000000FF";
  ItemArray items;
  items[5] = "0A";
  items[21] = Count(0, 18) + "0102";
  std::string remarks;
  const ItemArray converted = Convert(items, defaults, 399, 400, &remarks);
  EXPECT_EQ(converted[5], "00");
  EXPECT_EQ(converted[6], "");
  EXPECT_EQ(converted[21].substr(36), "0102");
  EXPECT_EQ(remarks,
            "Item 05 of the default settings has no byte 0, 00 is used\n"
            "Item 05 of the default settings has no byte 4, 00 is used\n"
            "Item 05 of the saved data has no byte 4 and is kept as it is\n"
            "Item 06 of the saved data has no byte 4 and is kept as it is\n"
            "Item 15 of the default settings has no byte 7, 00 is used\n"
            "Item 15 of the default settings has no byte 13, 00 is used\n"
            "Item 15 is no whole number of records of 19 bytes; the 2 bytes behind the last one "
            "are kept as they are\n");
}

TEST(Conversion, KeepsTheOrderAndTheRecordsOfAFile) {
  // Two networks; item 15 in two records of an unusual cut; a second "00" line; a lower-case mark,
  // and lower-case digits.
  const DataFile saved = FileOf(
      {Identity("0402"), "f" + Record("2B0702", "AABB"), Record("150014", Count(0, 19)),
       Record("150112", Count(20, 37)), Record("050005", "0001020304"), Record("000001", "66"),
       "~~~", Record("000001", "77"), "Insert Common Dynamic Item Here",
       Record("050005", "0506070809"), "1e000200feE2", "0A00FF" + Repeat("FF", 255) + "F6"});
  PersonalityData data = *ReadDatabase(saved);
  EXPECT_EQ(data.networks[0].items[0].size(), 34U);
  ItemArray defaults;
  defaults[5] = "E0E1E2E3E4";
  defaults[21] = Count(0x80, 0x91);
  EXPECT_EQ(ConvertDatabase({401, 405, "0405", defaults}, data).version, 405);
  DataFile texts;
  AddRecords("1E", DisplayTextTable(), texts);
  const DataFile converted = WriteDatabase(data, "new.ops", {"***", "---"});
  EXPECT_EQ(converted.Path(), "new.ops");
  EXPECT_EQ(converted.Print(),
            Lines({"***", "---", Identity("0405"), Record("2B0702", "AABB"),
                   Record("150014", Count(0, 13) + "8E" + Count(15, 19)),
                   Record("150112", Count(20, 31) + "80" + Count(33, 37)),
                   Record("050005", "00010203E4"), Record("000001", "66")}) +
                texts.Print() +
                Lines({"~~~", Record("000001", "77"), "Insert Common Dynamic Item Here",
                       Record("050005", "05060708E4")}) +
                texts.Print() + "0A00FF" + Repeat("FF", 255) + "F6\r\n");
  EXPECT_TRUE(converted.IsSound());
  EXPECT_EQ(English(ReadDatabase(FileOf({Identity("0402"), "0500"})).error().lines[0]),
            "The data file saved.ops is damaged and cannot be used. Line 7: This is no record: a "
            "record is made of pairs of the digits 0 to 9 and A to F, at least four of them. "
            "Please use another copy of it, or read the radio again.");
}

TEST(Conversion, CountsRecordsOfALongItemOnFromZero) {
  DataFile file;
  AddRecords("15", Repeat("00", 32 * 101 + 1), file);
  const std::string text = file.Print();
  EXPECT_EQ(text.find("\r\n159920"), 98U * 74 + 72);
  EXPECT_EQ(text.find("\r\n150020", 2), 99U * 74 + 72);
  EXPECT_THAT(text, EndsWith("\r\n15010100E9\r\n"));
}

// One line a difference: network, item, record, byte, before, after.
std::string Text(const ItemDifference& difference) {
  return std::to_string(difference.network) + " " +
         Count(static_cast<int>(difference.item), static_cast<int>(difference.item)) + " " +
         std::to_string(difference.record) + "." + std::to_string(difference.byte) + " " +
         difference.before + ">" + difference.after + "\n";
}

TEST(Conversion, TellsEveryChangeWithItsReason) {
  PersonalityData data = *ReadDatabase(FileOf({Identity("0402"), Record("150026", Count(0, 37))}));
  ItemArray defaults;
  defaults[21] = Count(0x80, 0x91);
  std::string text;
  for (const Change& change : ConvertDatabase({399, 403, "0403", defaults, true}, data).changes) {
    if (change.difference.item == kDisplayTexts) continue;
    text += std::to_string(static_cast<int>(change.reason.kind)) + " " +
            std::to_string(change.reason.to) + ": " + Text(change.difference);
  }
  EXPECT_EQ(text,
            "0 400: 1 15 1.7 07>87\n0 400: 1 15 1.13 0D>8D\n0 400: 1 15 1.18 12>\n"
            "0 400: 1 15 2.7 1A>87\n0 400: 1 15 2.13 20>A0\n0 400: 1 15 2.18 25>\n"
            "0 403: 1 15 1.14 0E>8E\n0 403: 1 15 2.14 21>81\n1 0: 1 00 0.12 32>33\n");
}

TEST(Conversion, ComparesTwoFiles) {
  const DataFile old_file = FileOf({Identity("0402"), Record("050003", "010203"),
                                    Record("060001", "AA"), Record("150024", Count(0, 35))});
  const DataFile new_file =
      FileOf({Identity("0405"), Record("050004", "01FF0304"), Record("150012", Count(0, 17)), "~~~",
              Record("070001", "BB"), Record("000001", "77")});
  const DataFileDifferences differences = CompareDataFiles(old_file, new_file);
  using enum FileFact;
  std::string text;
  for (const FactDifference& fact : differences.facts) {
    text += fact.fact == kDatabaseVersion ? "version " : fact.fact == kNetworks ? "networks " : "";
    text += std::to_string(fact.network) + " " + fact.before + ">" + fact.after + "\n";
  }
  for (const ItemDifference& difference : differences.items) text += Text(difference);
  EXPECT_EQ(text,
            "version 0 0402>0405\nnetworks 0 1>2\n2 >0000017788\n"
            "1 00 0.12 32>35\n1 05 0.1 02>FF\n1 05 0.3 >04\n1 06 0.0 AA>\n"
            "1 15 2.0 12131415161718191A1B1C1D1E1F2021>\n1 15 2.16 2223>\n2 07 0.0 >BB\n");
  EXPECT_TRUE(CompareDataFiles(old_file, old_file).None());
}

TEST(Conversion, ConvertsCalibrationDataStepByStep) {
  // Before: bytes 00, 01, 02, ... up to the last one, and some checksum, which counts for nothing.
  const struct {
    int from, to, last;
    std::string after;
  } rows[] = {
      {100, 101, 0x7F,
       Count(0, 0x50) + "000000000000" + Count(0x51, 0x6D) + "3840" + Count(0x6E, 0x7F) + "2038"},
      {101, 102, 0x87,
       Count(0, 0x61) + "00" + Count(0x62, 0x81) + "0000" + Count(0x82, 0x87) + "23DC"},
      {102, 103, 0x8A, Count(0, 0x65) + Count(0x67, 0x84) + "21E4"},
      {103, 102, 0x83, Count(0, 0x65) + "00" + Count(0x66, 0x83) + "000000000000" + "21C6"},
      {102, 101, 0x8A, Count(0, 0x62) + Count(0x64, 0x82) + Count(0x85, 0x8A) + "240D"},
      {101, 100, 0x87, Count(0, 0x50) + Count(0x57, 0x73) + Count(0x76, 0x87) + "20FE"},
  };
  for (const auto& row : rows) {
    const std::string step = std::to_string(row.from) + " -> " + std::to_string(row.to);
    std::string data = Count(0, row.last) + "FFFF";
    EXPECT_TRUE(ConvertCalibrationDatabase(data, row.from, row.to)) << step;
    EXPECT_EQ(data, row.after) << step;
    // A byte too many: refused, unchanged.
    data = Count(0, row.last) + "FFFF00";
    const auto refused = ConvertCalibrationDatabase(data, row.from, row.to);
    ASSERT_FALSE(refused) << step;
    EXPECT_EQ(data, Count(0, row.last) + "FFFF00") << step;
    EXPECT_EQ(refused.error().step->error_text, ": " + step);
  }
}

TEST(Conversion, ChainsCalibrationStepsBothWays) {
  std::string data = Count(0, 0x7F) + "FFFF";
  EXPECT_TRUE(ConvertCalibrationDatabase(data, 100, 103));
  EXPECT_EQ(data, Count(0, 0x50) + "000000000000" + Count(0x51, 0x5B) + "00" + Count(0x5C, 0x5E) +
                      Count(0x60, 0x6D) + "3840" + Count(0x6E, 0x79) + "0000" + "1CEE");
  std::vector<Change> changes;
  EXPECT_TRUE(ConvertCalibrationDatabase(data, 103, 100, &changes));
  EXPECT_EQ(data.size(), 260U);
  ASSERT_EQ(changes.size(), 7U);
  using enum ChangeReason::Kind;
  EXPECT_EQ(changes[0].reason, (ChangeReason{kCalibrationStep, 103, 102}));
  EXPECT_EQ(changes[2].reason, (ChangeReason{kCalibrationStep, 102, 101}));
  EXPECT_EQ(Text(changes[4].difference), "1 00 0.81 000000000000>\n");
  EXPECT_EQ(changes[6].reason.kind, kChecksum);
}

TEST(Conversion, RenewsTheChecksumOfTheSameVersion) {
  // The second sum is 12345: its last four digits count.
  for (const auto& [before, checksum] :
       {std::pair(Count(0, 0x8A), "2577"), std::pair(Repeat("FF", 292) + "69", "2345"),
        std::pair(Repeat("00", 139), "0000")}) {
    std::string data = before + "ABCD";
    EXPECT_TRUE(ConvertCalibrationDatabase(data, 102, 102));
    EXPECT_EQ(data, before + checksum);
  }
  std::string empty;
  EXPECT_FALSE(ConvertCalibrationDatabase(empty, 102, 102));
}

TEST(Conversion, AddsCalibrationRecordsToTheDataFile) {
  const std::vector<std::string> records = {
      Record("2C0020", Count(0, 31)), Record("2C0120", Count(32, 63)),
      Record("2C0220", Count(64, 95)), Record("2C0320", Count(96, 127))};
  for (const auto& [bytes, whole, last] :
       {std::tuple(32, 1, std::string()), std::tuple(33, 1, Record("2C0101", "20")),
        std::tuple(141, 4, Record("2C040D", Count(128, 140)))}) {
    DataFile file("data.ops", {"X"});
    AddCalibrationDataToFile("2C", Count(0, bytes - 1), file);
    EXPECT_EQ(file.Print(), "X\r\n" + Lines({records.begin(), records.begin() + whole}) +
                                (last.empty() ? "" : last + "\r\n"));
  }
}

TEST(Conversion, TakesCalibrationFromTheItemOfTheModel) {
  // Tier, type, lines of the file, the item and its data.
  for (const char* row :
       {"2|2|4700020102FF 2C000103FF 47010104FF|47|010204", "1|1|4700020102FF 2c000103FF|2C|03",
        "7|2|4700020102FF|47|0102", "2|1|2C000103FF|2C|03", "7|2|15000103FF|2C|"}) {
    const std::vector<std::string> fields = Fields(row);
    DataFile file;
    std::istringstream lines(fields[2]);
    for (std::string line; lines >> line;) file.Add(line);
    EXPECT_EQ(
        CalibrationItemIn(file, {std::stoi(fields[0]), radiodb::RadioType{std::stoi(fields[1])}}),
        fields[3])
        << row;
    EXPECT_EQ(GetCalibrationData(file, fields[3]), fields[4]) << row;
  }
}

}  // namespace
}  // namespace zep::conversion
