// zepctl's firmware commands, its progress and its Ctrl-C while firmware is written.
#include <nlohmann/json.hpp>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/zepctl_testing.h"

namespace zep::cli {
namespace {

using nlohmann::json;
using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::Zepctl;

const std::string kFirst = "sim:conventional,unpaced";
const std::string kSecond = "sim:conventional,serial=10000002,unpaced";
const std::string kPaced = "sim:conventional,paced";
const std::string kFailing = "sim:conventional,unpaced,fault=silent@block:100";

int Count(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

// With an image.
struct ImageZepctl : Zepctl {
  std::string image = WriteImage("model51-e1-1mbit.bin");
  // Whether the radio's flash holds the file.
  bool Flashed(const std::string& device, std::string_view file = "model51-e1-1mbit.bin") {
    return Radio(device).FlashMatches(simulator::BytesOf(folder.Read(file).value_or("")));
  }
};

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
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", zepctl.folder.Path("short.bin")}), 6);
  EXPECT_THAT(zepctl.Err(), HasSubstr("ZEP-xx"));
  EXPECT_EQ(zepctl.ToRadios(), "");
}

TEST(ZepctlFirmware, WritesIntoEveryRadioAndTellsEachOutcome) {
  for (const auto& [way, most_seconds] : {std::pair{"--quiet", 230}, {"--at-once", 125}}) {
    SCOPED_TRACE(way);
    ImageZepctl zepctl;
    EXPECT_EQ(zepctl.Run({"-p", "sim:conventional", "-p", "3=" + kPaced, "firmware", "write",
                          zepctl.image, way}),
              0);
    EXPECT_EQ(zepctl.Out(),
              "Port  Device                  Micro  Flash             Result\n"
              "1     sim:conventional        E1     SST29EE020 2MBit  done\n"
              "3     sim:conventional,paced  E1     SST29EE020 2MBit  done\n");
    EXPECT_TRUE(zepctl.Flashed("sim:conventional"));
    EXPECT_TRUE(zepctl.Flashed(kPaced));
    EXPECT_LT(zepctl.clock.Now(), std::chrono::seconds(most_seconds));
  }
}

TEST(ZepctlFirmware, ARadioThatFailsDecidesTheStatusAndTheOthersGoOn) {
  const std::string config = "Invalid value in the Config Register of the radio on Com 1.";
  for (const auto& [radio, status, said] : std::vector<std::tuple<std::string, int, std::string>>{
           {kFailing, 4, "Port 1: Error Detected, E1, SST29EE020 2MBit\n"},
           {kFirst + ",config=43", 1, config}}) {
    ImageZepctl zepctl;
    EXPECT_EQ(zepctl.Run({"-p", radio, "-p", kSecond, "--json", "firmware", "write", zepctl.image}),
              status);
    const json result = json::parse(zepctl.Out());
    EXPECT_EQ(result["radios"][0]["result"], "failed");
    EXPECT_EQ(result["radios"][1]["result"], "done");
    EXPECT_TRUE(zepctl.Flashed(kSecond));
    EXPECT_THAT(zepctl.Err(), HasSubstr(said));
  }
}

TEST(ZepctlFirmware, SavesTheDataOfOneRadioAndWritesItBack) {
  ImageZepctl zepctl;
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", zepctl.image, "--save-data"}), 0);
  EXPECT_TRUE(zepctl.folder.Read("database/10000001v0405.ops"));
  const std::size_t written = zepctl.Radio(kFirst).Counts().records_written;
  EXPECT_GT(written, 50U);

  // A data file is programmed when the user says so; it is looked at before anything else.
  const std::string data = zepctl.folder.Path("database/10000001v0405.ops");
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", zepctl.image, "--data", data}), 2);
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", zepctl.image, "--data", data, "--no"}),
            1);
  EXPECT_EQ(zepctl.Radio(kFirst).Counts().records_written, written);
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", zepctl.image, "--data", data, "--yes"}),
            0);
  EXPECT_GT(zepctl.Radio(kFirst).Counts().records_written, written);
  const std::string sent = zepctl.ToRadios();
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "write", zepctl.image, "--data", data + "x"}), 6);
  EXPECT_EQ(zepctl.ToRadios(), sent);
}

TEST(ZepctlFirmware, ReadsTheFlashIntoAFileAndAsksBeforeItIsOverwritten) {
  ImageZepctl zepctl;
  const std::string file = zepctl.folder.Write("flash.bin", "old");
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "read", file}), 1);
  EXPECT_EQ(zepctl.folder.Read("flash.bin"), "old");
  EXPECT_EQ(zepctl.Run({"-p", kFirst, "firmware", "read", file, "--yes"}), 0);
  EXPECT_THAT(zepctl.Out(),
              EndsWith("The flash memory is saved in FOLDER/flash.bin (262144 bytes).\n"));
  EXPECT_TRUE(zepctl.Flashed(kFirst, "flash.bin"));
}

// Runs a download at a terminal with Ctrl-C at the first look for interrupts after the text has
// been shown.
class ZepctlCancel : public ::testing::Test {
 protected:
  int Download(const std::string& until, const std::vector<std::string>& options = {}) {
    bool came = false;
    zepctl_.console.interrupts = [this, until, came](int) mutable {
      if (zepctl_.console.err.find(kQuestion) == std::string::npos) asked_at_ = zepctl_.clock.Now();
      if (came || zepctl_.console.err.find(until) == std::string::npos) return 0;
      came = true;
      return 1;
    };
    std::vector<std::string> words = {"-p", "sim:conventional", "firmware", "write", zepctl_.image};
    words.insert(words.end(), options.begin(), options.end());
    return zepctl_.Run(words);
  }
  std::size_t Blocks() { return zepctl_.Radio("sim:conventional").Counts().blocks_written; }

  static constexpr const char* kQuestion =
      "This action will leave the radio in an undefined state. Cancel? [y/N] ";
  static constexpr const char* kTransfer = "Downloading radio firmware";
  ImageZepctl zepctl_;
  platform::Duration asked_at_{};  // the last turn before the question
};

TEST_F(ZepctlCancel, AsksAtATerminalAndGoesOnWithNoOrStopsWithASecondCtrlC) {
  zepctl_.console.is_terminal = true;
  zepctl_.console.Type("");  // the radio is in bootstrap mode
  zepctl_.console.Type("n");
  EXPECT_EQ(Download(kTransfer), 0);
  EXPECT_EQ(Count(zepctl_.Err(), std::string(kQuestion) + "n\n"), 1);
  EXPECT_EQ(Blocks(), 717U);

  zepctl_.console.Type("");
  zepctl_.console.TypeCtrlC();
  EXPECT_EQ(Download(kTransfer), 130);
  EXPECT_LT(Blocks(), 2 * 717U);
  EXPECT_THAT(zepctl_.Out(), HasSubstr("failed"));
}

TEST_F(ZepctlCancel, IsAskedForEvenWhereAllQuestionsAreAnsweredWithNo) {
  zepctl_.console.is_terminal = true;
  zepctl_.console.Type("");
  zepctl_.console.Type("y");
  EXPECT_EQ(Download(kTransfer, {"--no"}), 130);
}

TEST_F(ZepctlCancel, WithoutATerminalASignalMeansYes) {
  EXPECT_EQ(Download("Port 1: Active, E1", {"--no"}), 130);
  EXPECT_THAT(zepctl_.Err(), HasSubstr(std::string(kQuestion) + "yes\n"));
}

TEST_F(ZepctlCancel, IsKeptWhileTheFirstLoaderGoesOut) {
  EXPECT_EQ(Download("Please put radio in Bootstrap mode."), 130);
  EXPECT_EQ(Count(zepctl_.Err(), kQuestion), 1);
  // All of the first loader has gone out, in 2.1 s, and nothing of the second. The radios have had
  // two seconds to start the first one.
  EXPECT_GE(asked_at_, std::chrono::milliseconds(3900));
  EXPECT_THAT(zepctl_.ToRadios(), EndsWith("\xFF" + *zepctl_.folder.Read("bs.tsk")));
}

TEST_F(ZepctlCancel, AtThePromptForBootstrapModeSendsNothing) {
  zepctl_.console.is_terminal = true;
  zepctl_.console.TypeCtrlC();
  EXPECT_EQ(Download("never"), 130);
  EXPECT_EQ(Blocks(), 0U);
  EXPECT_THAT(zepctl_.ToRadios(), Not(HasSubstr(*zepctl_.folder.Read("bs.tsk"))));
}

TEST(ZepctlProgress, IsABarOnATerminalAndPlainLinesElsewhere) {
  ImageZepctl zepctl;
  EXPECT_EQ(zepctl.Run({"-p", "sim:conventional", "firmware", "write", zepctl.image}), 0);
  EXPECT_THAT(zepctl.Err(), Not(HasSubstr("\r")));
  EXPECT_EQ(Count(zepctl.Err(), "Downloading radio firmware"), 11);
  EXPECT_EQ(Count(zepctl.Err(), "Port 1"), 2);  // when it is opened, and when its radio is known

  zepctl.console.is_terminal = true;
  EXPECT_EQ(zepctl.Run({"-p", "sim:conventional", "firmware", "write", zepctl.image, "--yes"}), 0);
  EXPECT_LT(Count(zepctl.Err(), "\rWriting bootstrap file 2"), 30);  // ten a second
  // A line of 9600 baud carries 960 bytes a second.
  EXPECT_THAT(zepctl.Err(), ContainsRegex("   50 %  95[0-9] B/s  0:4[0-9] left"));
}

}  // namespace
}  // namespace zep::cli
