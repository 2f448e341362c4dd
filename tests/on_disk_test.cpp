// What a job relies on later, or tells the user to be saved, is on the disk by then.
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/disk_watch.h"
#include "tests/upgrade_bench.h"

namespace zep::upgrade {
namespace {

using ::testing::ContainsRegex;
using testing::DiskWatch;

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
  radiodb::RadioDb db(bench.job, bench.last_radio);
  db.transfer_kind = radiodb::TransferKind::kBoth;
  ASSERT_TRUE(ReadRadio(db, bench.view).Done());
  const std::string calls = DiskWatch::Take();
  for (const char* file : {kDataFile, kCalibrationFile})
    EXPECT_THAT(calls, ContainsRegex(Synced(bench.folder.Path(file))));

  firmware::ChooseImageFile(bench.firmware.image, bench.folder.Path("flash.bin"));
  EXPECT_EQ(bench.Run({}, link::Transfer::kRead), "1000 1446 0");
  EXPECT_THAT(DiskWatch::Take(), ContainsRegex(Synced(bench.folder.Path("flash.bin"))));
}

}  // namespace
}  // namespace zep::upgrade
