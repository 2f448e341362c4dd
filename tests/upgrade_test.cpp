#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "radiodb/read_write_radio.h"
#include "simulator/samples.h"
#include "simulator/simulated_port.h"
#include "tests/link_testing.h"
#include "tests/upgrade_testing.h"
#include "tests/views_testing.h"
#include "upgrade/automatic_upgrade.h"
#include "upgrade/manual_upgrade.h"

namespace zep::upgrade {
namespace {

using services::Answer;
using services::Failure;
using simulator::FaultKind;
using ::testing::EndsWith;
using ::testing::HasSubstr;

struct SelectionRow {
  std::string versions;  // blanks between them
  std::vector<std::string> files;
};

// Every version of the rows with every model, tiers in the order of the expected files.
void CheckSelection(const std::string& family, const std::vector<std::vector<int>>& tiers,
                    const std::vector<SelectionRow>& rows) {
  for (const SelectionRow& row : rows) {
    std::istringstream versions(row.versions);
    for (std::string version; versions >> version;) {
      for (std::size_t column = 0; column < tiers.size(); ++column) {
        for (const int tier : tiers[column]) {
          SCOPED_TRACE(family + " " + version + " tier " + std::to_string(tier));
          EXPECT_EQ(SelectFirmware(family, tier, version), row.files[column]);
        }
      }
    }
  }
}

TEST(FirmwareSelection, ChoosesTheConversionImagesOfVornPmrII) {
  const std::string none = "%UNSUPPORTED%";
  const std::string done = "%UPTODATE%";
  CheckSelection(
      "Vorn PMR II", {{3}, {1, 10}, {2, 11}, {0, 4, 5, 6, 7, 8, 9, 12, 13}},
      {{"0303 0304 0313 0314 0315 0316", {"QPP31CNV.BIN", none, none, none}},
       {"0323 0324 0325 0326 0327 0328 0329 0330 0333 0334",
        {none, "QOP43CNV.BIN", "QOP63CNV.BIN", none}},
       {"0335 0317", {done, done, done, done}},
       {"0305 0318 0331 0332 0336 0125 0126 303 00303 0303a", {none, none, none, none}}});
}

TEST(FirmwareSelection, ChoosesThePhaseImagesOfTorvik) {
  const std::string none = "%UNSUPPORTED%";
  const std::string done = "%UPTODATE%";
  CheckSelection("Torvik", {{3}, {1, 10}, {2, 11}, {0, 4, 13}},
                 {{"0107 0108 0109 0116 0122 0123 0124 0125",
                   {"PP31PhaseI.bin", "PP11PhaseI.bin", "PP21PhaseI.bin", "PhaseI.bin"}},
                  {"0303 0304 0313 0314 0315 0316",
                   {"PP31PhaseII.bin", "PP11PhaseII.bin", "PP21PhaseII.bin", "PhaseII.bin"}},
                  {"0323 0324 0325 0326 0327 0328 0329 0330",
                   {"PP31PhaseIII.bin", "PP11PhaseIII.bin", "PP21PhaseIII.bin", "PhaseIII.bin"}},
                  {"0126 0317 0334", {done, done, done, done}},
                  {"0333 0335 0106 0110 0331 125", {none, none, none, none}}});
}

TEST(FirmwareSelection, KnowsNoOtherFamily) {
  for (const char* family : {"ZEP", "torvik", "Torvik ", "Vorn PMR", ""}) {
    SCOPED_TRACE(family);
    EXPECT_EQ(SelectFirmware(family, 1, "0303"), "%UNSUPPORTED%");
    EXPECT_EQ(SelectFirmware(family, 1, "0317"), "%UNSUPPORTED%");
  }
}

TEST(FirmwareSelection, FindsAFileWhereTheUserShowsIt) {
  testing::TestSession test;
  const std::string other = test.folder.Write("elsewhere/other.bin", "x");
  std::string folder = test.folder.Path("");
  std::string name = "gone.bin";
  test.user.WillAnswer("Cannot find gone.bin would you like to locate the file?", Answer::kNo);
  EXPECT_FALSE(GetFile(test.session, folder, name, "Find gone.bin..."));
  test.user.WillAnswer("Cannot find", Answer::kYes);
  test.user.WillChoose("open", std::nullopt);
  EXPECT_FALSE(GetFile(test.session, folder, name, "Find gone.bin..."));
  EXPECT_EQ(name, "gone.bin");
  test.user.WillAnswer("Cannot find", Answer::kYes);
  test.user.WillChoose("open", other);
  EXPECT_TRUE(GetFile(test.session, folder, name, "Find gone.bin..."));
  EXPECT_EQ(folder + name, other);
  EXPECT_EQ(test.user.file_requests[1].title, "Find gone.bin...");
  EXPECT_EQ(test.user.file_requests[1].filter, "All files|*.*");
  EXPECT_TRUE(GetFile(test.session, folder, name, "")) << "now it is there";
}

// Notes what is shown and can cancel at a status.
struct NotedUpgrade final : UpgradeView {
  void ShowFirmwareFile(const std::string& full_name) override { firmware_file = full_name; }
  void ShowStatus(const std::string& status) override {
    if (on_status) on_status(status);
  }
  radiodb::ReadWriteView& ReadWriteWindow() override { return quiet; }
  link::TransferView& TransferWindow() override { return quiet; }
  void WatchTransfer(firmware::TransferRun* run) override {
    if (run != nullptr && on_transfer) on_transfer();
  }

  testing::QuietView quiet;
  std::string firmware_file;
  std::function<void(const std::string&)> on_status;
  std::function<void()> on_transfer;
};

// A radio that can be upgraded, with all files for it.
struct UpgradeBench : testing::TestLink {
  explicit UpgradeBench(const std::string& options = "", const std::string& family = "Torvik") {
    folder.Write("family.strings", "base ZEP\n100 " + family + "\n");
    strings = services::StringTable("family", folder.Path());
    settings.AppSaveUserSetting(services::AppType::kDownload, "DefaultDataPath", folder.Path());
    WriteImage({"0126", "0405", "0103"});
    Write("bs.tsk", simulator::SampleFirstLoader());
    Write("dl.tsk", simulator::SampleSecondLoader());
    auto made = simulator::MakeSimulatedPort("sim:torvik,unpaced" + options, clock);
    EXPECT_EQ(made.error, "");
    simulated = made.value->get();
    link.ports[0] = std::move(*made.value);
    link.State(1) = link::PortState::kActive;
    folder.Write("default.ops", simulator::DataFileText(radio().Profile()));
  }

  simulator::SimulatedRadio& radio() { return simulated->Radio(); }
  void Write(const std::string& name, const simulator::Bytes& bytes) const {
    folder.Write(name, std::string(bytes.begin(), bytes.end()));
  }
  void WriteImage(const simulator::Versions& versions) {
    image = simulator::MakeFirmwareImage(
        {.model_code = "11", .micro = simulator::Micro::kA1, .versions = versions});
    Write("PP11PhaseI.bin", image);
  }
  // The log without times and the test's folder.
  std::string Log() const {
    std::istringstream lines(folder.Read("upgrade.log").value_or(""));
    std::string text;
    for (std::string line; std::getline(lines, line);) text += line.substr(21) + "\n";
    return WithoutFolder(text);
  }
  std::string WithoutFolder(std::string text) const {
    const std::string path = folder.Path("");
    for (std::size_t at; (at = text.find(path)) != std::string::npos;) text.erase(at, path.size());
    return text;
  }
  bool Note() const { return folder.Read("upgrade/10000125v0400.ops.unfinished").has_value(); }
  bool Flashed() { return radio().FlashMatches(image); }
  // All of the radio's data.
  std::string Contents() {
    std::string contents;
    for (const std::uint8_t item : radio().Data().List(1))
      contents += simulator::HexText(radio().Data().Find(1, item)->data) + "\n";
    return contents;
  }

  simulator::SimulatedPort* simulated = nullptr;
  simulator::Bytes image;
  NotedUpgrade view;
  firmware::Firmware firmware{link};
  radiodb::RadioDb db{link};
  AutomaticUpgrade upgrade{firmware, db, view};
};

TEST(AutomaticUpgrade, UpgradesARadioAndGivesItItsConvertedData) {
  UpgradeBench bench;
  const simulator::Personality before = bench.radio().Data();
  EXPECT_EQ(bench.upgrade.Upgrade(), UpgradeOutcome::kSucceeded);
  EXPECT_EQ(bench.Log(),
            "Upgrade process started.\n"
            "Locating firmware file\n"
            "Firmware file selected: PP11PhaseI.bin\n"
            "Saving personality and calibration data\n"
            "Personality data saved as: 10000125v0400.ops\n"
            "Calibration data saved as: 10000125v0100.ocs\n"
            "Starting firmware download. Version is currently v0125\n"
            "Firmware download complete. Version is now v0126\n"
            "Upgrading personality data v400 -> v405\n"
            "Default settings read from default.ops\n"
            "Personality data version is now v405\n"
            "Upgrading calibration data v100 -> v103\n"
            "Calibration data version is now 103\n"
            "Attempting to reprogram personality\n"
            "Radio personality has been reprogrammed\n"
            "The upgrade process has completed successfully\n");
  EXPECT_EQ(bench.user.Boxes(),
            "information Please put radio in Bootstrap mode. -> OK\n"
            "information The upgrade process has completed successfully -> OK\n");
  EXPECT_EQ(bench.WithoutFolder(bench.view.firmware_file), "PP11PhaseI.bin");
  EXPECT_TRUE(bench.Flashed());
  EXPECT_FALSE(bench.Note());
  EXPECT_FALSE(bench.link.Port(1).IsOpen());
  EXPECT_EQ(bench.States(), "1222");

  const simulator::Personality after = bench.radio().Data();
  EXPECT_EQ(after.Find(1, 0x0A)->data, before.Find(1, 0x0A)->data)
      << "an item that no step changes";
  EXPECT_EQ(after.Find(1, 0x16)->data, before.Find(1, 0x16)->data) << "the scan groups";
  EXPECT_EQ(after.Find(1, 0x1E)->data.size(), 625U);
  EXPECT_EQ(after.Find(1, 0x2C)->data.size(), 134U);
  EXPECT_EQ(after.Find(1, 0x2C)->data[80], before.Find(1, 0x2C)->data[80]);
  EXPECT_TRUE(simulator::HasCalibrationSum(after.Find(1, 0x2C)->data));
}

TEST(AutomaticUpgrade, UpgradesEveryNetworkOfATrunkedRadio) {
  UpgradeBench bench(",model=12,networks=2");
  const simulator::Personality before = bench.radio().Data();
  EXPECT_EQ(bench.upgrade.Upgrade(), UpgradeOutcome::kSucceeded);
  EXPECT_THAT(bench.Log(), HasSubstr("Personality data saved as: 10000125v0400.omn\n"));
  const simulator::Personality after = bench.radio().Data();
  for (const int network : {1, 2})
    EXPECT_EQ(after.Find(network, 0x34)->data, before.Find(network, 0x34)->data);
  EXPECT_EQ(after.Find(2, 0x1E)->data.size(), 625U);
  EXPECT_EQ(after.Find(1, 0x47)->data.size(), 134U);
  EXPECT_EQ(after.Find(1, 0x47)->data[80], before.Find(1, 0x47)->data[80]);
}

TEST(AutomaticUpgrade, AsksForRadiosThatSwitchThemselvesOff) {
  UpgradeBench bench(",model=31,firmware=0107");
  bench.image = simulator::MakeFirmwareImage(
      {.model_code = "31", .micro = simulator::Micro::kA1, .versions = {"0126", "0400", "0100"}});
  bench.Write("PP31PhaseI.bin", bench.image);
  EXPECT_EQ(bench.upgrade.Upgrade(), UpgradeOutcome::kSucceeded);
  EXPECT_THAT(bench.user.Boxes(),
              HasSubstr("information Please turn the radio on so that it can be programmed. -> OK\n"
                        "information Please turn radio on so data may be programmed. -> OK\n"));
  EXPECT_THAT(bench.Log(), HasSubstr("Personality data is up-to-date\n"
                                     "Upgrading calibration data v100 -> v100\n"
                                     "Calibration data is up-to-date\n"
                                     "Attempting to reprogram personality\n"));
}

struct FailureRow {
  const char* name;
  std::string radio;
  std::function<void(UpgradeBench&)> spoil;
  UpgradeOutcome outcome;
  Failure failure;
  std::string log;  // its last lines, without what is always last
  bool flashed = false;
};

const char* FinalLine(UpgradeOutcome outcome) {
  switch (outcome) {
    case UpgradeOutcome::kCommsError:
      return "There was a comms error - The upgrade process did not complete\n";
    case UpgradeOutcome::kAborted:
      return "The upgrade process was aborted\n";
    case UpgradeOutcome::kUpToDate:
      return "";
    default:
      return "The upgrade process did not complete successfully\n";
  }
}

std::vector<FailureRow> FailureRows() {
  const auto nothing = [](UpgradeBench&) {};
  const auto comms = UpgradeOutcome::kCommsError;
  const auto failed = UpgradeOutcome::kFailed;
  return {
      {"no port", "", [](auto& bench) { bench.link.State(1) = link::PortState::kAvailable; },
       failed, Failure::kPort, "Upgrade process started.\nCould not initialise comms\n"},
      {"silent from the start", ",fault=silent@caret", nothing, comms, Failure::kNoAnswer,
       "Could not read radio configuration\n"},
      {"firmware unknown", ",firmware=0333", nothing, failed, Failure::kRefused,
       "Unsupported firmware version in the radio please upgrade manually\n"},
      {"up to date", ",firmware=0126", nothing, UpgradeOutcome::kUpToDate, Failure::kNone,
       "Firmware is up-to-date. Upgrade not required\n"},
      {"no image", ",firmware=0303",
       [](auto& bench) { bench.user.WillAnswer("Cannot find PP11PhaseII.bin", Answer::kNo); },
       failed, Failure::kFile, "Firmware file could not be located\n"},
      {"image corrupt", "", [](auto& bench) { bench.folder.Write("PP11PhaseI.bin", "short"); },
       failed, Failure::kFile, "Firmware file is corrupt\n"},
      {"silent while it is read", ",fault=silent@read:9", nothing, comms, Failure::kNoAnswer,
       "Could not save personality data\n"},
      {"its earlier file is to stay", "",
       [](auto& bench) {
         bench.folder.Write("database/10000125v0400.ops", "mine");
         bench.user.WillAnswer("Database file for this radio exists, overwrite?", Answer::kNo);
       },
       failed, Failure::kRefused, "Could not save personality data\n"},
      {"no folder for the note", "", [](auto& bench) { bench.folder.Write("upgrade", "a file"); },
       failed, Failure::kFile, "The saved data could not be verified\n"},
      {"no default settings", "",
       [](auto& bench) {
         std::filesystem::remove(bench.folder.Path("default.ops"));
         bench.user.WillAnswer("Cannot find default.ops", Answer::kNo);
       },
       failed, Failure::kFile, "Could not locate default.ops\n"},
      {"default settings damaged", "", [](auto& bench) { bench.folder.Write("default.ops", "00"); },
       failed, Failure::kFile, "Could read default settings \n"},
      {"no loader file", "",
       [](auto& bench) { std::filesystem::remove(bench.folder.Path("bs.tsk")); }, comms,
       Failure::kFile, "Firmware download failed\n"},
      {"silent while it is flashed", ",fault=silent@block:100", nothing, comms, Failure::kNoAnswer,
       "Firmware download failed\n"},
      {"does not come back", ",fault=silent@prompt:4", nothing, comms, Failure::kNoAnswer,
       "Could not read radio configuration\n", true},
      {"comes back with a newer database", "",
       [](auto& bench) {
         bench.WriteImage({"0126", "0406", "0103"});
       },
       failed, Failure::kRefused,
       "Upgrading personality data v400 -> v406\nv406 is not supported\n", true},
      {"comes back with an older database", "",
       [](auto& bench) {
         bench.WriteImage({"0126", "0399", "0103"});
         bench.user.WillAnswer("is now 399, older than the 400 of", Answer::kNo);
       },
       failed, Failure::kRefused,
       "The radio's database version is older than that of its saved data\n", true},
      {"comes back with unknown calibration", "",
       [](auto& bench) {
         bench.WriteImage({"0126", "0405", "0104"});
       },
       failed, Failure::kFile,
       "Upgrading calibration data v100 -> v104\nCould not upgrade calibration data\n", true},
      {"refuses a record", ",fault=brace@write:30=C10", nothing, comms, Failure::kRadioError,
       "Attempting to reprogram personality\nCould not reprogram personality\n", true},
  };
}

TEST(AutomaticUpgrade, EndsEveryFailureWithItsLineAndKeepsTheData) {
  for (const FailureRow& row : FailureRows()) {
    SCOPED_TRACE(row.name);
    UpgradeBench bench(row.radio);
    row.spoil(bench);
    EXPECT_EQ(bench.upgrade.Upgrade(), row.outcome);
    EXPECT_EQ(bench.session.failure, row.failure);
    EXPECT_FALSE(bench.session.DownloadError);
    EXPECT_EQ(bench.Flashed(), row.flashed);
    const bool started = bench.Log().find("Starting firmware download") != std::string::npos;
    const std::string where = "database/10000125v0400.ops and ";
    std::string last = row.log + FinalLine(row.outcome);
    if (started) last += "The radio's data is in " + where + "calibration/10000125v0100.ocs\n";
    EXPECT_THAT(bench.Log(), EndsWith(last));
    EXPECT_EQ(bench.Note(), started);
    if (!started) continue;
    EXPECT_THAT(bench.WithoutFolder(bench.user.Boxes()),
                HasSubstr("The data of this radio is in " + where));
    EXPECT_THAT(bench.folder.Read("database/10000125v0400.ops").value_or(""), EndsWith("\r\n"));
  }
}

TEST(AutomaticUpgrade, AbortsAtTheNextStep) {
  const struct {
    const char* status;
    const char* last_line;
    bool flashed;
  } rows[] = {
      {"Locating firmware file", "Could not read radio configuration\n", false},
      {"Saving personality and calibration data", "Could not save personality data\n", false},
      {"transfer", "Firmware download complete. Version is now v0126\n", true},
      {"Converting the radio's data", "Personality data version is now v405\n", true},
      {"Attempting to reprogram personality", "Could not reprogram personality\n", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.status);
    UpgradeBench bench;
    bench.view.on_status = [&](const std::string& status) {
      if (status == row.status) bench.upgrade.Cancel();
    };
    if (row.status == std::string("transfer"))
      bench.view.on_transfer = [&] { bench.upgrade.Cancel(); };
    EXPECT_EQ(bench.upgrade.Upgrade(), UpgradeOutcome::kAborted);
    EXPECT_EQ(bench.session.failure, Failure::kCancelled);
    EXPECT_THAT(bench.Log(),
                HasSubstr(std::string(row.last_line) + "The upgrade process was aborted\n"));
    EXPECT_EQ(bench.Flashed(), row.flashed);
  }
}

TEST(AutomaticUpgrade, GoesOnWithoutALog) {
  UpgradeBench bench;
  std::filesystem::create_directory(bench.folder.Path("upgrade.log"));
  EXPECT_EQ(bench.upgrade.Upgrade(), UpgradeOutcome::kSucceeded);
  const std::string boxes = bench.WithoutFolder(bench.user.Boxes());
  EXPECT_TRUE(boxes.starts_with("information The upgrade log upgrade.log cannot be written: "))
      << boxes;
  EXPECT_EQ(boxes.find("The upgrade log", 40), std::string::npos) << "told once";
}

TEST(AutomaticUpgrade, HasTheDataSavedWheneverTheLogSaysSo) {
  UpgradeBench bench;
  int looks = 0;
  std::string saved;
  bench.user.on_turn = [&](int turn) {
    if (turn % 10 != 0) return;
    if (bench.Log().find("Personality data saved as: ") == std::string::npos) return;
    const std::string now = bench.folder.Read("database/10000125v0400.ops").value_or("") +
                            bench.folder.Read("calibration/10000125v0100.ocs").value_or("");
    if (looks++ == 0) saved = now;
    if (now == saved && bench.Note()) return;
    ADD_FAILURE() << bench.Log();
    bench.user.on_turn = nullptr;
  };
  EXPECT_EQ(bench.upgrade.Upgrade(), UpgradeOutcome::kSucceeded);
  EXPECT_GT(looks, 20);
  EXPECT_THAT(saved, HasSubstr("\r\n2C0402"));
}

TEST(AutomaticUpgrade, TellsOfAnUnfinishedRunAndKeepsItsData) {
  UpgradeBench bench(",fault=silent@block:3");
  EXPECT_EQ(bench.upgrade.Upgrade(), UpgradeOutcome::kCommsError);
  const auto data = bench.folder.Read("database/10000125v0400.ops");
  const auto calibration = bench.folder.Read("calibration/10000125v0100.ocs");

  UpgradeBench next;
  for (const char* name : {"database/10000125v0400.ops", "calibration/10000125v0100.ocs"})
    next.folder.Write(name, bench.folder.Read(name).value_or("") + "\r\n");
  next.folder.Write("upgrade/10000125v0400.ops.unfinished",
                    next.folder.Path("database/10000125v0400.ops") + "\n" +
                        next.folder.Path("calibration/10000125v0100.ocs") + "\n");
  next.folder.Write("upgrade/1v1.ops.unfinished", "gone\ngone too\n");
  next.user.WillAnswer("Database file for this radio exists", Answer::kYes);
  next.user.WillAnswer("Calibration file for this radio exists", Answer::kYes);
  EXPECT_EQ(next.upgrade.Upgrade(), UpgradeOutcome::kSucceeded);
  EXPECT_TRUE(next.WithoutFolder(next.user.Boxes())
                  .starts_with(
                      "information An earlier upgrade did not finish. The data of that radio is in "
                      "database/10000125v0400.ops and calibration/10000125v0100.ocs. "));
  EXPECT_EQ(next.folder.Read("database/10000125v0400.ops.unfinished"), *data + "\r\n");
  EXPECT_EQ(next.folder.Read("calibration/10000125v0100.ocs.unfinished"), *calibration + "\r\n");
  EXPECT_FALSE(next.Note());
  EXPECT_FALSE(next.folder.Read("upgrade/1v1.ops.unfinished")) << "it tells of nothing any more";
}

TEST(SavedData, IsReliedOnOnlyWhenItIsWhatTheRadioSent) {
  const auto replace = [](std::string text, const std::string& part, const std::string& by) {
    const std::size_t at = text.find(part);
    EXPECT_NE(at, std::string::npos);
    return text.replace(at, part.size(), by);
  };
  const std::string item_07 = "070004";
  const struct {
    const char* name;
    const char* file;
    std::function<std::string(const std::string&)> spoil;
    bool relied_on;
  } rows[] = {
      {"as read", "database/10000125v0400.ops", [](const auto& text) { return text; }, true},
      {"cut off", "database/10000125v0400.ops",
       [](const auto& text) { return text.substr(0, text.size() - 5); }, false},
      {"a record less", "database/10000125v0400.ops",
       [&](const auto& text) {
         const std::size_t at = text.find("\r\n" + item_07);
         return text.substr(0, at) + text.substr(text.find("\r\n", at + 2));
       },
       false},
      {"a wrong digit", "database/10000125v0400.ops",
       [&](const auto& text) { return replace(text, item_07, "070104"); }, false},
      {"another radio's model", "database/10000125v0400.ops",
       [&](const auto& text) { return replace(text, "0000115A45502D", "00001159"); }, false},
      {"empty", "calibration/10000125v0100.ocs", [](const auto&) { return std::string(); }, false},
      {"another radio's calibration", "calibration/10000125v0100.ocs",
       [&](const auto& text) {
         const std::size_t at = text.find("00001C");
         const std::string line = text.substr(at, text.find("\r\n", at) - at);
         const std::string other = line.substr(0, line.size() - 8) + "000042";
         return replace(text, line, testing::Record(other.substr(0, 6), other.substr(6)));
       },
       false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    UpgradeBench bench;
    bench.db.transfer_kind = radiodb::TransferKind::kBoth;
    ASSERT_TRUE(ReadRadio(bench.db, bench.view.quiet));
    bench.folder.Write(row.file, row.spoil(bench.folder.Read(row.file).value_or("")));
    EXPECT_EQ(SecureSavedData(bench.db, {bench.db.data_file, bench.db.calibration_file}),
              row.relied_on);
    EXPECT_EQ(bench.Note(), row.relied_on);
    const bool told =
        bench.user.Boxes().find("so the radio keeps its firmware") != std::string::npos;
    EXPECT_EQ(told, !row.relied_on);
  }
}

// Each fault at each step: a run ends, claims success only with everything in place, and has the
// data on disk when the flash was touched.
TEST(AutomaticUpgrade, SurvivesEveryFaultAtEveryStep) {
  UpgradeBench good;
  EXPECT_EQ(good.upgrade.Upgrade(), UpgradeOutcome::kSucceeded);
  int runs = 0;
  for (const simulator::StepName& step : simulator::StepNames()) {
    for (const simulator::FaultName& kind : simulator::FaultNames()) {
      if (!simulator::CanHappen(kind.kind, step.step)) continue;
      for (const char* ordinal : {"", ":4"}) {
        const std::string fault = std::string(kind.name) + "@" + std::string(step.name) + ordinal;
        SCOPED_TRACE(fault);
        UpgradeBench bench(",fault=" + fault);
        const UpgradeOutcome outcome = bench.upgrade.Upgrade();
        ++runs;
        EXPECT_FALSE(bench.link.Port(1).IsOpen());
        EXPECT_EQ(bench.States(), "1222");
        EXPECT_LT(bench.clock.Now(), std::chrono::minutes(3));
        if (outcome == UpgradeOutcome::kSucceeded) {
          EXPECT_TRUE(bench.Flashed());
          EXPECT_EQ(bench.Contents(), good.Contents());
          continue;
        }
        EXPECT_NE(bench.session.failure, Failure::kNone);
        const bool started = bench.Log().find("Starting firmware download") != std::string::npos;
        EXPECT_EQ(bench.Note(), started);
        if (started) {
          EXPECT_THAT(bench.folder.Read("calibration/10000125v0100.ocs").value_or(""),
                      HasSubstr("\r\n2C0402"));
        }
      }
    }
  }
  EXPECT_GT(runs, 100);
}

TEST(ManualUpgrade, RemembersItsCheckBoxes) {
  testing::TestSession test;
  UpgradeSelections selections = LoadUpgradeSelections(test.session);
  EXPECT_TRUE(selections.SaveMain && selections.SaveCalibration && selections.UpgradeCalibration &&
              selections.AppLaunchExe);
  selections.SaveCalibration = selections.AppLaunchExe = false;
  SaveUpgradeSelections(test.session, selections);
  const services::AppType own = services::AppType::kDownload;
  EXPECT_EQ(test.settings.AppGetUserSetting(own, "SaveCalibration", ""), "0");
  EXPECT_EQ(test.settings.AppGetUserSetting(own, "AppLaunchExe", ""), "0");
  selections = LoadUpgradeSelections(test.session);
  EXPECT_TRUE(selections.SaveMain && selections.UpgradeCalibration);
  EXPECT_FALSE(selections.SaveCalibration || selections.AppLaunchExe);
}

TEST(ManualUpgrade, DoesWhatItsCheckBoxesAskFor) {
  const simulator::Versions same = {"0126", "0400", "0100"};
  const simulator::Versions new_calibration = {"0126", "0400", "0102"};
  const simulator::Versions new_database = {"0126", "0405", "0100"};
  const auto nothing = [](UpgradeBench&) {};
  const struct {
    const char* name;
    simulator::Versions versions;
    UpgradeSelections selections;
    std::function<void(UpgradeBench&)> prepare;
    Failure failure;
    bool flashed;
    int files;                // saved
    std::size_t calibration;  // bytes in the radio afterwards
    const char* last_box;
  } rows[] = {
      {"nothing but the firmware",
       same,
       {false, false, true, true},
       nothing,
       Failure::kNone,
       true,
       0,
       130,
       "Completed downloading firmware"},
      {"personality",
       same,
       {true, false, true, true},
       nothing,
       Failure::kNone,
       true,
       1,
       130,
       "Completed"},
      {"calibration",
       new_calibration,
       {false, true, true, true},
       nothing,
       Failure::kNone,
       true,
       1,
       141,
       "Completed"},
      {"both",
       new_calibration,
       {true, true, true, true},
       nothing,
       Failure::kNone,
       true,
       2,
       141,
       "Completed"},
      {"calibration is not to be converted",
       new_calibration,
       {true, true, false, true},
       nothing,
       Failure::kRefused,
       true,
       2,
       141,
       "was not written back. It is in"},
      {"the database is incompatible",
       new_database,
       {true, true, true, true},
       [](auto& bench) {
         bench.user.WillAnswer("Start the programming application", Answer::kYes);
       },
       Failure::kRefused,
       true,
       2,
       130,
       "The programming application was not found"},
      {"no offer",
       new_database,
       {true, true, true, false},
       nothing,
       Failure::kRefused,
       true,
       2,
       130,
       "Database versions incompatible. Please use the Programming Application"},
      {"no firmware file",
       same,
       {true, true, true, true},
       [](auto& bench) { bench.firmware.image.BinaryFileName = "gone"; },
       Failure::kFile,
       false,
       0,
       130,
       "Please select a valid file to down load."},
      {"the data cannot be secured",
       same,
       {true, true, true, true},
       [](auto& bench) { bench.folder.Write("upgrade", "a file"); },
       Failure::kFile,
       false,
       2,
       130,
       "so the radio keeps its firmware"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    UpgradeBench bench;
    bench.WriteImage(row.versions);
    firmware::ChooseImageFile(bench.firmware.image, bench.folder.Path("PP11PhaseI.bin"));
    row.prepare(bench);
    EXPECT_EQ(UpgradeManually(bench.firmware, bench.db, bench.view, row.selections),
              row.failure == Failure::kNone);
    EXPECT_EQ(bench.session.failure, row.failure);
    EXPECT_EQ(bench.Flashed(), row.flashed);
    EXPECT_EQ(bench.folder.Read("database/10000125v0400.ops").has_value() +
                  bench.folder.Read("calibration/10000125v0100.ocs").has_value(),
              row.files);
    EXPECT_EQ(bench.radio().Data().Find(1, 0x2C)->data.size(), row.calibration);
    EXPECT_THAT(bench.user.messages.back().text, HasSubstr(row.last_box));
    EXPECT_EQ(bench.Note(), row.flashed && row.failure != Failure::kNone);
    EXPECT_FALSE(bench.link.Port(1).IsOpen());
  }
}

}  // namespace
}  // namespace zep::upgrade
