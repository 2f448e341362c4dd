// What zepctl prints with --json: facts, the same in every language, all of them told of in the
// manual page.
#include <map>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/data_report.h"
#include "cli/firmware_words.h"
#include "cli/json.h"
#include "cli/json_words.h"
#include "tests/manual_page.h"
#include "tests/upgrade_testing.h"
#include "tests/zepctl_testing.h"

namespace zep::cli {
namespace {

using firmware::FlashSize;
using firmware::MicroType;

using testing::Found;
using ::testing::HasSubstr;
using testing::ManualSection;
using testing::Names;
using testing::SourceFile;
using Bench = testing::ZepctlBench;

// What the manual page tells of a value: bool, number, text, or word with the words.
struct JsonKey {
  std::string type;
  Names words;
};
using JsonKeys = std::map<std::string, std::map<std::string, JsonKey>>;  // by command, by key

JsonKeys ManualJsonKeys() {
  static const std::regex key_line(R"(  (\S+)  +(bool|number|text|word)(.*))");
  JsonKeys keys;
  Names commands;
  std::string name;
  for (const std::string& line : ManualSection("JSON")) {
    std::smatch parts;
    const bool is_key = std::regex_match(line, parts, key_line);
    if (!line.starts_with(" ")) commands = Found(line, "([a-z][a-z ]*)");
    if (is_key) name = parts[1];
    if (!line.starts_with(" ") || name.empty()) continue;
    for (const std::string& command : commands) {
      JsonKey& key = keys[command][name];
      if (is_key) key.type = parts[2];
      if (key.type == "word") key.words.merge(Found(is_key ? parts[3].str() : line, "(\\w+)"));
    }
  }
  return keys;
}

std::string TypeOf(const Json& value) {
  return value.is_boolean() ? "bool" : value.is_number() ? "number" : "text";
}

// Fails for each key, type and word of the value that the manual page does not name. Notes the
// keys.
void Check(const Json& value, const std::string& path, const std::map<std::string, JsonKey>& known,
           Names& seen) {
  if (value.is_object()) {
    const std::string prefix = path.empty() ? path : path + ".";
    for (const auto& [name, member] : value.items()) Check(member, prefix + name, known, seen);
  } else if (value.is_array()) {
    for (const Json& element : value) Check(element, path + "[]", known, seen);
  } else if (const auto key = known.find(path); key == known.end()) {
    ADD_FAILURE() << path << " is not in the manual page";
  } else if (seen.insert(path); key->second.type == "word") {
    EXPECT_TRUE(key->second.words.contains(value.get<std::string>())) << path << ": " << value;
  } else {
    EXPECT_EQ(TypeOf(value), key->second.type) << path;
  }
}

// The command, its arguments and options, the exit status.
constexpr const char* kRuns[] = {
    "ports||0",
    "ports|-p sim:trunked -p /dev/none|3",
    "identify|-p sim:trunked,unpaced|0",
    "identify|-p sim:conventional,unpaced,fault=silent@read:1|4",
    "read|F/a.ops -p sim:conventional,unpaced|0",
    "read|--auto -p sim:trunked,unpaced|0",
    "read|F/old.ops -p sim:conventional,unpaced|1",
    "read|F/a.ops -p sim:conventional,unpaced,fault=brace@read:9=C04|5",
    "read|F/a.ops -p sim:conventional,unpaced,fault=cut@read:9|3",
    "program|F/old.ops -p sim:torvik,unpaced|0",
    "program|F/old.ops -p sim:trunked,unpaced|1",
    "program|F/old.ops -p sim:torvik,unpaced,fault=brace@write:5=C09|5",
    "program|F/old.ops|3",
    "program|F/empty.ops -p sim:conventional,unpaced|6",
    "program|F/none.ops -p sim:conventional,unpaced|6",
    "firmware check|F/my.bin|0",
    "firmware check|F/old.ops|6",
    "firmware write|F/model51-e1-1mbit.bin --data F/other.ops --yes -p sim:conventional,unpaced|0",
    "firmware write|F/my.bin -p sim:torvik,unpaced -p sim:torvik,unpaced,fault=silent@block:9|4",
    "firmware write|F/my.bin -p sim:torvik,unpaced,fault=wrong@identification=12|1",
    "firmware write|F/model51-e1-1mbit.bin -p sim:conventional,unpaced,micro=A1|1",
    "firmware write|F/model51-e1-1mbit.bin -p sim:conventional,unpaced,micro=A1 --inhouse|0",
    "firmware write|F/old.ops -p sim:conventional,unpaced|6",
    "firmware read|F/flash.bin -p sim:conventional,unpaced|0",
    "upgrade|--image F/my.bin --defaults F/default.ops --string-table Torvik -p sim:torvik|0",
    "upgrade|--image F/my.bin -p sim:torvik,unpaced|1",
    "upgrade|--string-table Torvik -p sim:torvik,unpaced,fault=silent@read:1|4",
    "convert personality|F/old.ops F/new --to 405 --defaults F/default.ops|0",
    "convert personality|F/old.ops F/new --to 405 --defaults F/few.ops --dry-run|0",
    "convert personality|F/old.ops F/new --to 406|1",
    "convert calibration|F/old.ocs F/new --to 103|0",
    "convert calibration|F/old.ocs F/new --to 103 --dry-run|0",
    "data check|F/old.ops|0",
    "data check|F/bad.ops|6",
    "data check|F/none.ops|6",
    "data show|F/old.ocs|0",
    "data show|F/two.omn|6",
    "data diff|F/old.ops F/other.ops|1",
    "data diff|F/few.ops F/odd.ops|1",
    "data diff|F/old.ops F/old.ops|0",
};

struct JsonBench : Bench {
  JsonBench() {
    using enum platform::SerialDeviceState;
    devices = {{"/dev/ttyUSB0", "FT232R", "0403:6001", "A50", kFree, ""},
               {"/dev/ttyS0", "16550A", "", "", kBusy, "minicom (process 4711)"},
               {"/dev/ttyS1", "16550A", "", "", kConsole, ""},
               {"/dev/none", "", "", "", kNoPermission, ""}};
    folder.Write("ZEPDLCA.mld", SourceFile("resources/ZEPDLCA.mld"));
    const std::string identity = testing::DataFileOf({testing::Identity("0405")});
    WriteImage("model51-e1-1mbit.bin");
    folder.Write("empty.ops", "");
    folder.Write("few.ops", identity);
    folder.Write("odd.ops", identity + "Insert Common Dynamic Item Here\r\n");
    folder.Write("bad.ops", identity + "0200040G020304F0\r\n");
    folder.Write("two.omn", identity + "~~~\r\n02000401020304F1\r\n");
    folder.Write("other.ops", simulator::DataFileText(simulator::KnownRadios()[0].profile()));
  }
};

// What a run prints and says, by its options, command, arguments and status.
std::pair<std::string, std::string> RunRow(const std::string& options,
                                           const std::vector<std::string>& row) {
  JsonBench bench;
  EXPECT_EQ(bench.RunLine(options + " " + row[0] + " " + row[1]), std::stoi(row[2]));
  return {bench.Out(), bench.Err()};
}

TEST(ZepctlJson, IsTheSameInEveryLanguageAndAllOfItIsInTheManual) {
  const JsonKeys keys = ManualJsonKeys();
  std::map<std::string, Names> seen;
  for (const char* text : kRuns) {
    SCOPED_TRACE(text);
    const std::vector<std::string> row = testing::Fields(text);
    const auto english = RunRow("--json --language en", row);
    for (const std::string language : {"fr", "es", "zh"})
      EXPECT_EQ(RunRow("--json --language " + language, row), english) << language;
    std::map<std::string, JsonKey> known = keys.at("every command");
    known.insert(keys.at(row[0]).begin(), keys.at(row[0]).end());
    const Json result = Json::parse(english.first);
    Check(result, "", known, seen[row[0]]);
    EXPECT_EQ(result["ok"], row[2] == "0");
    const bool radio_failed = row[2] >= "3" && row[2] <= "5";
    EXPECT_FALSE(radio_failed && result["messages"].empty()) << "without a word";
    EXPECT_FALSE(row[0] == "read" && row[2] != "0" && result.contains("data_file"));
    seen["every command"].merge(Names(seen[row[0]]));
  }
  for (const auto& [command, known] : keys) {
    for (const auto& [key, value] : known)
      EXPECT_TRUE(seen[command].contains(key)) << command << " never prints " << key;
  }
  EXPECT_THAT(RunRow("--language fr", {"data show", "F/old.ops", "0"}).first, HasSubstr("Modèle"));
}

// The words from the first fact of a kind to the last.
template <typename Fact>
Names Words(Fact first, Fact last) {
  Names words;
  for (int fact = static_cast<int>(first); fact <= static_cast<int>(last); ++fact)
    words.emplace(JsonWord(static_cast<Fact>(fact)));
  return words;
}

TEST(ZepctlJson, EveryWordOfAFactIsInTheManual) {
  JsonKeys keys = ManualJsonKeys();
  const auto expect = [&keys](const std::string& command, const std::string& key,
                              const Names& words) {
    EXPECT_EQ(keys[command][key].words, words) << key;
  };
  using enum platform::SerialDeviceState;
  expect("ports", "devices[].state", Words(kFree, kConsole));
  using link::PortState;
  expect("ports", "ports[].state", Words(PortState::kActive, PortState::kErrorDetected));
  expect("identify", "radio.type", {"conventional", "trunked", "conventional_ii"});
  expect("firmware check", "image.type", {"conventional", "trunked", "conventional_ii", "unknown"});
  expect("firmware check", "image.micro", Words(MicroType::kUnknown, MicroType::kE1));
  expect("firmware check", "image.flash_size", Words(FlashSize::k1Mbit, FlashSize::kUnknown));
  expect("firmware write", "radios[].micro", Words(MicroType::kUnknown, MicroType::kE1));
  expect("firmware write", "radios[].flash_size", Words(FlashSize::kNone, FlashSize::k2Mbit));
  using firmware::RadioOutcome;
  expect("firmware write", "radios[].result", Words(RadioOutcome::kDone, RadioOutcome::kFailed));
  using upgrade::UpgradeOutcome;
  expect("upgrade", "outcome", Words(UpgradeOutcome::kSucceeded, UpgradeOutcome::kAborted));
  using enum conversion::ChangeReason::Kind;
  expect("convert personality", "changes[].reason", Words(kDatabaseStep, kChecksum));
  using conversion::FileFact;
  expect("data diff", "differences.facts[].name", Words(FileFact{}, FileFact::kOtherLines));
  expect("data show", "data.kind", Words(DataFileKind::kData, DataFileKind::kCalibration));
  std::string types;
  for (const char* model : {"51", "52", "53", ""}) types += std::string(RadioTypeWord(model)) + " ";
  EXPECT_EQ(types, "conventional trunked conventional_ii unknown ");
}

TEST(ZepctlJson, ReplacesWhatIsNoUtf8) {
  Bench bench;
  EXPECT_EQ(bench.Run({"--json", "data", "check", bench.folder.Path("\xE9.ops")}), 6);
  EXPECT_THAT(bench.Out(), HasSubstr("/\xEF\xBF\xBD.ops"));
}

}  // namespace
}  // namespace zep::cli
