// zepctl's upgrade, conversions and comparison of files.
#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/upgrade_testing.h"
#include "tests/zepctl_testing.h"

namespace zep::cli {
namespace {

using ::testing::HasSubstr;
using Bench = testing::ZepctlBench;

const std::string kRadio = Bench::kRadio;

TEST(ZepctlUpgrade, GivesARadioNewFirmwareAndItsData) {
  Bench bench;
  const std::string line =
      "-p " + kRadio + " upgrade --image F/my.bin --defaults F/default.ops --string-table ";
  EXPECT_EQ(bench.RunLine(line + "Torvik"), 0);
  EXPECT_EQ(bench.Out(),
            "Radio 10000125 (Torvik 1100) now has firmware 0126, database 0405 and calibration "
            "0103. Its former data is in FOLDER/database/10000125v0400.ops and "
            "FOLDER/calibration/10000125v0100.ocs.\n");
}

// The time of a process that is killed, as by a power cut, at a look at the local time, which is
// when a line of the log or the head of a data file begins, or in a turn of the user interface.
struct MortalClock final : platform::Clock {
  platform::Duration Now() override { return clock.Now(); }
  void Sleep(platform::Duration duration) override { clock.Sleep(duration); }
  std::tm LocalTime() override {
    if (++looks == last_look) std::raise(SIGKILL);
    return clock.LocalTime();
  }

  platform::VirtualClock clock;
  int looks = 0;
  int turns = 0;
  int last_look = 0;
  int last_turn = 0;
};

const std::string kUpgrade =
    "upgrade --image F/my.bin --defaults F/default.ops --yes "
    "--string-table Torvik -p " +
    kRadio;

// Runs an upgrade on a radio of its own.
void UpgradeInTheLifeOf(MortalClock& time, Bench& bench) {
  bench.console.interrupts = [&time](int turn) {
    if ((time.turns = turn) == time.last_turn) std::raise(SIGKILL);
    return 0;
  };
  std::vector<std::string> arguments = bench.Words(kUpgrade);
  arguments.insert(arguments.begin(), {"--application-folder", bench.folder.Path()});
  platform::MemoryHive machine_hive;
  RunZepctl(
      arguments, bench.console,
      {.clock = time,
       .user_hive = bench.user_hive,
       .machine_hive = machine_hive,
       .make_port = [&time](const std::string& device) { return programs::MakePort(device, time); },
       .list_devices = [] { return std::vector<platform::SerialDeviceInfo>(); },
       .start_program = [](const std::string&) { return platform::SystemError{}; }});
}

TEST(ZepctlUpgrade, HasTheDataOnTheDiskWhereverItIsKilled) {
  const std::string data_file = "database/10000125v0400.ops";
  const std::string calibration_file = "calibration/10000125v0100.ocs";
  Bench good;
  MortalClock whole;
  UpgradeInTheLifeOf(whole, good);
  ASSERT_THAT(good.Out(), HasSubstr("now has firmware 0126"));

  std::vector<std::pair<int, int>> ends;
  for (int look = 1; look <= whole.looks; ++look) ends.emplace_back(look, 0);
  for (int part = 1; part < 16; ++part) ends.emplace_back(0, whole.turns * part / 16);
  int saved = 0;
  for (const auto& [look, turn] : ends) {
    SCOPED_TRACE("look " + std::to_string(look) + ", turn " + std::to_string(turn));
    Bench bench;
    MortalClock time;
    time.last_look = look;
    time.last_turn = turn;
    EXPECT_EXIT(UpgradeInTheLifeOf(time, bench), ::testing::KilledBySignal(SIGKILL), "");
    const std::string log = bench.folder.Read("upgrade.log").value_or("");
    const bool is_saved = log.find("Personality data saved as: ") != std::string::npos;
    saved += is_saved;
    if (is_saved) {
      EXPECT_EQ(bench.folder.Read(data_file), good.folder.Read(data_file));
      EXPECT_EQ(bench.folder.Read(calibration_file), good.folder.Read(calibration_file));
    }
    EXPECT_EQ(bench.RunLine(kUpgrade), 0);
    if (!is_saved) continue;
    EXPECT_THAT(bench.Err(), HasSubstr("An earlier upgrade did not finish. The data of that radio "
                                       "is in FOLDER/" +
                                       data_file + " and FOLDER/" + calibration_file));
    EXPECT_EQ(bench.folder.Read(data_file + ".unfinished"), good.folder.Read(data_file));
  }
  EXPECT_GT(saved, 15);
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
        "personality F/old.ops F/new --to 399 --defaults F/default.ops|1||",
        "personality F/old.ops F/new --to 399 --defaults F/default.ops --yes|0||made",
        "personality F/old.ocs F/new --to 405 --defaults F/default.ops|1||",
        "personality F/old.ops F/old.ops --to 405 --defaults F/default.ops --yes|1||",
        "calibration F/old.ocs F/old.ocs --to 103 --yes|1||",
        "calibration F/old.ocs F/new --to 103x|2||",
        "personality F/old.ops F/new --to new|2||",
        "personality F/old.ops F/new --to 406|1||",
        "personality F/none.ops F/new --to 405|6||",
        "calibration F/old.ocs F/new --to 103|0|from version 100 to 103|made",
        "calibration F/lower-old.ocs F/new --to 103|0|from version 100 to 103|made",
        "personality F/lower-old.ops F/new --to 405 --defaults F/lower-old.ops|0||made",
        "calibration F/old.ocs F/new --to 101 --dry-run|0|-       3840          100 -> 101\n|",
        "calibration F/old.ocs F/new --from 102 --to 103|6||",
        "calibration F/old.ops F/new --from 100 --to 101|1||",
        "personality F/old.ops F/default.ops --to 405 --defaults F/default.ops --yes|1||",
        "personality F/old.ops F/new --to 405 --defaults F/old.ocs|6||",
        "personality F/old.ops F/new --to 204|1||",
        "personality F/old.ops F/none/new --to 405 --defaults F/default.ops|6||"}) {
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

TEST(ZepctlConvert, TellsOfOddDataWithoutALog) {
  Bench bench;
  bench.folder.Write("few.ops", testing::DataFileOf({testing::Identity("0405")}));
  EXPECT_EQ(bench.RunLine("convert personality F/old.ops F/new --to 402 --defaults F/few.ops "
                          "--dry-run"),
            0);
  EXPECT_EQ(bench.Err(),
            "Item 05 of the default settings has no byte 4, 00 is used\n"
            "Item 07 of the default settings has no byte 1, 00 is used\n");
  EXPECT_FALSE(bench.folder.Read("upgrade.log"));
}

}  // namespace
}  // namespace zep::cli
