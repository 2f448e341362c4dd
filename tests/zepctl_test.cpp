// The commands of zepctl: what they print, what they ask, how they end, and what they leave behind.
#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/zepctl_testing.h"

namespace zep::cli {
namespace {

using nlohmann::json;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using testing::Zepctl;

using Words = std::vector<std::string>;

const std::string kConventional = "sim:conventional,unpaced";
const std::string kTrunked = "sim:trunked,unpaced";

TEST(ZepctlCommandLine, MistakesAreNamedAndEndWithStatus2) {
  for (const auto& [words, problem] : std::vector<std::pair<Words, std::string>>{
           {{"fetch", "--json"}, "fetch is no command or option that fits here."},
           {{"program"}, "FILE is missing."},
           {{"ports", "-p"}, "--port needs a value."},
           {{"read"}, "Please give one of FILE, --calibration FILE and --auto."},
           {{"--yes", "ports", "--no"}, "Please give one of --yes and --no, not both."},
           {{"--language", "de", "ports"}, "There is no language de."},
           {{"-p", "5=COM9", "ports"}, "5=COM9 names no port."},
           {{"-p", "1=sim:trunked", "-p", "1=sim:trunked", "ports"}, "Port 1 is named twice."},
           {{"-p", "sim:walkie", "ports"}, "\"walkie\" is no simulated radio."},
           {{"-p", "a", "-p", "b", "-p", "c", "-p", "d", "-p", "e", "ports"},
            "There are four ports. Please name four at most."},
       }) {
    SCOPED_TRACE(problem);
    Zepctl zepctl;
    EXPECT_EQ(zepctl.Run(words), 2);
    EXPECT_THAT(zepctl.Err(), HasSubstr(problem));
    EXPECT_THAT(zepctl.Err(), EndsWith("\"zepctl --help\" shows the commands and options.\n"));
    EXPECT_EQ(zepctl.Out(), "");
  }
}

TEST(ZepctlCommandLine, HelpIsAResultWhenAskedForAndAMistakeWithoutACommand) {
  Zepctl zepctl;
  EXPECT_EQ(zepctl.Run({"--help"}), 0);
  EXPECT_THAT(zepctl.Out(), HasSubstr("\n  firmware check IMAGE "));
  EXPECT_EQ(zepctl.Err(), "");
  zepctl.folder.Write("ZEPDLCA.mld", "en \"Commands\"\nfr \"Commandes\"\n");
  EXPECT_EQ(zepctl.Run({"--help", "--language", "fr"}), 0);
  EXPECT_THAT(zepctl.Out(), HasSubstr("\nCommandes\n"));
  EXPECT_EQ(zepctl.Run({}), 2);
  EXPECT_THAT(zepctl.Err(), HasSubstr("\n  identify "));
}

TEST(ZepctlIdentify, ShowsTheRadioAsATableOrAsOneObject) {
  Zepctl zepctl;
  EXPECT_EQ(zepctl.Run({"identify", "-p", "sim:conventional2,unpaced"}), 0);
  EXPECT_EQ(zepctl.Out(),
            "Model                ZEP 2100 II\n"
            "Model string         ZEP-H243L\n"
            "Type                 Conventional II\n"
            "Serial number        10043043\n"
            "Software version     0327\n"
            "Hardware version     0201\n"
            "Database version     0402\n"
            "Calibration version  0102\n"
            "Band                 HL 400-440 MHz\n"
            "Bandwidth            Universal\n"
            "Compliance code      L\n");
  // The radio is left as it was: every "^#" has its "^".
  EXPECT_THAT(zepctl.ToRadios(), EndsWith("^"));
}

TEST(ZepctlRead, SavesTheRadioAndAsksBeforeAFileIsOverwritten) {
  Zepctl zepctl;
  const std::string file = zepctl.folder.Path("radio.ops");
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "read", file}), 0);
  EXPECT_EQ(zepctl.Out(), "The data of radio 10000001 (ZEP 2200) is saved in FOLDER/radio.ops.\n");
  const std::string saved = zepctl.folder.Read("radio.ops").value_or("");
  EXPECT_THAT(saved, StartsWith("***\r\nZEP Data File\r\nSaved with the ZEP Download and "
                                "Configuration Application Version 1.0.0\r\n###\r\n---\r\n00"));

  zepctl.folder.Write("radio.ops", "old");
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "read", file}), 1);
  EXPECT_EQ(zepctl.Err(),
            "File exists overwrite? [y/N] no\n"
            "Nobody can be asked here. --yes answers such questions with Yes.\n");
  EXPECT_EQ(zepctl.folder.Read("radio.ops"), "old");
  zepctl.console.is_terminal = true;
  zepctl.console.typed_ahead = "n";
  zepctl.console.Type("Y");
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "read", file, "--quiet"}), 0);
  EXPECT_EQ(zepctl.Err(), "File exists overwrite? [y/N] Y\n");
  EXPECT_EQ(zepctl.folder.Read("radio.ops"), saved);
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "read", file, "--yes", "--json"}), 0);
  EXPECT_EQ(json::parse(zepctl.Out())["data_file"], "FOLDER/radio.ops");
}

TEST(ZepctlRead, NamesTheFilesOfDataAndCalibrationItself) {
  Zepctl zepctl;
  const std::string folder = zepctl.folder.Path();
  EXPECT_EQ(zepctl.Run({"-p", kTrunked, "read", "--auto", "--database-folder", folder + "/db",
                        "--calibration-folder", folder + "/cal"}),
            0);
  EXPECT_EQ(zepctl.Out(),
            "The data of radio 10004711 (ZEP 2250) is saved in FOLDER/db/10004711v0405.omn.\n"
            "The data of radio 10004711 (ZEP 2250) is saved in FOLDER/cal/10004711v0103.ocs.\n");
  EXPECT_EQ(zepctl.Err(),
            "Reading Radio database 1 of 3\nReading Radio database 1 of 3  100 %\n"
            "Reading Radio database 2 of 3\nReading Radio database 2 of 3  100 %\n"
            "Reading Radio database 3 of 3\nReading Radio database 3 of 3  100 %\n");
  EXPECT_TRUE(zepctl.folder.Read("cal/10004711v0103.ocs"));
}

TEST(ZepctlProgram, WritesWhatTheFileHolds) {
  testing::ZepctlBench bench;
  std::size_t written = 0;
  for (const std::string file : {"old.ops", "old.ocs"}) {
    EXPECT_EQ(bench.RunLine("-p sim:torvik,unpaced program F/" + file), 0);
    EXPECT_EQ(bench.Out(), "Radio 10000125 (ZEP 1100) is programmed with FOLDER/" + file + ".\n");
    const std::size_t before =
        std::exchange(written, bench.Radio("sim:torvik,unpaced").Counts().records_written);
    EXPECT_GT(written, before);
  }
}

TEST(ZepctlJobs, CtrlCCancelsAndReleasesTheRadio) {
  Zepctl zepctl;
  zepctl.console.interrupts = [](int look) { return look == 500 ? 1 : 0; };
  EXPECT_EQ(zepctl.Run({"-p", "sim:conventional", "read", zepctl.folder.Path("a.ops")}), 130);
  EXPECT_EQ(zepctl.Out(), "");
  EXPECT_THAT(zepctl.Err(), HasSubstr("FOLDER/a.ops is incomplete"));
  EXPECT_THAT(zepctl.ToRadios(), EndsWith("^"));
  EXPECT_LT(zepctl.Radio("sim:conventional").Counts().items_read, 40U);
}

TEST(ZepctlPorts, ShowsDevicesWithTheirNextStepsAndThePorts) {
  Zepctl zepctl;
  using platform::SerialDeviceState;
  zepctl.devices = {
      {"/dev/ttyUSB0", "FTDI FT232R USB UART", "0403:6001", "A5069RR4", SerialDeviceState::kFree,
       ""},
      {"/dev/ttyS0", "16550A", "", "", SerialDeviceState::kBusy, "minicom (process 4711)"}};
  EXPECT_EQ(zepctl.Run({"ports", "-p", kConventional, "-p", "1=" + kTrunked}), 0);
  EXPECT_EQ(zepctl.Out(),
            "Device        Adapter               USB id     Serial number  State\n"
            "/dev/ttyUSB0  FTDI FT232R USB UART  0403:6001  A5069RR4       free\n"
            "/dev/ttyS0    16550A                                          in use\n"
            "\n"
            "/dev/ttyS0 is in use by minicom (process 4711). Please close that program, then try "
            "again.\n"
            "\n"
            "Port  Device                    State\n"
            "1     sim:trunked,unpaced       Active\n"
            "2     sim:conventional,unpaced  Active\n"
            "3     -                         Not Available\n"
            "4     -                         Not Available\n");
}

TEST(ZepctlPorts, ThatCannotBeOpenedEndAJobBeforeItBegins) {
  Zepctl zepctl;
  const std::string image = zepctl.WriteImage("model51-e1-2mbit.bin");
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "-p", "/dev/none", "firmware", "write", image}), 3);
  EXPECT_THAT(zepctl.Err(), HasSubstr("There is no serial device /dev/none on this computer."));
  EXPECT_EQ(zepctl.ToRadios(), "");

  // The settings choose a port that is gone.
  const std::string key = "Software\\Vorn Electronics Ltd\\ZEP\\Download";
  zepctl.user_hive.Write(key, "CommPort2Device", "/dev/gone");
  zepctl.user_hive.Write(key, "CommPort2State", "1");
  EXPECT_EQ(zepctl.Run({"identify"}), 3);
  EXPECT_THAT(zepctl.Err(), HasSubstr("No port is chosen. Please name the radio's port"));
  zepctl.user_hive.Write(key, "CommPort2Device", kTrunked);
  EXPECT_EQ(zepctl.Run({"identify"}), 0);
}

TEST(ZepctlPorts, OneOfSeveralIsChosenByTheUserOrNone) {
  Zepctl zepctl;
  const Words both = {"-p", kConventional, "-p", "4=" + kTrunked, "identify", "--quiet"};
  EXPECT_EQ(zepctl.Run(both), 3);
  EXPECT_THAT(zepctl.Err(), StartsWith("This works on one radio at a time. Please name one port"));
  EXPECT_EQ(zepctl.ToRadios(), "");

  zepctl.console.is_terminal = true;
  zepctl.console.Type("4");
  EXPECT_EQ(zepctl.Run(both), 0);
  EXPECT_THAT(zepctl.Err(), StartsWith("Select Port to Read: 1 (sim:conventional,unpaced)"));
  EXPECT_THAT(zepctl.Out(), HasSubstr("ZEP 2250"));
  zepctl.console.TypeCtrlC();
  EXPECT_EQ(zepctl.Run(both), 130);
}

TEST(ZepctlData, CheckNamesEachFaultWithItsLine) {
  Zepctl zepctl;
  const std::string head = "0000115A45502D4831353130303430353032303138\r\n";
  const std::string good =
      zepctl.folder.Write("good.ops", head + "02000401020304F0\r\n~~~\r\n02000401020304F0\r\n");
  EXPECT_EQ(zepctl.Run({"data", "check", good}), 0);
  EXPECT_EQ(zepctl.Run({"data", "show", good}), 0);
  EXPECT_THAT(zepctl.Out(), EndsWith("Item  Network  Records  Bytes\n"
                                     "00          1        1     17\n"
                                     "02          1        1      4\n"
                                     "02          2        1      4\n"));
  const std::string bad =
      zepctl.folder.Write("bad.ops", head + "02000401020304F1\r\n~~~\r\n0200040G020304F0\r\n");
  EXPECT_EQ(zepctl.Run({"data", "show", bad}), 6);
  EXPECT_EQ(zepctl.Run({"data", "check", bad}), 6);
  EXPECT_EQ(zepctl.Out(),
            "Line 2: The record's checksum is F1, but should be F0.\n"
            "Line 4: This is no record: a record is made of pairs of the digits 0 to 9 and A to F, "
            "at least four of them.\n"
            "FOLDER/bad.ops: records: 3, networks: 2, faults: 2. It is for ZEP 2200 (51).\n");
}

TEST(ZepctlTrace, HoldsEveryByteWithPortAndDirection) {
  Zepctl zepctl;
  const std::string file = zepctl.folder.Path("wire.txt");
  EXPECT_EQ(zepctl.Run({"-p", "2=" + kTrunked, "identify", "--trace", file}), 0);
  const std::string trace = zepctl.folder.Read("wire.txt").value_or("");
  EXPECT_THAT(trace, HasSubstr("    2  9600,n,8,1\n"));
  EXPECT_THAT(trace, HasSubstr("    2  < 76" + std::string(47, ' ') + "v\n"));
  EXPECT_THAT(trace, HasSubstr("    2  > 72 30 30 0D" + std::string(38, ' ') + "r00.\n"));
}

}  // namespace
}  // namespace zep::cli
