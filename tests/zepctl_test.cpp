// The commands of zepctl: what they print, what they ask, how they end, and what they leave behind.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/zepctl_testing.h"

namespace zep::cli {
namespace {

using nlohmann::json;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using testing::Zepctl;

using Words = std::vector<std::string>;

const std::string kConventional = "sim:conventional,unpaced";
const std::string kTrunked = "sim:trunked,unpaced";

TEST(ZepctlCommandLine, MistakesAreNamedAndEndWithStatus2) {
  struct Row {
    Words words;
    std::string problem;
  };
  for (const Row& row : std::vector<Row>{
           {{"fetch"}, "fetch is no command or option that fits here."},
           {{"firmware", "burn", "a.bin"}, "burn is no command or option that fits here."},
           {{"ports", "--colour"}, "--colour is no command or option that fits here."},
           {{"identify", "radio"}, "radio is no command or option that fits here."},
           {{"program"}, "FILE is missing."},
           {{"firmware", "write", "--at-once"}, "IMAGE is missing."},
           {{"ports", "-p"}, "--port needs a value."},
           {{"read"}, "Please give one of FILE, --calibration FILE and --auto."},
           {{"read", "a.ops", "--auto"}, "Please give one of FILE, --calibration FILE and --auto."},
           {{"--yes", "ports", "--no"}, "Please give one of --yes and --no, not both."},
           {{"--language", "de", "ports"}, "There is no language de."},
           {{"--string-table", "Zap", "ports"}, "There is no string table Zap."},
           {{"-p", "5=COM9", "ports"}, "5=COM9 names no port."},
           {{"-p", "2=", "ports"}, "2= names no port."},
           {{"-p", "1=sim:trunked", "-p", "1=sim:trunked", "ports"}, "Slot 1 is named twice."},
           {{"-p", "/dev/x", "-p", "2=/dev/x", "ports"}, "/dev/x is named twice."},
           {{"-p", "sim:walkie", "ports"}, "\"walkie\" is no simulated radio."},
           {{"-p", "a", "-p", "b", "-p", "c", "-p", "d", "-p", "e", "ports"}, "four ports at most"},
       }) {
    SCOPED_TRACE(row.problem);
    Zepctl zepctl;
    EXPECT_EQ(zepctl.Run(row.words), 2);
    EXPECT_THAT(zepctl.Err(), HasSubstr(row.problem));
    EXPECT_THAT(zepctl.Err(), EndsWith("\"zepctl --help\" shows the commands and options.\n"));
    EXPECT_EQ(zepctl.Out(), "");
  }
}

TEST(ZepctlCommandLine, HelpTellsEveryCommandAndOption) {
  Zepctl zepctl;
  EXPECT_EQ(zepctl.Run({"--help"}), 0);
  for (const char* word :
       {"ports", "identify", "read FILE", "program FILE", "firmware check IMAGE",
        "firmware write IMAGE", "firmware read IMAGE", "data check FILE", "data show FILE",
        "-p, --port [N=]DEVICE", "--application-folder DIR", "--string-table NAME", "--yes", "--no",
        "--inhouse", "--language", "--trace FILE", "--json", "--quiet"}) {
    EXPECT_THAT(zepctl.Out(), HasSubstr(std::string("\n  ") + word));
  }
  EXPECT_EQ(zepctl.Err(), "");

  EXPECT_EQ(zepctl.Run({"firmware", "write", "--help"}), 0);
  EXPECT_THAT(zepctl.Out(), StartsWith("Usage: zepctl [options] firmware write IMAGE\n"));
  EXPECT_THAT(zepctl.Out(), HasSubstr("\n  --at-once "));
  EXPECT_THAT(zepctl.Out(), Not(HasSubstr("--port")));

  // Without a command the help is what the user needs, but nothing was done.
  EXPECT_EQ(zepctl.Run({}), 2);
  EXPECT_THAT(zepctl.Err(), HasSubstr("\n  identify "));
  EXPECT_EQ(zepctl.Run({"data"}), 2);
  EXPECT_THAT(zepctl.Err(), HasSubstr("\n  data check FILE "));
  EXPECT_THAT(zepctl.Err(), Not(HasSubstr("identify")));

  EXPECT_EQ(zepctl.Run({"--version"}), 0);
  EXPECT_EQ(zepctl.Out(), "zepctl 1.0.0\n");
}

TEST(ZepctlCommandLine, SpeaksTheLanguageOfTheOptionOrOfTheSettings) {
  Zepctl zepctl;
  zepctl.folder.Write("ZEPDLCA.mld", "en \"Commands\"\nfr \"Commandes\"\nzh \"命令\"\n");
  EXPECT_EQ(zepctl.Run({"--help", "--language", "fr"}), 0);
  EXPECT_THAT(zepctl.Out(), HasSubstr("\nCommandes\n"));
  zepctl.user_hive.Write("Software\\Vorn Electronics Ltd\\ZEP", "UILanguage", "4");
  EXPECT_EQ(zepctl.Run({"--help"}), 0);
  EXPECT_THAT(zepctl.Out(), HasSubstr("\n命令\n"));
  EXPECT_EQ(zepctl.Run({"--help", "--language", "en"}), 0);
  EXPECT_THAT(zepctl.Out(), HasSubstr("\nCommands\n"));
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
  EXPECT_EQ(zepctl.Err(), "");

  EXPECT_EQ(zepctl.Run({"--json", "-p", kTrunked, "identify"}), 0);
  const json result = json::parse(zepctl.Out());
  EXPECT_EQ(result["ok"], true);
  EXPECT_EQ(result["exit_status"], 0);
  EXPECT_EQ(result["messages"], json::array());
  EXPECT_EQ(result["radio"]["model"], "ZEP 2250");
  EXPECT_EQ(result["radio"]["model_code"], "52");
  EXPECT_EQ(result["radio"]["type"], "Trunked");
  EXPECT_EQ(result["radio"]["networks"], 3);
  EXPECT_EQ(result["radio"]["serial_number"], "10004711");
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
  EXPECT_EQ(zepctl.Err(), "File exists overwrite? [y/N] no\n");
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "read", file, "--no"}), 1);
  zepctl.console.is_terminal = true;
  zepctl.console.Type("");
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "read", file, "--quiet"}), 1);
  zepctl.console.TypeCtrlC();
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "read", file, "--quiet"}), 130);
  EXPECT_EQ(zepctl.folder.Read("radio.ops"), "old");

  zepctl.console.Type("Y");
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "read", file, "--quiet"}), 0);
  EXPECT_EQ(zepctl.Err(), "File exists overwrite? [y/N] Y\n");
  EXPECT_EQ(zepctl.folder.Read("radio.ops"), saved);
  zepctl.console.is_terminal = false;
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "read", file, "--yes", "--json"}), 0);
  const json result = json::parse(zepctl.Out());
  EXPECT_EQ(result["data_file"], "FOLDER/radio.ops");
  EXPECT_EQ(
      result["messages"],
      json::parse(R"([{"icon": "question", "text": "File exists overwrite?", "answer": true}])"));
}

TEST(ZepctlRead, NamesFilesItselfAndReadsCalibration) {
  Zepctl zepctl;
  const std::string folder = zepctl.folder.Path();
  EXPECT_EQ(zepctl.Run({"-p", kTrunked, "read", "--auto", "--database-folder", folder + "/db",
                        "--calibration-folder", folder + "/cal"}),
            0);
  EXPECT_EQ(zepctl.Out(),
            "The data of radio 10004711 (ZEP 2250) is saved in FOLDER/db/10004711v0405.omn.\n"
            "The data of radio 10004711 (ZEP 2250) is saved in FOLDER/cal/10004711v0103.ocs.\n");
  EXPECT_EQ(zepctl.Run({"-p", kTrunked, "read", "--calibration", folder + "/mine.ocs"}), 0);
  EXPECT_EQ(zepctl.folder.Read("mine.ocs"), zepctl.folder.Read("cal/10004711v0103.ocs"));
  EXPECT_TRUE(zepctl.folder.Read("mine.ocs"));
}

TEST(ZepctlProgram, WritesDataAndCalibrationFilesThatFitAndRefusesOthers) {
  Zepctl zepctl;
  zepctl.folder.Write("a.ops", simulator::DataFileText(simulator::KnownRadios()[0].profile()));
  zepctl.folder.Write("a.ocs",
                      simulator::CalibrationFileText(simulator::KnownRadios()[0].profile()));
  zepctl.folder.Write("empty.ops", "");
  zepctl.folder.Write("binary.ops", std::string(100, '\0'));
  struct Row {
    std::string radio;
    std::string file;
    int status;
    std::string message;  // on the standard output when it is done
  };
  for (const Row& row : std::vector<Row>{
           {kConventional, "a.ops", 0, "Radio 10000001 (ZEP 2200) is programmed with "},
           {kConventional, "a.ocs", 0, "Radio 10000001 (ZEP 2200) is programmed with "},
           {kTrunked, "a.ops", 1, "Can not program a Conventional file into a Trunked radio."},
           {kConventional + ",database=0402", "a.ops", 1, "Database versions incompatible."},
           {kConventional, "empty.ops", 6, "Data file is corrupt."},
           {kConventional, "binary.ops", 6, "is not a file of radio data"},
           {kConventional, "none.ops", 6, "There is no file FOLDER/none.ops."},
           {kConventional, ".", 6, "is a folder. Please choose a file."},
           {kConventional + ",fault=brace@write:5=C09", "a.ops", 5,
            "Radio reported error: {C09} Dynamic database full"},
       }) {
    SCOPED_TRACE(row.radio + " " + row.file);
    EXPECT_EQ(zepctl.Run({"-p", row.radio, "program", zepctl.folder.Path(row.file)}), row.status);
    EXPECT_THAT(row.status == 0 ? zepctl.Out() : zepctl.Err(), HasSubstr(row.message));
    EXPECT_EQ(zepctl.Out().empty(), row.status != 0);
  }
  EXPECT_GT(zepctl.Radio(kConventional).Counts().records_written, 50U);
  EXPECT_EQ(zepctl.Radio(kTrunked).Counts().records_written, 0U);
}

TEST(ZepctlJobs, EndWithTheStatusOfWhatWentWrong) {
  struct Row {
    std::string fault;
    int status;
    std::string message;
  };
  for (const Row& row : std::vector<Row>{
           {"silent@caret", 4, "The radio is not responding, please check the connections."},
           {"silent@read:9", 4, "The radio is not responding, please check the connections."},
           {"brace@read:9=C04", 5, "Radio reported error: {C04} Item not recognized"},
           {"badsum@read:9", 5, "Radio reported error: {C02} Record corrupted"},
           {"cut@read:9", 3, "Error: 5 "},
       }) {
    SCOPED_TRACE(row.fault);
    Zepctl zepctl;
    const std::string device = kConventional + ",fault=" + row.fault;
    EXPECT_EQ(zepctl.Run({"--json", "-p", device, "read", zepctl.folder.Path("a.ops")}),
              row.status);
    EXPECT_THAT(zepctl.Err(), HasSubstr(row.message));
    const json result = json::parse(zepctl.Out());
    EXPECT_EQ(result["ok"], false);
    EXPECT_EQ(result["exit_status"], row.status);
    EXPECT_FALSE(result.contains("data_file"));
    EXPECT_THAT(result["messages"].dump(), HasSubstr(row.message));
  }
}

TEST(ZepctlJobs, CtrlCCancelsAndReleasesTheRadio) {
  for (const bool is_terminal : {false, true}) {
    SCOPED_TRACE(is_terminal);
    Zepctl zepctl;
    zepctl.console.is_terminal = is_terminal;
    zepctl.console.interrupts = [](int look) { return look == 500 ? 1 : 0; };
    EXPECT_EQ(zepctl.Run({"-p", "sim:conventional", "read", zepctl.folder.Path("a.ops")}), 130);
    EXPECT_EQ(zepctl.Out(), "");
    EXPECT_THAT(zepctl.Err(), HasSubstr("FOLDER/a.ops is incomplete"));
    EXPECT_THAT(zepctl.ToRadios(), EndsWith("^"));
    EXPECT_LT(zepctl.Radio("sim:conventional").Counts().items_read, 40U);
  }
}

TEST(ZepctlPorts, ShowsDevicesWithTheirNextStepsAndTheSlots) {
  Zepctl zepctl;
  using platform::SerialDeviceState;
  zepctl.devices = {
      {"/dev/ttyUSB0", "FTDI FT232R USB UART", "0403:6001", "A5069RR4", SerialDeviceState::kFree,
       ""},
      {"/dev/ttyS0", "16550A", "", "", SerialDeviceState::kBusy, "minicom (process 4711)"}};
  EXPECT_EQ(zepctl.Run({"ports", "-p", "3=" + kTrunked, "-p", kConventional}), 0);
  EXPECT_EQ(zepctl.Out(),
            "Device        Adapter               USB id     Serial number  State\n"
            "/dev/ttyUSB0  FTDI FT232R USB UART  0403:6001  A5069RR4       free\n"
            "/dev/ttyS0    16550A                                          in use\n"
            "\n"
            "/dev/ttyS0 is in use by minicom (process 4711). Please close that program, then try "
            "again.\n"
            "\n"
            "Slot  Device                    State\n"
            "1     sim:conventional,unpaced  Active\n"
            "2     -                         Not Available\n"
            "3     sim:trunked,unpaced       Active\n"
            "4     -                         Not Available\n");
  EXPECT_EQ(zepctl.Run({"ports", "--json", "-p", kTrunked}), 0);
  const json result = json::parse(zepctl.Out());
  EXPECT_EQ(result["devices"][1]["in_use_by"], "minicom (process 4711)");
  EXPECT_EQ(result["slots"][0], json::parse(R"({"slot": 1, "device": "sim:trunked,unpaced",
                                                "state": "Active"})"));
  zepctl.devices.clear();
  EXPECT_EQ(zepctl.Run({"ports", "-p", kTrunked}), 0);
  EXPECT_THAT(zepctl.Out(), StartsWith("There is no serial device on this computer."));
}

TEST(ZepctlPorts, ThatCannotBeOpenedEndAJobBeforeItBegins) {
  Zepctl zepctl;
  const std::string image = zepctl.WriteImage("model51-e1-2mbit.bin");
  EXPECT_EQ(zepctl.Run({"-p", kConventional, "-p", "/dev/none", "firmware", "write", image}), 3);
  EXPECT_EQ(zepctl.Err(),
            "A communication port has been selected that does not exist on the PC, please select "
            "another port from menu File->Preferences.\n"
            "There is no serial device /dev/none on this computer. Please plug in the adapter of "
            "the programming lead, or choose a device from the list of ports.\n");
  EXPECT_EQ(zepctl.ToRadios(), "");

  // The settings choose a port that is gone.
  const std::string key = "Software\\Vorn Electronics Ltd\\ZEP\\Download";
  zepctl.user_hive.Write(key, "CommPort2Device", "/dev/gone");
  zepctl.user_hive.Write(key, "CommPort2State", "1");
  EXPECT_EQ(zepctl.Run({"identify"}), 3);
  EXPECT_THAT(zepctl.Err(), HasSubstr("There is no serial device /dev/gone on this computer."));
  EXPECT_THAT(zepctl.Err(), HasSubstr("No port is chosen. Please name the radio's port"));

  zepctl.user_hive.Write(key, "CommPort2Device", kTrunked);
  EXPECT_EQ(zepctl.Run({"identify"}), 0);
  EXPECT_THAT(zepctl.Out(), HasSubstr("ZEP 2250"));
}

TEST(ZepctlPorts, OneOfSeveralIsChosenByTheUserOrNone) {
  Zepctl zepctl;
  const Words both = {"-p", kConventional, "-p", "4=" + kTrunked, "identify", "--quiet"};
  EXPECT_EQ(zepctl.Run(both), 3);
  EXPECT_EQ(zepctl.Err(),
            "This works on one radio at a time. Please name one port with -p: "
            "1 (sim:conventional,unpaced), 4 (sim:trunked,unpaced).\n");
  EXPECT_EQ(zepctl.ToRadios(), "");

  zepctl.console.is_terminal = true;
  zepctl.console.width = 100;
  zepctl.console.Type("2");
  zepctl.console.Type("4");
  EXPECT_EQ(zepctl.Run(both), 0);
  EXPECT_THAT(zepctl.Err(), StartsWith("Select Port to Read: 1 (sim:conventional,unpaced), 4 "));
  EXPECT_THAT(zepctl.Out(), HasSubstr("ZEP 2250"));
}

TEST(ZepctlData, CheckNamesEachFaultWithItsLine) {
  Zepctl zepctl;
  zepctl.folder.Write("good.ops",
                      "0000115A45502D4831353130303430353032303138\r\n02000401020304F0\r\n"
                      "02000401020304F0\r\n");
  EXPECT_EQ(zepctl.Run({"data", "check", zepctl.folder.Path("good.ops")}), 0)
      << zepctl.Out() << zepctl.Err();
  EXPECT_EQ(zepctl.Out(),
            "FOLDER/good.ops: records: 3, networks: 1, faults: 0. It is for ZEP 2200 (51).\n");

  zepctl.folder.Write("bad.ops",
                      "0000115A45502D4831353130303430353032303138\r\n02000401020304F1\r\n"
                      "~~~\r\n0200040G020304F0\r\n");
  EXPECT_EQ(zepctl.Run({"data", "check", zepctl.folder.Path("bad.ops")}), 6);
  EXPECT_EQ(zepctl.Out(),
            "Line 2: The record's checksum is F1, but should be F0.\n"
            "Line 4: This is no record: a record is made of pairs of the digits 0 to 9 and A to F, "
            "at least four of them.\n"
            "FOLDER/bad.ops: records: 3, networks: 2, faults: 2. It is for ZEP 2200 (51).\n");
  EXPECT_EQ(zepctl.Run({"data", "check", "--json", zepctl.folder.Path("bad.ops")}), 6);
  const json result = json::parse(zepctl.Out());
  EXPECT_EQ(result["findings"].size(), 2U);
  EXPECT_EQ(result["findings"][1]["line"], 4);
}

TEST(ZepctlData, ShowsItemsOfEachNetwork) {
  Zepctl zepctl;
  const std::string file = zepctl.folder.Write(
      "a.omn",
      "***\r\nZEP Multiple Network Data File\r\n---\r\n"
      "0000115A45502D4831353230303430353032303137\r\n15000401020304DD\r\n150102090AD5\r\n"
      "~~~\r\n15000401020304DD\r\n");
  EXPECT_EQ(zepctl.Run({"data", "show", file}), 0) << zepctl.Err();
  EXPECT_EQ(zepctl.Out(),
            "File              FOLDER/a.omn\n"
            "Kind              multi-network data file\n"
            "Model             ZEP 2250 (52)\n"
            "Model string      ZEP-H1520\n"
            "Type              Trunked\n"
            "Database version  0405\n"
            "Hardware version  0201\n"
            "Networks          2\n"
            "Records           4\n"
            "\n"
            "Item  Network  Records  Bytes\n"
            "00          1        1     17\n"
            "15          1        2      6\n"
            "15          2        1      4\n");
  EXPECT_EQ(zepctl.Run({"data", "show", file, "--json"}), 0);
  const json result = json::parse(zepctl.Out());
  EXPECT_EQ(result["data"]["model_code"], "52");
  EXPECT_EQ(result["items"][1]["records"],
            json::parse(R"([{"line": 5, "record": "15000401020304DD"},
                            {"line": 6, "record": "150102090AD5"}])"));
}

TEST(ZepctlSettings, ThatCannotBeUsedAreToldAndTheWorkGoesOn) {
  Zepctl zepctl;
  const std::string settings = zepctl.folder.Write("settings.ini", "[Software\n\xFF\xFE\n");
  const auto hive = platform::MakeFileHive(settings);
  platform::MemoryHive machine_hive;
  const cli::Surroundings surroundings{
      .console = zepctl.console,
      .clock = zepctl.clock,
      .user_hive = *hive,
      .machine_hive = machine_hive,
      .make_port = [&](const std::string& device) { return MakePort(device, zepctl.clock); },
      .list_devices = [] { return std::vector<platform::SerialDeviceInfo>(); }};
  EXPECT_EQ(RunZepctl({"-p", kTrunked, "identify", "--application-folder", zepctl.folder.Path()},
                      surroundings),
            ExitStatus::kDone);
  EXPECT_THAT(zepctl.Err(), HasSubstr("settings.ini is damaged."));
  EXPECT_THAT(zepctl.Out(), HasSubstr("ZEP 2250"));
}

TEST(ZepctlTrace, HoldsEveryByteWithPortAndDirection) {
  Zepctl zepctl;
  const std::string file = zepctl.folder.Path("wire.txt");
  EXPECT_EQ(zepctl.Run({"-p", "2=" + kTrunked, "identify", "--trace", file}), 0);
  const std::string trace = zepctl.folder.Read("wire.txt").value_or("");
  const std::string gap(47, ' ');
  EXPECT_THAT(trace, HasSubstr("    2  open sim:trunked,unpaced\n"));
  EXPECT_THAT(trace, HasSubstr("    2  9600,n,8,1\n"));
  EXPECT_THAT(trace, HasSubstr("    2  > 5E" + gap + "^\n"));
  EXPECT_THAT(trace, HasSubstr("    2  < 76" + gap + "v\n"));
  EXPECT_THAT(trace, HasSubstr("    2  > 72 30 30 0D" + gap.substr(9) + "r00.\n"));
  EXPECT_THAT(trace, HasSubstr("   1.00"));  // the wait of one second before the first item

  EXPECT_EQ(zepctl.Run({"-p", kTrunked, "identify", "--trace", zepctl.folder.Path("no/wire.txt")}),
            6);
  EXPECT_THAT(zepctl.Err(), HasSubstr("There is no folder FOLDER/no."));
}

}  // namespace
}  // namespace zep::cli
