// zepctl's upgrade, conversions and comparison of files.
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/radio_text.h"
#include "tests/upgrade_testing.h"
#include "tests/zepctl_testing.h"

namespace zep::cli {
namespace {

using ::testing::HasSubstr;
using testing::Zepctl;

const std::string kRadio = "sim:torvik,unpaced";

// zepctl with factory data of the radio and default settings in its folder, which is "F/" in words
// on a line.
struct Bench : Zepctl {
  Bench() {
    simulator::RadioProfile profile = *simulator::ParseRadio(kRadio).value;
    folder.Write("old.ops", simulator::DataFileText(profile));
    folder.Write("old.ocs", simulator::CalibrationFileText(profile));
    profile.serial_number = 0;
    folder.Write("default.ops", simulator::DataFileText(profile));
    std::filesystem::rename(WriteImage("PP11PhaseI.bin"), folder.Path("my.bin"));
  }
  int RunLine(const std::string& line) {
    std::vector<std::string> arguments;
    std::istringstream words(line);
    for (std::string word; words >> word;)
      arguments.push_back(word.starts_with("F/") ? folder.Path(word.substr(2)) : word);
    return Run(arguments);
  }
};

TEST(ZepctlUpgrade, GivesARadioNewFirmwareAndItsData) {
  Bench bench;
  const std::string line =
      "-p " + kRadio + " upgrade --image F/my.bin --defaults F/default.ops --string-table ";
  EXPECT_EQ(bench.RunLine(line + "ZEP"), 1);
  EXPECT_THAT(bench.Err(), HasSubstr("Unsupported firmware version in radio."));
  EXPECT_EQ(bench.RunLine(line + "Torvik"), 0);
  EXPECT_EQ(bench.Out(),
            "Radio 10000125 (Torvik 1100) now has firmware 0126, database 0405 and calibration "
            "0103. Its former data is in FOLDER/database/10000125v0400.ops and "
            "FOLDER/calibration/10000125v0100.ocs.\n");
  EXPECT_EQ(bench.Radio(kRadio).Data().Find(1, 0x1E)->data.size(), 625U);
  EXPECT_EQ(bench.RunLine(line + "Torvik"), 0);
  EXPECT_THAT(bench.Err(), HasSubstr("Firmware already up-to-date."));
}

TEST(ZepctlConvert, ConvertsFilesOrShowsWhatWouldChange) {
  // The line behind "convert", the exit status, a part of the output, whether the file is made.
  for (const char* row :
       {"personality F/old.ops F/new --to 405 --defaults F/default.ops|0|"
        "FOLDER/old.ops is converted from version 400 to 405: FOLDER/new.|made",
        "personality F/old.ops F/new --from 4.02 --to 4.03 --defaults F/default.ops --dry-run "
        "--yes|0|"
        "the new database version\nNothing was written.\n|",
        "personality F/old.ops F/new --from 4.02 --to 4.03 --defaults F/default.ops|1||",
        "personality F/old.ocs F/new --to 405 --defaults F/default.ops|1||",
        "personality F/old.ops F/old.ops --to 405 --defaults F/default.ops --yes|1||",
        "calibration F/old.ocs F/old.ocs --to 103 --yes|1||",
        "calibration F/old.ocs F/new --to 103x|2||", "personality F/old.ops F/new --to new|2||",
        "personality F/old.ops F/new --to 406|1||", "personality F/none.ops F/new --to 405|6||",
        "calibration F/old.ocs F/new --to 103|0|from version 100 to 103|made",
        "calibration F/old.ocs F/new --to 101 --dry-run|0|-       3840          100 -> 101\n|",
        "calibration F/old.ocs F/new --from 102 --to 103|6||",
        "calibration F/old.ops F/new --from 100 --to 101|6||"}) {
    SCOPED_TRACE(row);
    const std::vector<std::string> fields = testing::Fields(row);
    Bench bench;
    EXPECT_EQ(std::to_string(bench.RunLine("convert " + fields[0])), fields[1]);
    EXPECT_THAT(bench.Out(), HasSubstr(fields[2]));
    EXPECT_EQ(bench.folder.Read("new").has_value(), fields[3] == "made");
    if (fields[3].empty()) continue;
    EXPECT_EQ(bench.RunLine("data check F/new"), 0);
    const bool personality = fields[0][0] == 'p';
    EXPECT_EQ(
        bench.RunLine(personality ? "data diff F/old.ops F/new" : "data diff F/old.ocs F/new"), 1);
    EXPECT_THAT(bench.Out(), HasSubstr("Network  Item  Byte"));
    EXPECT_EQ(bench.RunLine("data diff F/new F/new"), 0);
    EXPECT_EQ(bench.Out(), "The files hold the same data.\n");
  }
}

}  // namespace
}  // namespace zep::cli
