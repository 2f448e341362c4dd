#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/upgrade_bench.h"

namespace zep::upgrade {
namespace {

using services::Answer;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(AutomaticUpgrade, UpgradesARadioAndGivesItItsConvertedData) {
  UpgradeBench bench;
  const simulator::Personality before = bench.radio().Data();
  std::string saved;
  int looks = 0;
  bench.user.on_turn = [&](int turn) {
    if (turn % 20 != 0 || !bench.Saved()) return;
    const std::string files = bench.folder.Read(kDataFile).value_or("") +
                              bench.folder.Read(kCalibrationFile).value_or("");
    if (looks++ == 0) saved = files;
    EXPECT_TRUE(files == saved && bench.Note()) << "complete as soon as the log says so";
  };
  EXPECT_EQ(bench.Upgrade(), "succeeded 0");
  EXPECT_GT(looks, 10);
  EXPECT_THAT(saved, HasSubstr("\r\n2C0402"));
  EXPECT_EQ(bench.Log(),
            "Upgrade process started.|"
            "Locating firmware file|"
            "Firmware file selected: PP11PhaseI.bin|"
            "Saving personality and calibration data|"
            "Personality data saved as: 10000125v0400.ops|"
            "Calibration data saved as: 10000125v0100.ocs|"
            "Starting firmware download. Version is currently v0125|"
            "Firmware download complete. Version is now v0126|"
            "Upgrading personality data v400 -> v405|"
            "Default settings read from default.ops|"
            "Personality data version is now v405|"
            "Upgrading calibration data v100 -> v103|"
            "Calibration data version is now 103|"
            "Attempting to reprogram personality|"
            "Radio personality has been reprogrammed|"
            "The upgrade process has completed successfully|");
  EXPECT_EQ(bench.Boxes(),
            "information Please put radio in Bootstrap mode. -> OK\n"
            "information The upgrade process has completed successfully -> OK\n");
  EXPECT_EQ(bench.Bare(bench.upgrade_view.firmware_file), "PP11PhaseI.bin");
  EXPECT_TRUE(bench.Flashed());
  EXPECT_FALSE(bench.Note());
  EXPECT_FALSE(bench.link.Port(1).IsOpen());
  EXPECT_EQ(bench.Item(0x0A), before.Find(1, 0x0A)->data) << "no step changes it";
  EXPECT_EQ(bench.Item(0x16), before.Find(1, 0x16)->data) << "the scan groups";
  EXPECT_EQ(bench.Item(0x1E).size(), 625U);
  EXPECT_EQ(bench.Item(0x2C).size(), 134U);
  EXPECT_EQ(bench.Item(0x2C)[80], before.Find(1, 0x2C)->data[80]);
}

TEST(AutomaticUpgrade, UpgradesEveryNetworkOfATrunkedRadio) {
  UpgradeBench bench(",model=12,networks=2");
  const simulator::Personality before = bench.radio().Data();
  EXPECT_EQ(bench.Upgrade(), "succeeded 0");
  EXPECT_THAT(bench.Log(), HasSubstr("|Personality data saved as: 10000125v0400.omn|"));
  for (const int network : {1, 2})
    EXPECT_EQ(bench.Item(0x34, network), before.Find(network, 0x34)->data);
  EXPECT_EQ(bench.Item(0x47).size(), 134U);
  EXPECT_EQ(bench.Item(0x47)[80], before.Find(1, 0x47)->data[80]);
}

TEST(AutomaticUpgrade, AsksForRadiosThatSwitchThemselvesOff) {
  UpgradeBench bench(",model=31,firmware=0107", "image PP31PhaseI.bin 31 0126 0400 0100");
  EXPECT_EQ(bench.Upgrade(), "succeeded 0");
  EXPECT_THAT(bench.Boxes(),
              HasSubstr("information Please turn the radio on so that it can be programmed. -> OK\n"
                        "information Please turn radio on so data may be programmed. -> OK\n"));
  EXPECT_THAT(bench.Log(), HasSubstr("|Personality data is up-to-date|"
                                     "Upgrading calibration data v100 -> v100|"
                                     "Calibration data is up-to-date|"
                                     "Attempting to reprogram personality|"));
}

TEST(AutomaticUpgrade, EndsEveryFailureWithItsLineAndKeepsTheData) {
  // Name, options of the radio, orders, outcome, whether the flash holds the image afterwards, a
  // box, the log's last lines but the final report.
  for (const char* row :
       {"no port||inactive|failed 2|no||Could not initialise comms",
        "silent at once|,fault=silent@caret||comms error 3|no||Could not read radio configuration",
        "firmware unknown|,firmware=0333||failed 1|no|Unsupported firmware version in radio. "
        "Please upgrade manually.|Unsupported firmware version in the radio please upgrade "
        "manually",
        "up to date|,firmware=0126||up to date 0|no|Firmware already up-to-date. Upgrade not "
        "required.|Firmware is up-to-date. Upgrade not required",
        "no image|,firmware=0303|no Cannot find PP11PhaseII.bin|failed 5|no||Firmware file could "
        "not be located",
        "image corrupt||write PP11PhaseI.bin short|failed 5|no|Corrupt firmware file to "
        "download.|Firmware file is corrupt",
        "image of another model||image PP11PhaseI.bin 21 0126 0405 0103;no The firmware "
        "file|failed 1|no||The firmware file is for another model",
        "silent while it is read|,fault=silent@read:9||comms error 3|no||Could not save "
        "personality data",
        "an earlier file is to stay||write database/10000125v0400.ops mine;no Database file for "
        "this radio exists, overwrite?|failed 1|no||The radio's data was not saved",
        "no folder for the note||write upgrade file|failed 5|no||The saved data could not be "
        "verified",
        "no default settings||remove default.ops;no Cannot find default.ops|failed 5|no||Could not "
        "locate default.ops",
        "default settings damaged||write default.ops 00|failed 5|no||Could read default settings ",
        "no loader||remove bs.tsk|comms error 5|no||Firmware download failed",
        "silent while it is flashed|,fault=silent@block:100||comms error 3|no||Firmware download "
        "failed",
        "does not come back|,fault=silent@prompt:4||comms error 3|yes||Could not read radio "
        "configuration",
        "newer database||image PP11PhaseI.bin 11 0126 0406 0103|failed 1|yes||Upgrading "
        "personality data v400 -> v406|v406 is not supported",
        "older database||image PP11PhaseI.bin 11 0126 0399 0103;no is now 399, older than the 400 "
        "of|failed 1|yes||The radio's database version is older than that of its saved data",
        "unknown calibration||image PP11PhaseI.bin 11 0126 0405 0104|failed 5|yes||Upgrading "
        "calibration data v100 -> v104|Could not upgrade calibration data",
        "refuses a record|,fault=brace@write:30=C10||comms error 4|yes||Could not reprogram "
        "personality"}) {
    const std::vector<std::string> fields = testing::Fields(row);
    SCOPED_TRACE(fields[0]);
    UpgradeBench bench(fields[1], fields[2]);
    EXPECT_EQ(bench.Upgrade(), fields[3]);
    EXPECT_EQ(bench.Flashed(), fields[4] == "yes");
    EXPECT_EQ(bench.Note(), bench.Started());
    std::string last;
    for (std::size_t line = 6; line < fields.size(); ++line) last += "|" + fields[line];
    EXPECT_THAT(bench.Boxes(), HasSubstr(fields[5]));
    if (fields[3][0] == 'u') {
      EXPECT_EQ(bench.Boxes().find("The upgrade process"), std::string::npos);
    } else {
      const std::string report =
          fields[3][0] == 'c' ? "There was a comms error - The upgrade process did not complete"
                              : "The upgrade process did not complete successfully";
      EXPECT_THAT(bench.Boxes(), HasSubstr("information " + report + " -> OK\n"));
      last += "|" + report;
    }
    if (bench.Started()) {
      last += "|The radio's data is in " + kBothFiles;
      EXPECT_THAT(bench.Boxes(), HasSubstr("The data of this radio is in " + kBothFiles));
      EXPECT_THAT(bench.folder.Read(kDataFile).value_or(""), HasSubstr("\r\n3000142F"));
    }
    if (fields[0] == "refuses a record") {
      const std::string converted = "upgrade/10000125v0400.ops, upgrade/10000125v0100.ocs";
      last += "|The data converted for its new firmware is in " + converted;
      EXPECT_THAT(bench.Boxes(), HasSubstr("program the data converted for it: " + converted));
      EXPECT_THAT(bench.folder.Read("upgrade/10000125v0400.ops.unfinished").value_or(""),
                  EndsWith("upgrade/10000125v0400.ops\n" +
                           bench.folder.Path("upgrade/10000125v0100.ocs\n")));
      // By hand, both are needed.
      for (const auto& [kind, file] :
           {std::pair(radiodb::TransferKind::kChosenFile, "upgrade/10000125v0400.ops"),
            std::pair(radiodb::TransferKind::kCalibration, "upgrade/10000125v0100.ocs")}) {
        bench.db.transfer_kind = kind;
        EXPECT_TRUE(ProgramRadio(bench.db, bench.view, bench.folder.Path(file)).Done());
      }
      EXPECT_EQ(bench.Item(0x2C).size(), 134U);
      EXPECT_EQ(bench.Item(0x1E).size(), 625U);
    }
    EXPECT_THAT(bench.Log(), EndsWith(last + "|"));
  }
}

TEST(AutomaticUpgrade, AbortsAtTheNextStep) {
  for (const char* row :
       {"Locating firmware file|Could not read radio configuration|no",
        "Saving personality and calibration data|The radio's data was not saved|no",
        "transfer|Firmware download complete. Version is now v0126|yes",
        "Converting the radio's data|Personality data version is now v405|yes",
        "Attempting to reprogram personality|Could not reprogram personality|yes"}) {
    const std::vector<std::string> fields = testing::Fields(row);
    SCOPED_TRACE(fields[0]);
    UpgradeBench bench;
    bench.upgrade_view.on_step = [&](const std::string& step) {
      if (step != fields[0]) return;
      if (step != "transfer") return bench.session.jobs.Cancel();
      bench.user.on_turn = [&bench, turns = 0](int) mutable {
        if (++turns == 50) bench.session.jobs.Cancel();
      };
    };
    EXPECT_EQ(bench.Upgrade(), "aborted 6");
    EXPECT_THAT(bench.Log(), HasSubstr("|" + fields[1] + "|The upgrade process was aborted|"));
    EXPECT_THAT(bench.Boxes(), HasSubstr("information The upgrade process was aborted -> OK\n"));
    EXPECT_EQ(bench.Flashed(), fields[2] == "yes");
  }
}

TEST(AutomaticUpgrade, GivesNothingToAnotherRadio) {
  for (const char* row :
       {"21|10000125|Can not program a ZEP 1100 as a |model code is 21 instead of 11",
        "11|10000126|number 10000125, but the radio now has the serial number 10000126.|"
        "serial number is 10000126 instead of 10000125"}) {
    const std::vector<std::string> fields = testing::Fields(row);
    UpgradeBench bench("", fields[0] == "11" ? "no The saved data is of" : "");
    bench.upgrade_view.on_step = [&](const std::string& step) {
      if (!step.starts_with("Converting")) return;
      bench.last_radio.identity.model_code = fields[0];
      bench.last_radio.identity.serial_number = fields[1];
    };
    EXPECT_EQ(bench.Upgrade(), "failed 1");
    EXPECT_THAT(bench.Boxes(), HasSubstr(fields[2]));
    EXPECT_THAT(bench.Log(), HasSubstr("|The radio is not the one whose data was saved: its " +
                                       fields[3] + "|"));
  }
}

TEST(AutomaticUpgrade, FindsCalibrationThatCannotBeConvertedBeforeTheDownload) {
  for (const char* version : {"0100", "0099", "0104"}) {
    UpgradeBench bench(std::string(",calibration=") + version);
    const bool is_known = version == std::string("0100");
    if (is_known) bench.Factory(0x2C).data.pop_back();
    EXPECT_EQ(bench.Upgrade(), "failed 1");
    EXPECT_THAT(bench.Boxes(), HasSubstr(is_known ? "calibration version 100: it has 129 bytes."
                                                  : "does not know the radio's calibration"));
    EXPECT_FALSE(bench.Flashed() || bench.Note());
  }
}

TEST(AutomaticUpgrade, GoesOnWithoutALog) {
  UpgradeBench bench;
  std::filesystem::create_directory(bench.folder.Path("upgrade.log"));
  EXPECT_EQ(bench.Upgrade(), "succeeded 0");
  EXPECT_THAT(bench.Boxes(),
              StartsWith("information The upgrade log upgrade.log cannot be written: "));
  EXPECT_EQ(bench.Boxes().find("The upgrade log", 40), std::string::npos) << "told once";
}

TEST(ManualUpgrade, DoesWhatItsCheckBoxesAskFor) {
  // Name, versions of the new firmware's database and calibration, the four check boxes, orders;
  // then failure, files saved and bytes of calibration in the radio, and a part of the last box.
  for (const char* row :
       {"nothing but the firmware|0400 0100|0011||0 0 130|Completed downloading firmware",
        "personality|0400 0100|1011||0 1 130|Completed downloading firmware",
        "calibration|0400 0102|0111||0 1 141|Completed downloading firmware",
        "both|0400 0102|1111||0 2 141|Completed downloading firmware",
        "both, nothing to convert|0400 0100|1101||0 2 130|Completed downloading firmware",
        "calibration not to be converted|0400 0102|1101||1 2 141|was not written back. It is in",
        "incompatible database|0405 0100|1111|yes Start the programming|1 2 130|"
        "The programming application was not found",
        "no offer|0405 0100|1110||1 2 130|"
        "Database versions incompatible. Please use the Programming Application",
        "no firmware file|0400 0100|1111|remove PP11PhaseI.bin|5 0 130|"
        "Please select a valid file to down load.",
        "data not secure|0400 0100|1111|write upgrade file|5 2 130|so the radio keeps its "
        "firmware"}) {
    const std::vector<std::string> fields = testing::Fields(row);
    SCOPED_TRACE(fields[0]);
    UpgradeBench bench("", "image PP11PhaseI.bin 11 0126 " + fields[1] + ";" + fields[3]);
    const auto box = [&](std::size_t number) { return fields[2][number] == '1'; };
    SaveUpgradeSelections(bench.session, {box(0), box(1), box(2), box(3)});
    const services::Outcome outcome =
        RunManualUpgrade(bench.Work(), LoadUpgradeSelections(bench.session));
    const int failure = static_cast<int>(outcome.failure);
    const int files =
        bench.folder.Read(kDataFile).has_value() + bench.folder.Read(kCalibrationFile).has_value();
    EXPECT_EQ(std::to_string(failure) + " " + std::to_string(files) + " " +
                  std::to_string(bench.Item(0x2C).size()),
              fields[4]);
    EXPECT_EQ(bench.Flashed(), failure != 5);
    EXPECT_EQ(bench.Note(), failure == 1);
    EXPECT_EQ(
        bench.Log().find("The radio's data is in " + std::string(kDataFile)) != std::string::npos,
        failure == 1);
    EXPECT_THAT(bench.Boxes(), HasSubstr(fields[5]));
  }
  EXPECT_TRUE(LoadUpgradeSelections(testing::TestSession().session).SaveMain);
}

// Each fault at each step of both upgrades: a run ends, claims success only with everything in
// place, and has the data on the disk when the flash was touched.
TEST(Upgrades, SurviveEveryFaultAtEveryStep) {
  for (const bool automatic : {true, false}) {
    const std::string orders = automatic ? "" : "image PP11PhaseI.bin 11 0126 0400 0100";
    const std::string success = automatic ? "succeeded 0" : "0";
    UpgradeBench good("", orders);
    EXPECT_EQ(good.Upgrade(automatic), success);
    int runs = 0;
    for (const simulator::StepName& step : simulator::StepNames()) {
      for (const simulator::FaultName& kind : simulator::FaultNames()) {
        for (const char* ordinal : {"", ":4"}) {
          if (!simulator::CanHappen(kind.kind, step.step)) continue;
          ++runs;
          const std::string fault = std::string(kind.name) + "@" + std::string(step.name) + ordinal;
          SCOPED_TRACE((automatic ? "automatic " : "manual ") + fault);
          UpgradeBench bench(",fault=" + fault, orders);
          const bool done = bench.Upgrade(automatic) == success;
          const bool told = bench.Log().find("The radio's data is in ") != std::string::npos;
          EXPECT_FALSE(bench.link.Port(1).IsOpen());
          EXPECT_EQ(bench.States(bench.link.CommStates), "1222");
          EXPECT_LT(bench.clock.Now(), std::chrono::minutes(3));
          EXPECT_EQ(bench.Note(), told);
          if (done) {
            EXPECT_TRUE(bench.Flashed());
            EXPECT_EQ(bench.Contents(), good.Contents());
          } else if (told || bench.Started() || bench.Flashed()) {
            EXPECT_TRUE(told);
            EXPECT_EQ(bench.folder.Read(kDataFile), good.folder.Read(kDataFile));
            EXPECT_EQ(bench.folder.Read(kCalibrationFile), good.folder.Read(kCalibrationFile));
          }
        }
      }
    }
    EXPECT_GT(runs, 100);
  }
}

// Both upgrades, cancelled in turns all through the run, give up in time and lose nothing.
TEST(Upgrades, CanBeCancelledInAnyTurn) {
  for (const bool automatic : {true, false}) {
    int all_turns = 0;
    for (int part = 16; part > 0; --part) {
      SCOPED_TRACE(std::string(automatic ? "automatic " : "manual ") + std::to_string(part));
      UpgradeBench bench("", automatic ? "" : "image PP11PhaseI.bin 11 0126 0400 0100");
      bench.user.when_cancelled = services::Answer::kYes;
      bench.user.on_turn = [&](int turn) {
        if (part < 16 && turn == all_turns * part / 16) bench.session.jobs.Cancel();
      };
      const std::string ended = bench.Upgrade(automatic);
      const bool done = part == 16;
      EXPECT_FALSE(bench.link.Port(1).IsOpen());
      EXPECT_EQ(ended, automatic ? done ? "succeeded 0" : "aborted 6" : done ? "0" : "6");
      if (part == 16) all_turns = bench.user.turns;
      if (done) continue;
      EXPECT_EQ(bench.Note(), bench.Boxes().find("The data of this radio is in " + kBothFiles) !=
                                  std::string::npos);
      EXPECT_EQ(bench.Note(), bench.Flashed());
    }
  }
}

TEST(Upgrades, EndWellAfterAnUnexpectedError) {
  for (const bool automatic : {true, false}) {
    UpgradeBench bench;
    bench.upgrade_view.on_step = [&](const std::string& step) {
      if (step != "transfer") return;
      bench.user.on_turn = [&](int) { throw std::runtime_error("no memory"); };
    };
    EXPECT_EQ(bench.Upgrade(automatic), automatic ? "failed 1" : "1");
    EXPECT_FALSE(bench.upgrade_view.watched);
    EXPECT_FALSE(bench.link.Port(1).IsOpen());
    EXPECT_THAT(bench.Boxes(), HasSubstr("critical An unexpected error has occured -> OK\n"
                                         "information The data of this radio is in " +
                                         kBothFiles));
    EXPECT_THAT(bench.Log(), EndsWith("An unexpected error has occured|The radio's data is in " +
                                      kBothFiles + "|"));
  }
}

}  // namespace
}  // namespace zep::upgrade
