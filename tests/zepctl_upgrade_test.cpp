// zepctl's upgrade, conversions and comparison of files.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/radio_text.h"
#include "tests/zepctl_testing.h"

namespace zep::cli {
namespace {

using ::testing::HasSubstr;
using testing::Zepctl;

const std::string kRadio = "sim:torvik,unpaced";

// Factory data of the radio, and default settings, in the folder "FOLDER".
void WriteData(const Zepctl& zepctl) {
  simulator::RadioProfile profile = *simulator::ParseRadio(kRadio).value;
  zepctl.folder.Write("old.ops", simulator::DataFileText(profile));
  zepctl.folder.Write("old.ocs", simulator::CalibrationFileText(profile));
  profile.serial_number = 0;
  zepctl.folder.Write("default.ops", simulator::DataFileText(profile));
}

TEST(ZepctlUpgrade, GivesARadioNewFirmwareAndItsData) {
  Zepctl zepctl;
  WriteData(zepctl);
  zepctl.WriteImage("PP11PhaseI.bin");
  const std::vector<std::string> words = {
      "-p", kRadio, "upgrade", "--defaults", zepctl.folder.Path("default.ops"), "--string-table"};
  const auto run = [&](const std::string& family) {
    std::vector<std::string> all = words;
    all.push_back(family);
    return zepctl.Run(all);
  };
  EXPECT_EQ(run("ZEP"), 1);
  EXPECT_THAT(zepctl.Err(), HasSubstr("Unsupported firmware version in radio."));
  EXPECT_EQ(run("Torvik"), 0);
  EXPECT_EQ(zepctl.Out(),
            "Radio 10000125 (Torvik 1100) now has firmware 0126, database 0405 and calibration "
            "0103. Its former data is in FOLDER/database/10000125v0400.ops and "
            "FOLDER/calibration/10000125v0100.ocs.\n");
  EXPECT_EQ(zepctl.Radio(kRadio).Data().Find(1, 0x1E)->data.size(), 625U);
  EXPECT_EQ(run("Torvik"), 0);
  EXPECT_THAT(zepctl.Err(), HasSubstr("Firmware already up-to-date."));
}

TEST(ZepctlConvert, ConvertsFilesOrShowsWhatWouldChange) {
  struct Row {
    std::vector<std::string> words;  // "F/" is the folder
    int status;
    std::string out;
    bool made = false;
  };
  for (const Row& row : std::vector<Row>{
           {{"personality", "F/old.ops", "F/new", "--to", "405", "--defaults", "F/default.ops"},
            0,
            "FOLDER/old.ops is converted from version 400 to 405: FOLDER/new.\n",
            true},
           {{"personality", "F/old.ops", "F/new", "--from", "4.02", "--to", "4.03", "--defaults",
             "F/default.ops", "--dry-run"},
            0,
            "the new database version\nNothing was written.\n"},
           {{"personality", "F/old.ops", "F/new", "--to", "new"}, 2, ""},
           {{"personality", "F/old.ops", "F/new", "--to", "406"}, 1, ""},
           {{"personality", "F/none.ops", "F/new", "--to", "405"}, 6, ""},
           {{"calibration", "F/old.ocs", "F/new", "--to", "103"},
            0,
            "from version 100 to 103",
            true},
           {{"calibration", "F/old.ocs", "F/new", "--to", "101", "--dry-run"},
            0,
            "116   -       3840          100 -> 101\n"},
           {{"calibration", "F/old.ocs", "F/new", "--from", "102", "--to", "103"}, 6, ""},
           {{"calibration", "F/old.ops", "F/new", "--from", "100", "--to", "101"}, 6, ""},
       }) {
    SCOPED_TRACE(::testing::PrintToString(row.words));
    Zepctl zepctl;
    WriteData(zepctl);
    std::vector<std::string> words = {"convert"};
    for (std::string word : row.words) {
      if (word.starts_with("F/")) word = zepctl.folder.Path(word.substr(2));
      words.push_back(word);
    }
    EXPECT_EQ(zepctl.Run(words), row.status);
    EXPECT_THAT(zepctl.Out(), HasSubstr(row.out));
    EXPECT_EQ(zepctl.folder.Read("new").has_value(), row.made);
    if (!row.made) continue;
    EXPECT_EQ(zepctl.Run({"data", "check", words[3]}), 0);
    EXPECT_EQ(zepctl.Run({"data", "diff", words[2], words[3]}), 1);
    EXPECT_THAT(zepctl.Out(), HasSubstr("Network  Item  Byte"));
    EXPECT_EQ(zepctl.Run({"data", "diff", words[3], words[3]}), 0);
    EXPECT_EQ(zepctl.Out(), "The files hold the same data.\n");
  }
}

}  // namespace
}  // namespace zep::cli
