#include "platform/settings_hive.h"

#include <thread>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/lock_file.h"
#include "tests/platform_testing.h"
#include "tests/testing.h"

namespace zep::platform {
namespace {

using namespace std::string_literals;
using testing::Say;

const std::string kKey = "Software\\Vorn Electronics Ltd\\ZEP\\Download";
const std::string kRoot = "Software\\Vorn Electronics Ltd\\ZEP";

class SettingsFile : public ::testing::Test {
 protected:
  std::string Read(std::string_view key, std::string_view name) const {
    return MakeFileHive(path_)->Read(key, name).value_or("(nothing)");
  }
  std::string Write(std::string_view key, std::string_view name, std::string_view value) const {
    return Say(MakeFileHive(path_)->Write(key, name, value));
  }
  std::string File() const { return folder_.Read("settings.ini").value_or("(no file)"); }

  testing::TempFolder folder_;
  std::string path_ = folder_.Path("settings.ini");
};

TEST_F(SettingsFile, EveryTextComesBackAndStandsInTheFileReadably) {
  const struct {
    std::string name, value, in_file;
  } rows[] = {
      {"path", "\\database\\", "\\\\database\\\\"},
      {"looks like an escape", "\\x41", "\\\\x41"},
      {"blanks", "  two  words ", "\\x20 two  words\\x20"},
      {"line ends", "a\r\nb\n", "a\\x0D\\x0Ab\\x0A"},
      {"nul", std::string("a\0b", 3), "a\\x00b"},
      {"chinese", "数据/é", "数据/é"},
      {"no utf-8", "\xFF\xC3", "\\xFF\\xC3"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(Write(kKey, "Value", row.value), "ok");
    EXPECT_EQ(Read(kKey, "Value"), row.value);
    EXPECT_EQ(File(), "[" + kKey + "]\nValue=" + row.in_file + "\n");
  }
}

TEST_F(SettingsFile, WritingKeepsCommentsOrderAndTheValuesOfOthers) {
  folder_.Write("settings.ini",
                "; set up by hand\r\n\r\n[" + kRoot + "]\r\n UILanguage = 3 \r\n\r\n[" + kKey +
                    "]\r\n# the lead on the left\r\nCommPort1State=1\r\nDataFilePath=C:\\Data\r\n");
  EXPECT_EQ(Read(kRoot, "UILanguage"), "3");
  EXPECT_EQ(Read(kKey, "DataFilePath"), "C:\\Data") << "written by hand, without escapes";
  EXPECT_EQ(Write(kRoot, "uilanguage", "2"), "ok");
  EXPECT_EQ(Write(kRoot, "WWWSupport", "w"), "ok");
  EXPECT_EQ(Write("New", "Top", "7"), "ok");
  EXPECT_EQ(File(), "; set up by hand\r\n\r\n[" + kRoot +
                        "]\r\nuilanguage=2\r\nWWWSupport=w\r\n\r\n[" + kKey +
                        "]\r\n# the lead on the left\r\nCommPort1State=1\r\nDataFilePath=C:\\Data"
                        "\r\n\r\n[New]\r\nTop=7\r\n");
}

TEST_F(SettingsFile, DamageCostsNothingThatCanBeReadAndTheOriginalIsKept) {
  const std::string damaged =
      "[A]\nTop=1\nHei\0ght=2\nno value here\n=x\n[A\nLeft=3\n\0\0\0\0"s + std::string(4, '\0');
  folder_.Write("settings.ini", damaged);
  const std::unique_ptr<SettingsHive> hive = MakeFileHive(path_);
  EXPECT_EQ(Read("A", "Top") + Read("A", "Left"), "13");
  EXPECT_EQ(
      Say(hive->Problem()),
      "74 The settings file " + path_ +
          " is damaged. The settings that can be read are used; the damaged file is kept as " +
          path_ + ".damaged when a setting is saved.");
  EXPECT_EQ(folder_.Read("settings.ini.damaged"), std::nullopt);

  EXPECT_EQ(Write("A", "Top", "5"), "ok");
  EXPECT_EQ(folder_.Read("settings.ini.damaged"), damaged);
  EXPECT_EQ(File(), "[A]\nTop=5\nLeft=3\n");
  EXPECT_EQ(Say(hive->Problem()), "ok");

  folder_.Write("settings.ini", "damaged again");
  EXPECT_EQ(Write("A", "Top", "6"), "ok");
  EXPECT_EQ(folder_.Read("settings.ini.damaged"), damaged);
  EXPECT_EQ(folder_.Read("settings.ini.damaged2"), "damaged again");
}

TEST_F(SettingsFile, ProgramsThatWriteAtTheSameTimeKeepEachOthersValues) {
  std::vector<std::thread> programs;
  for (const std::string program : {"a", "b", "c", "d"}) {
    programs.emplace_back([this, program] {
      for (int i = 0; i < 10; ++i) EXPECT_EQ(Write(kKey, program + std::to_string(i), "1"), "ok");
    });
  }
  for (std::thread& program : programs) program.join();
  for (const std::string program : {"a", "b", "c", "d"}) {
    for (int i = 0; i < 10; ++i) EXPECT_EQ(Read(kKey, program + std::to_string(i)), "1");
  }
  EXPECT_EQ(ListFolder(folder_.Path()),
            (std::vector<std::string>{"settings.ini", "settings.ini.lock"}));
}

TEST_F(SettingsFile, AProgramThatHoldsTheLockForEverIsReported) {
  LockFile other;
  ASSERT_EQ(other.TryAcquire(path_ + ".lock"), LockState::kAcquired);
  EXPECT_EQ(Say(MakeFileHive(path_, std::chrono::milliseconds(5))->Write("A", "Top", "1")),
            "11 Another program has been saving settings in " + path_ +
                " for too long. Please close that program, then save the settings again.");
  EXPECT_EQ(File(), "(no file)");
}

}  // namespace
}  // namespace zep::platform
