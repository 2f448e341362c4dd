#include "upgrade/upgrade_notes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/disk_watch.h"
#include "tests/upgrade_bench.h"
#include "upgrade/saved_data.h"

namespace zep::upgrade {
namespace {

using ::testing::ContainsRegex;
using testing::DiskWatch;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(UpgradeNotes, SavesNothingWhereTheConvertedDataGoes) {
  for (const char* setting : {"MainDBLocation", "CalibrationDBLocation"}) {
    UpgradeBench bench;
    bench.settings.AppSaveUserSetting(services::AppType::kDownload, setting,
                                      bench.folder.Path("database/../upgrade"));
    EXPECT_EQ(bench.Upgrade(), "failed 5");
    EXPECT_THAT(bench.Boxes(), HasSubstr("The radio's data cannot be saved in upgrade/: "));
    EXPECT_FALSE(bench.Flashed());
  }
}

TEST(UpgradeNotes, TellsOfAnUnfinishedRunAndKeepsItsData) {
  UpgradeBench bench("",
                     "write database/10000125v0400.ops old data;"
                     "write calibration/10000125v0100.ocs old calibration;"
                     "write calibration/10000125v0100.ocs.unfinished older");
  const std::string folder = bench.folder.Path("");
  bench.folder.Write("upgrade/gone.unfinished", folder + "1.ops\n" + folder + "1.ocs");
  bench.folder.Write("upgrade/unplugged.unfinished", folder + "1.ops\n" + folder + "stick/1.ocs");
  bench.folder.Write("upgrade/unreadable.unfinished/file", "");
  bench.folder.Write("upgrade/10000125v0400.ops.unfinished",
                     bench.folder.Path(kDataFile) + "\n" + bench.folder.Path(kCalibrationFile));
  // That of a run in another program, which goes on.
  bench.folder.Write("upgrade/running.unfinished", bench.folder.Path("database/other.ops"));
  platform::LockFile other_run;
  ASSERT_EQ(other_run.TryAcquire(bench.folder.Path("upgrade/running.unfinished.lock")),
            platform::LockState::kAcquired);
  const std::string defaults = *bench.folder.Read("default.ops");
  // A run that ends before the download leaves the note as it was.
  for (const bool succeeds : {false, true}) {
    bench.user.TakeBoxes();
    bench.Do("remove default.ops;yes Database file for this;yes Calibration file for this");
    if (succeeds) bench.folder.Write("default.ops", defaults);
    if (!succeeds) bench.Do("no Cannot find default.ops");
    EXPECT_EQ(bench.Upgrade(), succeeds ? "succeeded 0" : "failed 5");
    EXPECT_THAT(bench.Boxes(),
                StartsWith("information An earlier upgrade did not finish. The data of that radio "
                           "is in database/10000125v0400.ops" +
                           std::string(succeeds ? ".unfinished" : "") + " and calibration/"));
    // The data was copied, told of, and not put back.
    EXPECT_EQ(bench.Bare(bench.folder.Read("upgrade/10000125v0400.ops.unfinished").value_or("")),
              "database/10000125v0400.ops.unfinished\n"
              "calibration/10000125v0100.ocs.unfinished2\n\n\n");
    EXPECT_EQ(
        bench.Boxes().find("Please keep the copies:\n"
                           "database/10000125v0400.ops.unfinished\n"
                           "calibration/10000125v0100.ocs.unfinished2 -> OK") == std::string::npos,
        succeeds);
    EXPECT_FALSE(bench.folder.Read("upgrade/10000125v0400.ops.unfinished2")) << "its own";
  }
  EXPECT_EQ(bench.folder.Read("database/10000125v0400.ops.unfinished"), "old data");
  EXPECT_EQ(bench.folder.Read("calibration/10000125v0100.ocs.unfinished"), "older");
  EXPECT_EQ(bench.folder.Read("calibration/10000125v0100.ocs.unfinished2"), "old calibration");
  EXPECT_THAT(bench.Boxes(), HasSubstr("The data of that radio is in 1.ops and stick/1.ocs."));
  EXPECT_THAT(bench.Boxes(), HasSubstr("upgrade/unreadable.unfinished"));
  EXPECT_THAT(bench.Log() + bench.Boxes(), ::testing::Not(HasSubstr("running")));
  EXPECT_FALSE(bench.folder.Read("upgrade/10000125v0400.ops.unfinished2.lock"));
}

TEST(UpgradeNotes, WritesOverNoFileOfARunThatGoesOn) {
  UpgradeBench bench("", "write database/10000125v0400.ops its data");
  bench.folder.Write("upgrade/running.unfinished", bench.folder.Path(kDataFile));
  platform::LockFile other_run;
  other_run.TryAcquire(bench.folder.Path("upgrade/running.unfinished.lock"));
  EXPECT_EQ(bench.Upgrade(), "failed 1");
  EXPECT_THAT(bench.Boxes(),
              StartsWith("critical An upgrade that is running uses " + std::string(kDataFile)));
  EXPECT_EQ(bench.folder.Read(kDataFile), "its data");
  EXPECT_FALSE(bench.Flashed());
}

TEST(UpgradeNotes, EndsTheNoteOfAnUnfinishedRunWhoseDataIsBackInTheRadio) {
  UpgradeBench bench(",fault=silent@block:100");
  EXPECT_EQ(bench.Upgrade(), "comms error 3");
  EXPECT_TRUE(bench.Note());
  UpgradeBench again("", "yes Database file for this;yes Calibration file for this");
  std::string note;
  for (const char* file : {kDataFile, kCalibrationFile})
    note += again.folder.Write(file, *bench.folder.Read(file)) + "\n";
  again.folder.Write("upgrade/10000125v0400.ops.unfinished", note);
  // Another radio may hold the same data.
  again.folder.Write("upgrade/10000126v0400.ops.unfinished",
                     again.folder.Write("10000126v0400.ops", *bench.folder.Read(kDataFile)));
  EXPECT_EQ(again.Upgrade(), "succeeded 0");
  EXPECT_FALSE(again.Note());
  EXPECT_TRUE(again.folder.Read("upgrade/10000126v0400.ops.unfinished"));
}

TEST(SavedData, IsReliedOnOnlyWhenItIsWhatTheRadioSent) {
  // What is wrong, a part of the file as a regular expression, what it becomes, what is said of it.
  for (const std::string row :
       {"nothing|ops|none||", "cut off|ops|.{20}\r\n$||is damaged", "empty|ocs|[^]*||is damaged",
        "a record less|ops|\n070004.*\r|\n|of 107 records",
        "a wrong digit|ops|\n070004|\n070104|is damaged",
        "another model|ops|\n0000115A.*|\n0000115A45502D4831323130303430303030303043|does not hold",
        "another radio|ocs|00007D3B\r\n2C|00007E3A\r\n2C|does not hold"}) {
    const std::vector<std::string> fields = testing::Fields(row);
    SCOPED_TRACE(fields[0]);
    UpgradeBench bench;
    bench.Read();
    const char* file = fields[1] == "ocs" ? kCalibrationFile : kDataFile;
    bench.folder.Write(file, std::regex_replace(bench.folder.Read(file).value_or(""),
                                                std::regex(fields[2]), fields[3]));
    const bool relied_on = fields[4].empty();
    // The note is to be found from another working folder, too.
    SavedData saved{std::filesystem::relative(bench.db.data_file), bench.db.calibration_file};
    EXPECT_EQ(SecureSavedData(bench.db, saved), relied_on);
    EXPECT_EQ(bench.folder.Read("upgrade/10000125v0400.ops.unfinished").value_or(""),
              relied_on ? bench.db.data_file + "\n" + bench.db.calibration_file + "\n\n\n" : "");
    EXPECT_THAT(bench.Boxes(), HasSubstr(fields[4]));
    EXPECT_THAT(bench.Boxes(), HasSubstr(relied_on ? "" : "so the radio keeps its firmware"));
  }
}

TEST(SavedData, IsNotReliedOnWhenTheRadioNowSaysOtherwise) {
  UpgradeBench bench;
  bench.Read();
  bench.db.identity.calibration_version = "0101";
  SavedData saved{bench.db.data_file, bench.db.calibration_file};
  EXPECT_FALSE(SecureSavedData(bench.db, saved));
  EXPECT_THAT(bench.Boxes(), HasSubstr("The radio, asked once more, gives other answers"));
}

TEST(SavedData, MayHoldItem0OfEachNetwork) {
  UpgradeBench bench(",model=12,networks=2");
  bench.Factory(0, 2).use = simulator::ItemUse::kReadOnly;
  bench.Read();
  EXPECT_THAT(bench.folder.Read("database/10000125v0400.omn").value_or(""), HasSubstr("~~~\r\n00"));
  SavedData saved{bench.db.data_file, bench.db.calibration_file};
  EXPECT_TRUE(SecureSavedData(bench.db, saved));
}

// What a job relies on later, or tells the user to be saved, is on the disk by then.

// All bytes of the file, under whatever name they were written.
std::string Synced(const std::string& path) {
  return "sync " + std::filesystem::path(path).filename().string() + "[^ ]* " +
         std::to_string(std::filesystem::file_size(path)) + " bytes\n";
}

TEST(OnDisk, SavedDataIsThereWithItsNameBeforeTheFlashIsTouched) {
  UpgradeBench bench;
  const DiskWatch disk;
  std::string calls;
  bench.upgrade_view.on_step = [&](const std::string& step) {
    if (step == "transfer" && calls.empty()) calls = DiskWatch::Take();
  };
  EXPECT_EQ(bench.Upgrade(), "succeeded 0");
  for (const char* file : {kDataFile, kCalibrationFile}) {
    EXPECT_THAT(calls,
                ContainsRegex(Synced(bench.folder.Path(file)) + "rename [^\n]*\nsync folder\n"));
  }
  EXPECT_THAT(calls, ContainsRegex("rename [^\n]* 10000125v0400.ops.unfinished\nsync folder\n"));
}

TEST(OnDisk, WhatIsReadFromARadioIsThereWhenItsJobEnds) {
  UpgradeBench bench(",flash=AT29C020");
  const DiskWatch disk;
  bench.Read();
  const std::string calls = DiskWatch::Take();
  for (const char* file : {kDataFile, kCalibrationFile})
    EXPECT_THAT(calls, ContainsRegex(Synced(bench.folder.Path(file))));

  firmware::ChooseImageFile(bench.firmware.image, bench.folder.Path("flash.bin"));
  EXPECT_EQ(bench.Run({}, link::Transfer::kRead), "1000 1446 0");
  EXPECT_THAT(DiskWatch::Take(), ContainsRegex(Synced(bench.folder.Path("flash.bin"))));
}

}  // namespace
}  // namespace zep::upgrade
