// zepctl's firmware commands, its progress and its Ctrl-C while firmware is written.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/text_layout.h"
#include "tests/zepctl_testing.h"

namespace zep::cli {
namespace {

using nlohmann::json;
using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using testing::Zepctl;

const std::string kFirst = "sim:conventional,unpaced";
const std::string kSecond = "sim:conventional,serial=10000002,unpaced";
const std::string kFailing = "sim:conventional,unpaced,fault=silent@block:100";

int Count(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

simulator::Bytes BytesOf(const testing::TempFolder& folder, std::string_view name) {
  const std::string text = folder.Read(name).value_or("");
  return {text.begin(), text.end()};
}

TEST(ZepctlFirmware, CheckTellsWhatAnImageIsForOrWhyItIsNone) {
  Zepctl zepctl;
  EXPECT_EQ(zepctl.Run({"firmware", "check", zepctl.WriteImage("model31-a1-2mbit.bin")}), 0);
  EXPECT_EQ(zepctl.Out(),
            "File   FOLDER/model31-a1-2mbit.bin\n"
            "Size   262144 bytes\n"
            "Model  ZEP 1300 (31)\n"
            "Type   Conventional\n"
            "Micro  A1\n"
            "Flash  2 Mbit\n");
  zepctl.folder.Write("short.bin", std::string(262143, '\0'));
  zepctl.folder.Write("blank.bin", std::string(131072, '\xFF'));
  zepctl.folder.Write("empty.bin", "");
  for (const auto& [name, problem] : std::vector<std::pair<std::string, std::string>>{
           {"short.bin", "ZEP-xx"},
           {"blank.bin", "ZEP-xx"},
           {"empty.bin", "The file FOLDER/empty.bin is empty."},
           {"none.bin", "There is no file FOLDER/none.bin."},
           {".", "is a folder."}}) {
    SCOPED_TRACE(name);
    for (const std::string command : {"check", "write"}) {
      EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", command, zepctl.folder.Path(name)}), 6);
      EXPECT_THAT(zepctl.Err(), HasSubstr(problem));
      EXPECT_EQ(zepctl.Out(), "");
    }
  }
  EXPECT_EQ(zepctl.ToRadios(), "");
}

TEST(ZepctlFirmware, WritesIntoEveryRadioAndTellsEachOutcome) {
  for (const std::string way : {"--quiet", "--at-once"}) {
    SCOPED_TRACE(way);
    Zepctl zepctl;
    const std::string image = zepctl.WriteImage("model51-e1-1mbit.bin");
    EXPECT_EQ(zepctl.Run({"-p", kFirst, "-p", "3=" + kSecond, "firmware", "write", image, way}), 0);
    EXPECT_EQ(zepctl.Out(),
              "Slot  Device                                    Micro  Flash             Result\n"
              "1     sim:conventional,unpaced                  E1     SST29EE020 2MBit  done\n"
              "3     sim:conventional,serial=10000002,unpaced  E1     SST29EE020 2MBit  done\n");
    for (const std::string& device : {kFirst, kSecond}) {
      EXPECT_TRUE(
          zepctl.Radio(device).FlashMatches(BytesOf(zepctl.folder, "model51-e1-1mbit.bin")));
      EXPECT_EQ(zepctl.Radio(device).Counts().blocks_written, 717U);  // of an E1 radio
    }
  }
}

TEST(ZepctlFirmware, ARadioThatFailsDecidesTheStatusAndTheOthersGoOn) {
  Zepctl zepctl;
  const std::string image = zepctl.WriteImage("model51-e1-1mbit.bin");
  EXPECT_EQ(zepctl.Run({"-p", kFailing, "-p", kSecond, "--json", "firmware", "write", image}), 4);
  const json result = json::parse(zepctl.Out());
  EXPECT_EQ(result["radios"][0]["result"], "failed");
  EXPECT_EQ(result["radios"][1]["result"], "done");
  EXPECT_TRUE(zepctl.Radio(kSecond).FlashMatches(BytesOf(zepctl.folder, "model51-e1-1mbit.bin")));
  EXPECT_THAT(zepctl.Err(), HasSubstr("Port 1: Error Detected, E1, SST29EE020 2MBit\n"));
  EXPECT_THAT(zepctl.Err(), HasSubstr("Completed downloading firmware to radio on communication "
                                      "port 2\n"));
}

TEST(ZepctlFirmware, SavesTheDataOfOneRadioAndWritesItBack) {
  Zepctl zepctl;
  const std::string image = zepctl.WriteImage("model51-e1-1mbit.bin");
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", image, "--save-data"}), 0);
  EXPECT_TRUE(zepctl.folder.Read("database/10000001v0405.ops"));
  EXPECT_GT(zepctl.Radio(kFirst).Counts().records_written, 50U);

  // A data file is programmed when the user says so; it is looked at before anything else.
  const std::string data = zepctl.folder.Path("database/10000001v0405.ops");
  const std::size_t written = zepctl.Radio(kFirst).Counts().records_written;
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", image, "--data", data}), 1);
  EXPECT_THAT(zepctl.Err(), HasSubstr("Program default data file: FOLDER/database/"));
  EXPECT_EQ(zepctl.Radio(kFirst).Counts().records_written, written);
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", image, "--data", data, "--yes"}), 0);
  EXPECT_GT(zepctl.Radio(kFirst).Counts().records_written, written);
  const std::string sent = zepctl.ToRadios();
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", image, "--data", data + "x"}), 6);
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "-p", kSecond, "firmware", "write", image, "--save-data"}),
            3);
  EXPECT_EQ(zepctl.ToRadios(), sent);
}

TEST(ZepctlFirmware, ReadsTheFlashIntoAFileAndAsksBeforeItIsOverwritten) {
  Zepctl zepctl;
  const std::string file = zepctl.folder.Write("flash.bin", "old");
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "read", file}), 1);
  EXPECT_EQ(zepctl.folder.Read("flash.bin"), "old");
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "read", file, "--yes"}), 0);
  EXPECT_THAT(zepctl.Out(),
              EndsWith("The flash memory is saved in FOLDER/flash.bin (262144 bytes).\n"));
  EXPECT_TRUE(zepctl.Radio(kFirst).FlashMatches(BytesOf(zepctl.folder, "flash.bin")));
}

// Runs a download at a terminal with Ctrl-C at the first look for interrupts after the text has
// been shown.
class ZepctlCancel : public ::testing::Test {
 protected:
  ZepctlCancel() { image_ = zepctl_.WriteImage("model51-e1-1mbit.bin"); }

  int Download(const std::string& until, const std::vector<std::string>& options = {}) {
    bool came = false;
    zepctl_.console.interrupts = [this, until, came](int) mutable {
      if (came || zepctl_.console.err.find(until) == std::string::npos) return 0;
      came = true;
      return 1;
    };
    std::vector<std::string> words = {"-p", "sim:conventional", "firmware", "write", image_};
    words.insert(words.end(), options.begin(), options.end());
    return zepctl_.Run(words);
  }
  std::size_t Blocks() { return zepctl_.Radio("sim:conventional").Counts().blocks_written; }

  static constexpr const char* kQuestion =
      "This action will leave the radio in an undefined state. Cancel? [y/N] ";
  static constexpr const char* kTransfer = "Downloading radio firmware";
  Zepctl zepctl_;
  std::string image_;
};

TEST_F(ZepctlCancel, AsksAtATerminalAndGoesOnWithNo) {
  zepctl_.console.is_terminal = true;
  zepctl_.console.Type("");  // the radio is in bootstrap mode
  zepctl_.console.Type("n");
  EXPECT_EQ(Download(kTransfer), 0);
  EXPECT_EQ(Count(zepctl_.Err(), std::string(kQuestion) + "n\n"), 1);
  EXPECT_EQ(Blocks(), 717U);
}

TEST_F(ZepctlCancel, StopsWithYesOrASecondCtrlC) {
  zepctl_.console.is_terminal = true;
  zepctl_.console.Type("");
  zepctl_.console.TypeCtrlC();
  EXPECT_EQ(Download(kTransfer), 130);
  EXPECT_THAT(zepctl_.Err(), HasSubstr(kQuestion));
  EXPECT_LT(Blocks(), 717U);
  EXPECT_THAT(zepctl_.Out(), HasSubstr("failed"));
}

TEST_F(ZepctlCancel, WithoutATerminalASignalMeansYes) {
  for (const std::string option : {"--quiet", "--no"}) {
    SCOPED_TRACE(option);
    EXPECT_EQ(Download("Port 1: Active, E1", {option == "--quiet" ? "--json" : option}), 130);
    EXPECT_THAT(zepctl_.Err(), HasSubstr(std::string(kQuestion) + "yes\n"));
  }
}

TEST_F(ZepctlCancel, IsKeptWhileTheFirstLoaderGoesOut) {
  EXPECT_EQ(Download("Please put radio in Bootstrap mode."), 130);
  EXPECT_EQ(Count(zepctl_.Err(), kQuestion), 1);
  // All of the first loader has gone out, and nothing of the second.
  const std::string first = Zepctl::Text(simulator::SampleFirstLoader());
  EXPECT_THAT(zepctl_.ToRadios(), EndsWith("\xFF" + first));
}

TEST_F(ZepctlCancel, AtThePromptForBootstrapModeSendsNothing) {
  zepctl_.console.is_terminal = true;
  zepctl_.console.TypeCtrlC();
  EXPECT_EQ(Download("never"), 130);
  EXPECT_THAT(zepctl_.Err(), HasSubstr("Please put radio in Bootstrap mode.\n"
                                       "Press Enter when that is done, or Ctrl-C to cancel."));
  EXPECT_EQ(Blocks(), 0U);
  EXPECT_THAT(zepctl_.ToRadios(), Not(HasSubstr(Zepctl::Text(simulator::SampleFirstLoader()))));
}

TEST(ZepctlProgress, IsABarOnATerminalRedrawnTenTimesASecondAtMost) {
  Zepctl zepctl;
  zepctl.console.is_terminal = true;
  const std::string image = zepctl.WriteImage("model51-e1-1mbit.bin");
  EXPECT_EQ(zepctl.Run({"-p", "sim:conventional", "firmware", "write", image, "--yes"}), 0);
  const double seconds = std::chrono::duration<double>(zepctl.clock.Now()).count();
  const int drawn = Count(zepctl.Err(), "\r");
  EXPECT_GT(seconds, 90);  // 717 blocks of 128 bytes at 9600 baud
  EXPECT_GT(drawn, seconds);
  EXPECT_LT(drawn, 11 * seconds);
  EXPECT_THAT(zepctl.Err(), HasSubstr("\rDownloading radio firmware  [====="));
  // A line of 9600 baud carries 960 bytes a second.
  EXPECT_THAT(zepctl.Err(), ContainsRegex("   50 %  95[0-9] B/s  0:4[0-9] left"));
  EXPECT_THAT(zepctl.Err(), ContainsRegex("   99 %  95[0-9] B/s  in 1:3[0-9]\n"));
  for (std::size_t at = 0, end = 0; end != std::string::npos; at = end + 1) {
    end = zepctl.Err().find_first_of("\r\n", at);
    EXPECT_LT(DisplayWidth(zepctl.Err().substr(at, end - at)), 80);
  }
}

TEST(ZepctlProgress, IsPlainLinesElsewhereAndNothingWhenQuiet) {
  Zepctl zepctl;
  const std::string image = zepctl.WriteImage("model51-e1-1mbit.bin");
  EXPECT_EQ(zepctl.Run({"-p", "sim:conventional", "firmware", "write", image}), 0);
  EXPECT_THAT(zepctl.Err(), Not(HasSubstr("\r")));
  EXPECT_THAT(zepctl.Err(), HasSubstr("\nDownloading radio firmware\n"
                                      "Downloading radio firmware  10 %  "));
  EXPECT_EQ(Count(zepctl.Err(), "Downloading radio firmware"), 11);
  EXPECT_EQ(Count(zepctl.Err(), "Port "), 2);  // when it is opened, and when its radio is known

  EXPECT_EQ(zepctl.Run({"-p", "sim:conventional", "firmware", "write", image, "--quiet"}), 0);
  EXPECT_EQ(zepctl.Err(),
            "Please put radio in Bootstrap mode.\n"
            "Completed downloading firmware to radio on communication port 1\n");
}

TEST(TextLayout, CountsColumnsAndBreaksLinesBetweenWords) {
  EXPECT_EQ(DisplayWidth("abc"), 3);
  EXPECT_EQ(DisplayWidth("é电台。"), 7);
  EXPECT_EQ(PadTo("电", 4) + "|", "电  |");
  EXPECT_EQ(CutTo("Downloading", 8), "Downl...");
  EXPECT_EQ(CutTo("电台电台", 7), "电台...");
  EXPECT_EQ(Wrap("one two  three\nfour five", 8, 2), "one two\n  three\nfour\n  five");
  EXPECT_EQ(Wrap("Cancel? [y/N] ", 20), "Cancel? [y/N] ");
  Table table({"Name", "Bytes"}, {Table::Align::kLeft, Table::Align::kRight});
  table.AddRow({"电台", "7"});
  table.AddRow({"a", "1024"});
  EXPECT_EQ(table.Text(), "Name  Bytes\n电台      7\na      1024\n");
}

}  // namespace
}  // namespace zep::cli
