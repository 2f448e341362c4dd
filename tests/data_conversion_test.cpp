// Saved data files and their conversion: which files are used, and what is logged and told.
#include "upgrade/data_conversion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/testing.h"
#include "tests/upgrade_testing.h"

namespace zep::upgrade {
namespace {

using testing::DataFileOf;
using ::testing::EndsWith;
using testing::Fields;
using testing::Identity;
using testing::Lines;
using testing::Record;

class DataConversion : public ::testing::Test {
 protected:
  std::string LogText() {
    std::string text = test_.folder.Read("upgrade.log").value_or("");
    const std::string time = "2026-11-21 07:05:33  ";
    for (std::size_t at; (at = text.find(time)) != std::string::npos;) text.erase(at, time.size());
    return text;
  }
  // Saved data of version 4.02 and default settings.
  void WriteFiles() {
    test_.folder.Write("default.ops", DataFileOf({Identity("0402"), Record("150001", "80")}));
    test_.folder.Write("saved.ops", DataFileOf({Identity("0402"), Record("050003", "010203")}));
  }
  // The converted file; nothing when it could not be converted.
  std::optional<std::string> Convert(const std::string& from, const std::string& to) {
    const auto converted =
        ConvertPersonalityData(test_.session, log_,
                               {.old_version = from,
                                .new_version = to,
                                .saved = *radiodb::ReadDataFile(test_.folder.Path("saved.ops")),
                                .converted_file = test_.folder.Path("upgrade/saved.ops"),
                                .default_file = test_.folder.Path("default.ops")});
    if (!converted) return std::nullopt;
    return converted->file.Print();
  }

  testing::TestSession test_;
  UpgradeLog log_{test_.session, test_.folder.Path("upgrade.log")};
};

TEST_F(DataConversion, LogsWhatItDoesAndFinds) {
  WriteFiles();
  const auto file = [](const std::string& version) {
    return Lines({"***", "ZEP Data File",
                  "Saved with the ZEP Download and Configuration Application Version 1.0.0", "###",
                  "---", Identity(version), Record("050003", "010203")});
  };
  const std::string read = "Default settings read from " + test_.folder.Path("default.ops") + "\n";
  // Old and new version, what is logged around the reading of the default settings.
  for (const char* row : {"0402|0402|v402 -> v402|Personality data is up-to-date",
                          "0402|0205|v402 -> v205|Personality data version is now v402",
                          "0403|0405|v403 -> v405|Personality data version is now v405",
                          "0401|0401|v401 -> v401|Personality data is up-to-date"}) {
    const std::vector<std::string> fields = Fields(row);
    const bool is_new = fields[0] != fields[1];
    EXPECT_EQ(Convert(fields[0], fields[1]), file(is_new ? fields[1] : "0402")) << row;
    EXPECT_THAT(LogText(), EndsWith("Upgrading personality data " + fields[2] + "\n" + read +
                                    fields[3] + "\n"));
  }
  EXPECT_TRUE(Convert("0401", "0402"));
  EXPECT_THAT(LogText(),
              EndsWith(read + "Item 05 of the default settings has no byte 4, 00 is used\n"
                              "Item 05 of the saved data has no byte 4 and is kept as it is\n"
                              "Item 07 of the default settings has no byte 1, 00 is used\n"
                              "Item 07 of the saved data has no byte 1 and is kept as it is\n"
                              "Personality data version is now v402\n"));
  EXPECT_EQ(test_.user.Boxes(), "");
}

TEST_F(DataConversion, FailsWithOneLineAndNoFile) {
  // What is wrong, new version, a record of the saved file, the log's last line.
  for (const char* row : {"too old|0204|050003010203F2|v204 is not supported",
                          "saved file cut off|0405|0500|Could not locate FOLDER/"}) {
    const std::vector<std::string> fields = Fields(row);
    SCOPED_TRACE(fields[0]);
    WriteFiles();
    test_.folder.Write("saved.ops", DataFileOf({Identity("0402"), fields[2]}));
    EXPECT_FALSE(Convert("0402", fields[1]));
    EXPECT_THAT(test_.folder.Renamed(LogText(), "FOLDER"), EndsWith("\n" + fields[3] + "\n"));
  }
}

TEST_F(DataConversion, FindsTheDefaultSettings) {
  const auto set = [&](int type, const std::string& name, const std::string& value) {
    test_.settings.AppSaveUserSetting(services::AppType{type}, name, value);
  };
  set(2, "ApplicationPath", test_.folder.Path("suite"));
  set(2, "Application", "prog/zepprog");
  test_.folder.Write("mine/default.ops", "");
  test_.folder.Write("mine/other.ops", "");
  EXPECT_EQ(FindDefaultSettings(test_.session), test_.folder.Path("suite/prog/default.ops"));
  for (const char* row : {"mine/other.ops|mine/other.ops", "mine|mine/default.ops",
                          "mine/gone.ops|suite/prog/default.ops"}) {
    set(1, "DefaultDataPath", test_.folder.Path(Fields(row)[0]));
    EXPECT_EQ(FindDefaultSettings(test_.session), test_.folder.Path(Fields(row)[1]));
  }
}

TEST_F(DataConversion, TellsWhyCalibrationIsNotConverted) {
  test_.folder.Write("a.ops", DataFileOf({Identity("0402"), Record("2C0002", "0102")}));
  const auto saved = ReadCheckedDataFile(test_.session, test_.folder.Path("a.ops"));
  for (const auto& [to, box] :
       {std::pair(101, "information Conversion Error: 100 -> 101 -> OK\n"),
        std::pair(104, "information Conversion Error: 100 -> 101 -> OK\n"),
        std::pair(99,
                  "information [Conversion Error] Calibration data of version 100 cannot be "
                  "converted to version 99: there are the versions 100 to 103. Please use a "
                  "newer version of this application. -> OK\n")}) {
    const auto converted = ConvertCalibrationFile(test_.session, {100, to, "x", {}, false}, *saved);
    ASSERT_FALSE(converted);
    EXPECT_EQ(converted.error(), services::Failure::kFile);
    EXPECT_EQ(test_.user.TakeBoxes(), box);
  }
}

}  // namespace
}  // namespace zep::upgrade
