#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/testing.h"
#include "tests/upgrade_testing.h"
#include "upgrade/calibration_conversion.h"
#include "upgrade/calibration_steps.h"
#include "upgrade/data_file_differences.h"
#include "upgrade/display_texts.h"
#include "upgrade/personality_conversion.h"
#include "upgrade/personality_steps.h"

namespace zep::upgrade {
namespace {

using services::Answer;
using testing::Count;
using testing::DataFileOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using testing::kIdentity402;
using testing::Lines;
using testing::Record;
using testing::Repeat;

// A channel of that many bytes whose byte n is n, but for these: byte 7 A5, byte 13 3F, byte 14 2C.
std::string Channel(int bytes) {
  return Count(0, 6) + "A5" + Count(8, 12) + "3F2C" + Count(15, bytes - 1);
}

class Conversion : public ::testing::Test {
 protected:
  std::string LogText() {
    std::string text = test_.folder.Read("upgrade.log").value_or("");
    const std::string time = "2026-11-21 07:05:33  ";
    for (std::size_t at; (at = text.find(time)) != std::string::npos;) text.erase(at, time.size());
    return text;
  }
  // What the steps from one version to the other make of the items.
  ItemArray Convert(ItemArray items, int from, int to) {
    PersonalityData data;
    data.networks.resize(1);
    data.networks[0].items = std::move(items);
    ConvertDatabase(test_.session, log_, {from, to, "0" + std::to_string(to), defaults_}, data);
    return data.networks[0].items;
  }
  bool ConvertFile(const PersonalityRequest& request) {
    return ConvertPersonalityData(test_.session, log_, request);
  }
  // Saved data of version 4.02 and default settings, asked to become another version.
  PersonalityRequest Request(const std::string& new_version) {
    test_.folder.Write("default.ops",
                       DataFileOf({kIdentity402, Record("150012", Count(0x80, 0x91))}));
    return {.old_version = "0402",
            .new_version = new_version,
            .saved_file = test_.folder.Write(
                "saved.ops", DataFileOf({kIdentity402, Record("050003", "010203")})),
            .converted_file = test_.folder.Path("upgrade/saved.ops"),
            .default_file = test_.folder.Path("default.ops")};
  }

  testing::TestSession test_;
  UpgradeLog log_{test_.session, test_.folder.Path("upgrade.log")};
  ItemArray defaults_;
};

TEST_F(Conversion, ReadsAndWritesBytesOfAnItem) {
  const std::string item = "00A1FE";
  EXPECT_EQ(GetByte(test_.session, item, 1), 0xA1);
  EXPECT_EQ(GetByteRange(item, 2), "FE");
  EXPECT_EQ(GetByteRange(item, 3), "00");
  EXPECT_EQ(GetByte(test_.session, "", 0), 0);
  std::string changed = item;
  SetByte(changed, 1, 0x5C);
  EXPECT_EQ(changed, "005CFE");
  SetByte(changed, 3, 0x07);
  EXPECT_EQ(changed, "005CFE07");
}

TEST_F(Conversion, CopiesTheWholeByteForOneBitAndOnlyTheBitsForSeveral) {
  const struct {
    const char* name;
    std::initializer_list<int> bits;
    const char* item;
    const char* standard;
    const char* expected;
  } rows[] = {
      {"one bit copies all eight", {7}, "0055", "00AB", "00AB"},
      {"bit 0 likewise", {0}, "0055", "00AB", "00AB"},
      {"several bits are set and cleared", {6, 7}, "007F", "0080", "00BF"},
      {"the other bits stay", {4, 5, 6, 7}, "002C", "00DF", "00DC"},
      {"no bits change nothing", {}, "0055", "00AB", "0055"},
      {"a default item that is too short counts 0", {7}, "0055", "00", "0000"},
      {"an item that is too short stays", {7}, "00", "00AB", "00"},
      {"a missing item stays missing", {7}, "", "00AB", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::string item = row.item;
    CopyByte(test_.session, item, row.standard, 1, row.bits);
    EXPECT_EQ(item, row.expected);
  }
}

TEST_F(Conversion, HasTheDisplayTextsByteForByte) {
  const std::string table = DisplayTextTable();
  ASSERT_EQ(table.size(), 1250U);
  int separators = 0;
  for (std::size_t at = 0; at < table.size(); at += 2) separators += table.substr(at, 2) == "FE";
  EXPECT_EQ(separators, 118);
  // "ENTER CODE:", "    UNIT", "** DIVERT **", " CCDI  BUSY" behind ten empty texts.
  EXPECT_TRUE(table.starts_with(
      "00FEFEFEFEFEFEFEFEFEFE454E54455220434F44453AFE20202020554E4954FE2A2A20444956455254202A2AFE"
      "2043434449202042555359FE"));
  // " BATTERY IS", twelve empty texts, " STATUS ", " NO STATUS".
  EXPECT_THAT(table, HasSubstr("204241545445525920"
                               "4953FE"
                               "FEFEFEFEFEFEFEFEFEFEFEFE"
                               "2053544154555320FE"
                               "204E4F20535441545553FE"));
  // "Q", "", "S", "NS", "P1", "P2", "T", "P", "", "", "SDM", "", "SOUND".
  EXPECT_THAT(table, HasSubstr("FE51FEFE53FE4E53FE5031FE5032FE54FE50FEFEFE53444DFEFE534F554E44FE"));
  // "SIGNAL", "", " STAT ", "NO STAT", "LOCKED", "ADJUST".
  EXPECT_THAT(
      table,
      EndsWith("5349474E414CFEFE205354415420FE4E4F2053544154FE4C4F434B4544FE41444A555354FE"));
}

TEST_F(Conversion, To400TakesDefaultsAndShortensChannels) {
  defaults_[5] = "E0E1E2E3E4";
  defaults_[6] = "F0F1F2F3F4";
  defaults_[21] = Count(0, 6) + "C7" + Count(8, 12) + "80" + Count(14, 17);
  ItemArray items;
  items[5] =
      "0001020304"
      "05";
  items[6] = "1011121314";
  items[21] = Channel(19) + Channel(19);
  items[43] = Count(0, 21);
  const ItemArray converted = Convert(items, 399, 400);
  EXPECT_EQ(converted[5], "E0010203E405");
  EXPECT_EQ(converted[6], "10111213F4");
  // Byte 7 as a whole, bits 6 and 7 of byte 13, without byte 18.
  EXPECT_EQ(converted[21], Repeat("00010203040506"
                                  "C7"
                                  "08090A0B0C"
                                  "BF"
                                  "2C"
                                  "0F1011",
                                  2));
  EXPECT_EQ(converted[43], Count(0, 21));
}

TEST_F(Conversion, To402TakesDefaultsAndReplacesTheDisplayTexts) {
  defaults_[5] = "E0E1E2E3E4";
  defaults_[7] = "F0F1F2";
  ItemArray items;
  items[5] = "0001020304";
  items[7] = "1011";
  items[21] = "FE" + Count(1, 17) + "FF" + Count(1, 17);
  items[22] = "FE" + Count(1, 12) + Repeat("FE", 16);
  items[30] = "00FE";
  const ItemArray converted = Convert(items, 401, 402);
  EXPECT_EQ(converted[5], "00010203E4");
  EXPECT_EQ(converted[7], "10F1");
  EXPECT_EQ(converted[21], items[21]) << "no single byte is the ID 510";
  EXPECT_EQ(converted[22], items[22]);
  EXPECT_EQ(converted[30], DisplayTextTable());
  EXPECT_EQ(test_.user.Boxes(), "");
}

TEST_F(Conversion, To403TakesFourBitsOfEveryChannel) {
  defaults_[21] = Count(0, 13) + "DF" + Count(15, 17);
  ItemArray items;
  items[13] = Count(0, 11);
  items[21] = Channel(18) + Channel(18);
  const ItemArray converted = Convert(items, 402, 403);
  EXPECT_EQ(converted[13], Count(0, 11));
  EXPECT_EQ(converted[21], Repeat("00010203040506"
                                  "A5"
                                  "08090A0B0C"
                                  "3F"
                                  "DC"
                                  "0F1011",
                                  2));
}

TEST_F(Conversion, RunsTheStepsThatLieBetweenTheVersions) {
  ItemArray items;
  items[0] =
      "5A45502D483135313230343032"
      "30323031";
  items[21] = Channel(19);
  items[30] = "00";
  const struct {
    int from;
    int to;
    std::size_t channel_bytes;
    bool new_texts;
    const char* version;  // in item 0
  } rows[] = {
      {399, 399, 19, false, "30343032"}, {399, 400, 18, false, "30343030"},
      {399, 401, 18, false, "30343031"}, {399, 402, 18, true, "30343032"},
      {399, 405, 18, true, "30343035"},  {400, 405, 19, true, "30343035"},
      {402, 404, 19, false, "30343034"}, {404, 405, 19, false, "30343035"},
      {402, 402, 19, false, "30343032"}, {405, 402, 19, false, "30343032"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.from) + " to " + std::to_string(row.to));
    const ItemArray converted = Convert(items, row.from, row.to);
    EXPECT_EQ(converted[21].size(), 2 * row.channel_bytes);
    EXPECT_EQ(converted[30].size(), row.new_texts ? 1250U : 2U);
    EXPECT_EQ(converted[0], "5A45502D4831353132" + std::string(row.version) + "30323031");
  }
}

TEST_F(Conversion, KeepsWhatIsTooShortForAStepAndLogsIt) {
  defaults_[6] = "00000000FF";
  ItemArray items;
  items[5] = "0A";
  items[21] = Channel(19) + "0102";
  const ItemArray converted = Convert(items, 399, 400);
  EXPECT_EQ(converted[5], "00");
  EXPECT_EQ(converted[6], "");
  EXPECT_EQ(converted[21].substr(36), "0102");
  EXPECT_EQ(LogText(),
            "Item 05 of the default settings has no byte 0, 00 is used\n"
            "Item 05 of the default settings has no byte 4, 00 is used\n"
            "Item 05 of the saved data has no byte 4 and is kept as it is\n"
            "Item 06 of the saved data has no byte 4 and is kept as it is\n"
            "Item 15 of the default settings has no byte 7, 00 is used\n"
            "Item 15 of the default settings has no byte 13, 00 is used\n"
            "Item 15 is no whole number of records of 19 bytes; the 2 bytes behind the last one "
            "are kept as they are\n");
}

TEST_F(Conversion, WritesAFileWithItsOrderAndRecordsKept) {
  // Two networks; item 15 in two records of an unusual cut; a second "00" line; a lower-case mark.
  test_.folder.Write("default.ops", DataFileOf({kIdentity402, Record("150012", Count(0x80, 0x91)),
                                                Record("050005", "E0E1E2E3E4")}));
  const std::string saved = test_.folder.Write(
      "saved.omn",
      DataFileOf({kIdentity402, "f" + Record("2B0702", "AABB"), Record("150014", Count(0, 19)),
                  Record("150112", Count(20, 37)), Record("050005", "0001020304"), "~~~",
                  Record("000001", "77"), "Insert Common Dynamic Item Here",
                  Record("050005", "0506070809"), Record("1E0002", "00FE")}));
  const std::string converted = ConvertedFileOf(test_.session, saved);
  EXPECT_TRUE(ConvertFile({.old_version = "0401",
                           .new_version = "0405",
                           .saved_file = saved,
                           .converted_file = converted,
                           .default_file = test_.folder.Path("default.ops")}));
  std::vector<std::string> texts;
  for (int record = 0; record < 20; ++record) {
    const std::size_t bytes = record < 19 ? 32 : 17;
    std::string header = "1E0020";
    header[2] = static_cast<char>('0' + record / 10);
    header[3] = static_cast<char>('0' + record % 10);
    if (record == 19) header.replace(4, 2, "11");
    texts.push_back(
        Record(header, DisplayTextTable().substr(64U * static_cast<unsigned>(record), 2 * bytes)));
  }
  std::vector<std::string> expected = {
      "***",
      "ZEP Multiple Network Data File",
      "Contains data for 2 networks",
      "Saved with the ZEP Download and Configuration Application Version 1.0.0",
      "###",
      "---",
      Record("000011",
             "5A45502D4831353132"
             "30343035"
             "30323031"),
      Record("2B0702", "AABB"),
      Record("150014", Count(0, 13) + "8E" + Count(15, 19)),
      Record("150112", Count(20, 31) + "80" + Count(33, 37)),
      Record("050005", "00010203E4")};
  expected[8] = Record("150014", Count(0, 13) + "8E" + Count(15, 19));
  expected.insert(expected.end(), texts.begin(), texts.end());
  expected.insert(expected.end(), {"~~~", Record("000001", "77"), "Insert Common Dynamic Item Here",
                                   Record("050005", "05060708E4")});
  expected.insert(expected.end(), texts.begin(), texts.end());
  EXPECT_EQ(test_.folder.Read("upgrade/saved.omn"), Lines(expected));
  EXPECT_THAT(LogText(),
              HasSubstr("Upgrading personality data v401 -> v405\nDefault settings read from " +
                        test_.folder.Path("default.ops") + "\n"));
  EXPECT_THAT(LogText(), EndsWith("Personality data version is now v405\n"));
}

TEST_F(Conversion, CountsRecordsOfALongItemOnFromZero) {
  std::string text;
  AppendRecords(test_.session, "15", Repeat("00", 32 * 101 + 1), text);
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size(); at = text.find("\r\n", at) + 2)
    lines.push_back(text.substr(at, 6));
  ASSERT_EQ(lines.size(), 102U);
  EXPECT_EQ(lines[9], "150920");
  EXPECT_EQ(lines[99], "159920");
  EXPECT_EQ(lines[100], "150020");
  EXPECT_EQ(lines[101], "150101");
}

TEST_F(Conversion, WritesUpToDateDataAllTheSame) {
  EXPECT_TRUE(ConvertFile(Request("0402")));
  EXPECT_THAT(LogText(), EndsWith("Personality data is up-to-date\n"));
  EXPECT_THAT(test_.folder.Read("upgrade/saved.ops").value_or(""),
              EndsWith(Lines({"---", kIdentity402, Record("050003", "010203")})));
}

TEST_F(Conversion, FailsWithOneLineAndNoFile) {
  const auto nothing = [](testing::TestSession&, PersonalityRequest&) {};
  const struct {
    const char* name;
    const char* new_version;
    std::function<void(testing::TestSession&, PersonalityRequest&)> spoil;
    std::string last_line;
  } rows[] = {
      {"too old", "0204", nothing, "v204 is not supported"},
      {"too new", "0406", nothing, "v406 is not supported"},
      {"no default settings", "0405",
       [](auto& test, auto& request) {
         request.default_file = test.folder.Path("gone.ops");
         test.user.WillAnswer("Cannot find gone.ops would you like", Answer::kNo);
       },
       "Could not locate default.ops"},
      {"default settings damaged", "0405",
       [](auto& test, auto&) {
         test.folder.Write("default.ops", DataFileOf({kIdentity402, "150001FF00"}));
       },
       "Could read default settings "},
      {"saved file gone", "0405",
       [](auto& test, auto& request) { request.saved_file = test.folder.Path("gone.ops"); },
       "Could not locate FOLDER"},
      {"saved file cut off", "0405",
       [](auto& test, auto&) {
         test.folder.Write("saved.ops", DataFileOf({kIdentity402, "0500"}));
       },
       "Could not locate FOLDER"},
      {"no folder to write to", "0405",
       [](auto& test, auto&) { test.folder.Write("upgrade", "a file"); },
       "Could not write FOLDERupgrade/saved.ops"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    testing::TestSession test;
    UpgradeLog log(test.session, test.folder.Path("upgrade.log"));
    test.folder.Write("default.ops", DataFileOf({kIdentity402}));
    PersonalityRequest request{
        .old_version = "0402",
        .new_version = row.new_version,
        .saved_file = test.folder.Write("saved.ops", DataFileOf({kIdentity402})),
        .converted_file = test.folder.Path("upgrade/saved.ops"),
        .default_file = test.folder.Path("default.ops")};
    row.spoil(test, request);
    EXPECT_FALSE(ConvertPersonalityData(test.session, log, request));
    EXPECT_NE(test.session.failure, services::Failure::kNone);
    EXPECT_FALSE(test.folder.Read("upgrade/saved.ops"));
    std::string last_line = row.last_line;
    if (const std::size_t at = last_line.find("FOLDER"); at != std::string::npos)
      last_line.replace(at, 6, test.folder.Path(""));
    EXPECT_THAT(test.folder.Read("upgrade.log").value_or(""), EndsWith("  " + last_line + "\n"));
  }
}

TEST_F(Conversion, FindsTheDefaultSettings) {
  const auto set = [this](const std::string& value) {
    test_.settings.AppSaveUserSetting(services::AppType::kDownload, "DefaultDataPath", value);
  };
  test_.settings.AppSaveUserSetting(services::AppType::kConventional, "ApplicationPath",
                                    test_.folder.Path("suite"));
  test_.settings.AppSaveUserSetting(services::AppType::kConventional, "Application",
                                    "prog/zepprog");
  const std::string in_program_folder = test_.folder.Path("suite/prog/default.ops");
  const std::string mine = test_.folder.Write("mine/default.ops", "");
  const std::string other = test_.folder.Write("mine/other.ops", "");
  EXPECT_EQ(FindDefaultSettings(test_.session), in_program_folder);
  set(other);
  EXPECT_EQ(FindDefaultSettings(test_.session), other);
  set(test_.folder.Path("mine"));
  EXPECT_EQ(FindDefaultSettings(test_.session), mine);
  set(test_.folder.Path("mine/gone.ops"));
  EXPECT_EQ(FindDefaultSettings(test_.session), in_program_folder);
}

// One line a difference: network, item, record, byte, before, after.
std::string Text(const ItemDifference& difference) {
  return std::to_string(difference.network) + " " +
         Count(static_cast<int>(difference.item), static_cast<int>(difference.item)) + " " +
         std::to_string(difference.record) + "." + std::to_string(difference.byte) + " " +
         difference.before + ">" + difference.after + "\n";
}

TEST_F(Conversion, TriesOutAndTellsEveryChangeWithItsReason) {
  std::vector<Change> changes;
  PersonalityRequest request = Request("0403");
  test_.folder.Write("saved.ops", DataFileOf({kIdentity402, Record("150026", Count(0, 37))}));
  request.old_version = "0399";
  request.changes = &changes;
  EXPECT_TRUE(ConvertFile(request));
  EXPECT_FALSE(test_.folder.Read("upgrade/saved.ops"));
  std::string text;
  for (const Change& change : changes) {
    if (change.difference.item != kDisplayTexts)
      text += change.reason + ": " + Text(change.difference);
  }
  EXPECT_EQ(text,
            "conversion to database version 4.00: 1 15 1.7 07>87\n"
            "conversion to database version 4.00: 1 15 1.13 0D>8D\n"
            "conversion to database version 4.00: 1 15 1.18 12>\n"
            "conversion to database version 4.00: 1 15 2.7 1A>87\n"
            "conversion to database version 4.00: 1 15 2.13 20>A0\n"
            "conversion to database version 4.00: 1 15 2.18 25>\n"
            "conversion to database version 4.03: 1 15 1.14 0E>8E\n"
            "conversion to database version 4.03: 1 15 2.14 21>81\n"
            "the new database version: 1 00 0.12 32>33\n");
}

TEST_F(Conversion, ComparesTwoFiles) {
  const std::string old_file = test_.folder.Write(
      "a.ops", DataFileOf({kIdentity402, Record("050003", "010203"), Record("060001", "AA"),
                           Record("150024", Count(0, 35))}));
  const std::string new_file = test_.folder.Write(
      "b.ops", DataFileOf({Record("000011",
                                  "5A45502D4831353132"
                                  "30343035"
                                  "30323031"),
                           Record("050004", "01FF0304"), Record("150012", Count(0, 17)), "~~~",
                           Record("070001", "BB")}));
  const auto differences = CompareDataFiles(test_.session, old_file, new_file);
  ASSERT_TRUE(differences);
  std::string text;
  for (const FactDifference& fact : differences->facts)
    text += fact.name + " " + fact.before + ">" + fact.after + "\n";
  for (const ItemDifference& difference : differences->items) text += Text(difference);
  EXPECT_EQ(text,
            "Database version 0402>0405\nNetworks 1>2\n"
            "1 00 0.12 32>35\n1 05 0.1 02>FF\n1 05 0.3 >04\n1 06 0.0 AA>\n"
            "1 15 2.0 12131415161718191A1B1C1D1E1F2021>\n1 15 2.16 2223>\n2 07 0.0 >BB\n");
  EXPECT_TRUE(CompareDataFiles(test_.session, old_file, old_file)->None());
}

struct CalibrationCase {
  int from;
  int to;
  std::string before;
  std::string after;
};

// Before: bytes 00, 01, 02, ... and some checksum, which counts for nothing.
const CalibrationCase kCalibrationCases[] = {
    {100, 101, Count(0, 0x7F) + "FFFF",
     Count(0, 0x50) + "000000000000" + Count(0x51, 0x6D) + "3840" + Count(0x6E, 0x7F) + "2038"},
    {101, 102, Count(0, 0x87) + "FFFF",
     Count(0, 0x61) + "00" + Count(0x62, 0x81) + "0000" + Count(0x82, 0x87) + "23DC"},
    {102, 103, Count(0, 0x8A) + "FFFF", Count(0, 0x65) + Count(0x67, 0x84) + "21E4"},
    {103, 102, Count(0, 0x83) + "FFFF",
     Count(0, 0x65) + "00" + Count(0x66, 0x83) + "000000000000" + "21C6"},
    {102, 101, Count(0, 0x8A) + "FFFF",
     Count(0, 0x62) + Count(0x64, 0x82) + Count(0x85, 0x8A) + "240D"},
    {101, 100, Count(0, 0x87) + "FFFF",
     Count(0, 0x50) + Count(0x57, 0x73) + Count(0x76, 0x87) + "20FE"},
};

TEST_F(Conversion, ConvertsCalibrationDataStepByStep) {
  for (const CalibrationCase& row : kCalibrationCases) {
    const std::string step = std::to_string(row.from) + " -> " + std::to_string(row.to);
    SCOPED_TRACE(step);
    std::string data = row.before;
    EXPECT_TRUE(ConvertCalibrationDatabase(test_.session, data, row.from, row.to));
    EXPECT_EQ(data, row.after);
    // Two characters more or less: refused, unchanged.
    std::string spoilt = row.before + "00";
    EXPECT_FALSE(ConvertCalibrationDatabase(test_.session, spoilt, row.from, row.to));
    EXPECT_EQ(spoilt, row.before + "00");
    EXPECT_EQ(test_.user.TakeBoxes(),
              "information [Conversion Error] Conversion Error: " + step + " -> OK\n");
  }
}

TEST_F(Conversion, ChainsCalibrationStepsBothWays) {
  std::string data = Count(0, 0x7F) + "FFFF";
  EXPECT_TRUE(ConvertCalibrationDatabase(test_.session, data, 100, 103));
  EXPECT_EQ(data, Count(0, 0x50) + "000000000000" + Count(0x51, 0x5B) + "00" + Count(0x5C, 0x5E) +
                      Count(0x60, 0x6D) + "3840" + Count(0x6E, 0x79) + "0000" + "1CEE");
  std::vector<Change> changes;
  EXPECT_TRUE(ConvertCalibrationDatabase(test_.session, data, 103, 100, &changes));
  EXPECT_EQ(data.size(), 260U);
  ASSERT_EQ(changes.size(), 7U);
  EXPECT_EQ(changes[0].reason, "103 -> 102");
  EXPECT_EQ(changes[2].reason, "102 -> 101");
  EXPECT_EQ(Text(changes[4].difference), "1 00 0.81 000000000000>\n");
  EXPECT_EQ(changes[6].reason, "checksum");
}

TEST_F(Conversion, RenewsTheChecksumOfTheSameVersion) {
  const struct {
    const char* name;
    std::string before;
    std::string checksum;
  } rows[] = {
      {"version 102", Count(0, 0x8A) + "FFFF", "2577"},
      {"a sum of 12345 keeps its last digits", Repeat("FF", 292) + "69" + "0000", "2345"},
      {"a sum of 0", Repeat("00", 139) + "ABCD", "0000"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    std::string data = row.before;
    EXPECT_TRUE(ConvertCalibrationDatabase(test_.session, data, 102, 102));
    EXPECT_EQ(data, row.before.substr(0, row.before.size() - 4) + row.checksum);
  }
}

TEST_F(Conversion, RefusesCalibrationVersionsThatItDoesNotKnow) {
  std::string data = Count(0, 0x83) + "FFFF";
  EXPECT_FALSE(ConvertCalibrationDatabase(test_.session, data, 103, 104));
  EXPECT_FALSE(ConvertCalibrationDatabase(test_.session, data, 99, 103));
  std::string empty;
  EXPECT_FALSE(ConvertCalibrationDatabase(test_.session, empty, 102, 102));
  EXPECT_FALSE(ConvertCalibrationDatabase(test_.session, empty, 100, 101));
}

TEST_F(Conversion, AppendsCalibrationRecordsToTheDataFile) {
  const struct {
    std::size_t characters;
    std::vector<std::string> records;
  } rows[] = {
      {64, {Record("2C0020", Count(0, 31))}},
      {66, {Record("2C0020", Count(0, 31)), Record("2C0101", "20")}},
      {282,
       {Record("2C0020", Count(0, 31)), Record("2C0120", Count(32, 63)),
        Record("2C0220", Count(64, 95)), Record("2C0320", Count(96, 127)),
        Record("2C040D", Count(128, 140))}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.characters);
    const std::string path = test_.folder.Write("data.ops", "X\r\n");
    const std::string data = Count(0, 140).substr(0, row.characters);
    EXPECT_TRUE(AddCalibrationDataToFile(test_.session, path, "2C", data));
    EXPECT_EQ(test_.folder.Read("data.ops"), "X\r\n" + Lines(row.records));
  }
  EXPECT_FALSE(AddCalibrationDataToFile(test_.session, test_.folder.Path("gone.ops"), "2C", "00"));
}

TEST_F(Conversion, TakesCalibrationFromTheItemOfTheModel) {
  using radiodb::RadioType;
  const struct {
    const char* name;
    radiodb::RadioModel model;
    std::vector<std::string> lines;
    std::string item;
    std::string data;
  } rows[] = {
      {"tier 2",
       {2, RadioType::kTrunked},
       {"4700020102FF", "2C000103FF", "47010104FF"},
       "47",
       "010204"},
      {"another tier", {1, RadioType::kConventional}, {"4700020102FF", "2c000103FF"}, "2C", "03"},
      {"a trunked radio of another tier", {7, RadioType::kTrunked}, {"4700020102FF"}, "47", "0102"},
      {"a conventional radio of tier 2", {2, RadioType::kConventional}, {"2C000103FF"}, "2C", "03"},
      {"none", {7, RadioType::kTrunked}, {"15000103FF"}, "2C", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    radiodb::DataFile file;
    for (const std::string& line : row.lines) file.lines.push_back({1, line});
    EXPECT_EQ(CalibrationItemIn(file, row.model), row.item);
    EXPECT_EQ(GetCalibrationData(file, row.item), row.data);
  }
}

TEST_F(Conversion, ConvertsACalibrationFile) {
  const std::string identity = Record("00001C", "5A45502D4831353132" + Count(0, 15) + "000001");
  std::string records;
  AppendRecords(test_.session, "2C", kCalibrationCases[0].before, records);
  const std::string saved =
      test_.folder.Write("saved.ocs", Lines({"***", "---", identity}) + records);
  CalibrationRequest request{.saved_file = saved,
                             .converted_file = test_.folder.Path("new.ocs"),
                             .old_version = 100,
                             .new_version = 101};
  std::vector<Change> changes;
  request.changes = &changes;
  EXPECT_TRUE(ConvertCalibrationFile(test_.session, request));
  EXPECT_FALSE(test_.folder.Read("new.ocs"));
  ASSERT_EQ(changes.size(), 3U);
  EXPECT_EQ(Text(changes[1].difference), "1 2C 0.116 >3840\n");

  request.changes = nullptr;
  EXPECT_TRUE(ConvertCalibrationFile(test_.session, request));
  std::string converted;
  AppendRecords(test_.session, "2C", kCalibrationCases[0].after, converted);
  EXPECT_EQ(test_.folder.Read("new.ocs"),
            Lines({"***", "Saved with the ZEP Download and Configuration Application Version 1.0.0",
                   "###", "---", identity}) +
                converted);
  request.saved_file = test_.folder.Write("none.ocs", Lines({identity, Record("150001", "00")}));
  EXPECT_FALSE(ConvertCalibrationFile(test_.session, request));
}

}  // namespace
}  // namespace zep::upgrade
