#include "radiodb/item_records.h"
#include "simulator/samples.h"
#include "simulator/simulated_port.h"
#include "tests/radiodb_testing.h"

namespace zep::radiodb {
namespace {

using services::Answer;
using services::ConBytNumToHex;
using testing::kConventional;
using testing::kTrunked;
using testing::ScriptedRadio;
using testing::TestSession;
using enum TransferKind;

const std::string kInvalidModel =
    "information Radio Model is invalid, will be set to 'ZEP 1100'. -> OK\n";
const std::string kNoAnswer =
    "information The radio is not responding, please check the connections. -> OK\n";
const std::string kError = "critical [Radio reported error] ";
const std::string kNoItem = kError + "{C04} Item not recognized -> OK\n";

TEST(RadioModels, EveryCodeHasItsTierAndType) {
  std::string models;
  for (int code = 10; code < 100; ++code) {
    if (const auto model = FindRadioModel(std::to_string(code)))
      models += std::to_string(code) + "=" + std::to_string(model->tier) + "/" +
                std::to_string(static_cast<int>(model->type)) + " ";
  }
  EXPECT_EQ(models,
            "11=1/1 12=1/2 21=2/1 22=2/2 31=3/1 41=4/1 42=6/2 43=10/3 51=13/1 52=7/2 61=5/1 62=8/2 "
            "63=11/3 71=9/1 81=12/1 ");
}

// Model string, tier, software, hardware, database and calibration version; the identity records.
TEST(RadioIdentity, ItemZeroIsCutByItsLength) {
  const auto tell = [](std::string_view data) {
    TestSession test;
    RadioIdentity radio;
    ProcessItem0(test.session, data, IdentityUse::kTransfer, radio);
    const std::string told = radio.model_string + " " + std::to_string(radio.tier) + " " +
                             radio.software_version + " " + radio.hardware_version + " " +
                             radio.database_version + " " + radio.calibration_version + "\n";
    ProcessFreqBandInfo(test.session, "E83200000000", IdentityUse::kTransfer, radio);
    ProcessRadioSerialNumber(test.session, "001267", IdentityUse::kTransfer, radio);
    const auto line = [](const std::optional<Record>& record) {
      return std::string(record ? record->Line() : "") + "\n";
    };
    return told + line(DatabaseIdentityRecord(radio)) + line(CalibrationIdentityRecord(radio)) +
           test.user.Boxes();
  };
  EXPECT_EQ(tell("5A45502D483131313030313235303430302C303130303031"),
            "ZEP-H1110 1 0125 0000 0400 0100\n0000115A45502D483231314C303430303030303027\n"
            "00001C5A45502D483231314C303132352C30303030303430302C303100126722\n");
  EXPECT_EQ(tell("5A45502D4831343330303332372C30323031303430322C303130323031"),
            "ZEP-H1430 10 0327 0201 0402 0102\n0000115A45502D483234334C30343032303230311D\n"
            "00001C5A45502D483234334C303332372C30323031303430322C303100126714\n");
  EXPECT_EQ(tell("5A45502D4831353230303333352C5354442C30323031303430352C303130333031"),
            "ZEP-H1520 7 0335 0201 0405 0103\n0000155A45502D483235324C303430353032303116\n"
            "0000205A45502D483235324C303333352C5354442C30323031303430352C3031001267F7\n");
  EXPECT_EQ(tell(std::string(50, '3')), " 1    \n\n\n" + kInvalidModel);
}

// Band letter, bandwidth and compliance code, the byte that stands for them, the band's text.
TEST(RadioIdentity, BandItemTellsBandBandwidthAndCompliance) {
  std::string told;
  for (std::string data :
       {"0131", "1232", "2331", "3431", "4531", "5631", "6731", "7831", "8931", "9A31",
        "AB31", "B831", "C831", "D831", "E831", "4C31", "0031", "F131", "4833", "FFFF"}) {
    TestSession test;
    RadioIdentity radio;
    data.append(8, data == "FFFF" ? 'F' : '0');
    ProcessFreqBandInfo(test.session, data, IdentityUse::kTransfer, radio);
    const auto byte = SetByteFromBandAndComplianceCode(radio);
    told += std::string{radio.band, radio.bandwidth, radio.compliance_code, ' '} +
            (byte ? ConBytNumToHex(*byte) : "none") + " " + std::string(BandText(radio)) + "\n" +
            test.user.Boxes();
  }
  const std::string band =
      "H10 48 H 400-470 MHz\n"
      "information The band type is invalid, it will be set to 'H'. -> OK\n";
  EXPECT_EQ(told,
            "A1A 01 A 66-88 MHz\nB2B 12 B 136-174 MHz\nC1C 23 C 174-225 MHz\n"
            "D1D 34 D 220-270 MHz\nE10 45 E 270-310 MHz\nF12 56 F 290-340 MHz\n"
            "G13 67 G 336-400 MHz\nH14 78 H 400-470 MHz\nI15 89 I 450-530 MHz\n"
            "J1E 9A J 806-870 MHz\nK1F AB K 896-941 MHz\nH1G B8 H 400-470 MHz\n"
            "H1H C8 HH 440-470 MHz\nH1Z D8 H 400-470 MHz\nH1L E8 HL 400-440 MHz\n" +
                band + band + band +
                "H20 48 H 400-470 MHz\n"
                "information The bandwidth value is invalid, it will be set to Universal. -> OK\n"
                "xxx none Unknown\ninformation The Band Information Item is blank. Please check "
                "model configuration. -> OK\n");
}

TEST(RadioIdentity, SmallItemsAndVersionsAreConverted) {
  TestSession test;
  RadioIdentity radio;
  std::string told;
  for (const char* data : {"000001", "FFFFFE", "FFFFFF"}) {
    ProcessRadioSerialNumber(test.session, data, IdentityUse::kView, radio);
    told += radio.serial_number + " ";
  }
  ProcessRadioSerialNumber(test.session, "FFFFFF", IdentityUse::kTransfer, radio);
  for (const char* mask : {"05", "01", "03", "07", "0F", "1F"}) {
    ProcessNumberOfNetworks(mask, radio);
    told += std::to_string(radio.networks) + " ";
  }
  for (const char* text : {"0402", "4.02", "312x9", "x", "99999999999"})
    told += std::to_string(VersionNumber(text)) + " ";
  EXPECT_EQ(told + test.user.Boxes(),
            "10000001 26777214 NOT SET 0 1 2 3 4 4 402 402 312 0 999999999 information The Radio "
            "Serial Number item is blank. Please check model configuration. -> OK\n");
}

TEST(ItemRecords, FilterLeavesOutItemsByTypeAndKind) {
  const auto items = [](RadioType type, TransferKind kind, bool selected = false) {
    std::string texts;
    for (int item = 0; item < 256; ++item) {
      const std::string text = ConBytNumToHex(static_cast<std::uint8_t>(item));
      if (IsItemSelected(type, kind, text) == selected) texts += text + " ";
    }
    return texts;
  };
  for (const TransferKind kind : {kChosenFile, kAutoSave}) {
    EXPECT_EQ(items(RadioType::kConventional, kind), "28 29 2C 2D 2E ");
    EXPECT_EQ(items(RadioType::kTrunked, kind), "2F 3D 3E 3F 45 46 47 48 ");
  }
  EXPECT_EQ(items(RadioType::kConventionalII, kBoth), "28 29 2D 2E ");
  EXPECT_EQ(items(RadioType::kTrunked, kBoth), "2F 3D 3E 3F 45 46 48 ");
  EXPECT_EQ(items(RadioType::kConventionalII, kCalibration, true), "2C ");
  EXPECT_EQ(items(RadioType::kTrunked, kCalibration, true), "47 ");
}

TEST(ReadRadio, ConventionalRadioGivesADataFileAndACalibrationFile) {
  ScriptedRadio radio(kConventional, "l| 0003011528|01012C|>");
  EXPECT_EQ(radio.Read(kBoth), "done ^#r00|r2A|r27|l|r01|r15|r2C|^\n");
  EXPECT_EQ(radio.db.identity.model_string + radio.port(1).settings[0], "ZEP-H15109600,n,8,1");
  EXPECT_GE(radio.clock.Now(), std::chrono::seconds(1));
  EXPECT_FALSE(radio.port(1).IsOpen());
  EXPECT_EQ(radio.session.TransferMode, services::Transfer::kRead);
  const std::string saved_with = "Saved with the ZEP Download and Configuration Application " +
                                 radio.strings.Get(101) + "\r\n###\r\n---\r\n";
  EXPECT_EQ(radio.folder.Read("database/10000001v0405.ops"),
            "***\r\nZEP Data File\r\n" + saved_with +
                "0000115A45502D4831353130303430353032303138\r\n0100020102FA\r\n01010103FA\r\n");
  EXPECT_EQ(radio.folder.Read("calibration/10000001v0103.ocs"),
            "***\r\n" + saved_with +
                "00001C5A45502D4831353130303333352C30323031303430352C3031000001A8\r\n"
                "2C0002AABB6D\r\n");
  EXPECT_EQ(radio.view.shown,
            "[Reading Radio] Reading Items... 0 max=4 0 1 Reading Items. Reading Items.. 2 "
            "Reading Items... 3 Reading Items.... 4 Closing communication ports...");
}

TEST(ReadRadio, CommonDynamicItemsAreReadWithTheLastNetwork) {
  const std::string left_out = "d01|l|r01|r47|d02|l|r01|r32|r33|r47|^\n";
  const std::string all = "d01|l|r01|r32|r33|r47|d02|l|r01|r32|r33|r47|^\n";
  for (const auto& [item_0, sent] : {std::pair{"ZEP-H11200309,02010311,010001", left_out},
                                     {"ZEP-H12200309,02010311,010001", left_out},
                                     {"ZEP-H15200309,02010311,010001", all},
                                     {"ZEP-H11200308,02010311,010001", all},
                                     {"ZEP-H11200309,02010312,010001", all}}) {
    SCOPED_TRACE(item_0);
    ScriptedRadio radio(item_0, "l| 000401323347|>");
    EXPECT_EQ(radio.Read(kBoth), "done ^#r00|r3C|r40|r3D|" + sent);
    EXPECT_EQ(radio.db.common_dynamic_item_skipped, sent == left_out);
    const std::string two = "\r\n0100020102FA\r\n01010103FA\r\n";
    const std::string common = "32000111BC\r\n33000122AA\r\n";
    const std::string file = platform::ReadWholeFile(radio.db.data_file).bytes;
    EXPECT_TRUE(file.ends_with(two +
                               (sent == all ? common : "Insert Common Dynamic Item Here\r\n") +
                               "~~~" + two + common))
        << file;
    EXPECT_EQ(radio.db.calibration.Records(), 2);  // all networks share it
    EXPECT_NE(radio.view.shown.find("Reading Items from Network 2 ... 0 max=4 0 1 Reading Radio "
                                    "database 2 of 2."),
              std::string::npos);
  }
}

// What is told of a read of a radio that answers so; "..." is the identity, and the message that
// the file is incomplete.
TEST(ReadRadio, FailuresEndTheReadAndNameTheIncompleteFile) {
  const auto read = [](const std::string& answers) {
    ScriptedRadio radio(kConventional, answers);
    radio.db.overwrite_allowed = true;
    radio.folder.Write("database/10000001v0405.ops", "former");
    std::string told = radio.Read(kAutoSave).replace(10, 14, "...");
    EXPECT_EQ(radio.link.IsActive(1), radio.session.failure == services::Failure::kRadioError);
    const std::string incomplete =
        "critical database/10000001v0405.ops is incomplete, because reading the radio ended early. "
        "Please read the radio again. What it held before is kept in "
        "database/10000001v0405.ops.bak. -> OK\n";
    EXPECT_TRUE(told.ends_with(incomplete)) << told;
    const std::string file = radio.folder.Read("database/10000001v0405.ops").value_or("");
    return told.erase(told.size() - incomplete.size()) + file.substr(file.find("---") + 49);
  };
  const std::string nothing =
      "critical The radio reports no items that could be saved. Please check the radio's model "
      "configuration. -> OK\n";
  EXPECT_EQ(read("r01| 0100020102FB|01010103FA|>"),
            "failure 4 ...l|r01|^\n" + kError + "{C02} Record corrupted -> OK\n0100020102FB\r\n");
  EXPECT_EQ(read("r15| {C04}|>"),
            "failure 4 ...l|r01|r15|^\n" + kNoItem + "0100020102FA\r\n01010103FA\r\n");
  EXPECT_EQ(read("r01| 0100020102FA|010101"),
            "failure 3 ...l|r01|^\n" + kNoAnswer + "0100020102FA\r\n");
  EXPECT_EQ(read("l| >"), "failure 4 ...l|^\n" + nothing);
  EXPECT_EQ(read("l| 00022C2D|>"), "failure 4 ...l|^\n" + nothing);
}

TEST(ReadRadio, RadioWithoutWhatIsAskedForIsRefused) {
  const std::string no_item_0 = "critical Error Reading Item 0. -> OK\n";
  const auto read = [](const std::string& answers) {
    return ScriptedRadio(kConventional, answers).Read(kCalibration);
  };
  EXPECT_EQ(read("^ -"), "failure 3 ^^\n" + kNoAnswer + no_item_0);
  EXPECT_EQ(read("r00| >"), "failure 4 ^#r00|^\n" + no_item_0);
  EXPECT_EQ(read("r2A| {C04}|>"), "failure 4 ^#r00|r2A|^\n" + kNoItem);
  EXPECT_EQ(read("r27| {C04}|>"), "failure 4 ^#r00|r2A|r27|^\n" + kNoItem);
  EXPECT_EQ(ScriptedRadio(kTrunked, "r3C| {C04}|>").Read(kAutoSave),
            "failure 4 ^#r00|r3C|^\n" + kNoItem);
  EXPECT_TRUE(read("r00| 0000043131313138|>")
                  .starts_with("failure 1 ^#r00|r2A|r27|^\n" + kInvalidModel +
                               "critical The identity of this radio "));
  EXPECT_TRUE(
      read("").starts_with("failure 4 ^#r00|r2A|r27|l|^\ncritical The radio holds no "
                           "calibration data (item 2C). "));
  ScriptedRadio two;
  two.link.State(2) = link::PortState::kActive;
  EXPECT_EQ(two.Read(kAutoSave),
            "failure 2 \ncritical This works with one radio at a time. Please make exactly one "
            "communication port Active in menu File->Preferences. -> OK\n");
  EXPECT_EQ(two.windows.shown, "port selection ");
}

TEST(ReadRadio, ModelConfigurationErrorIsAskedAboutForTransfersOnly) {
  const std::string question =
      "question [Radio Reported Error] The radio has a model configuration error, continue anyway? "
      "-> ";
  ScriptedRadio radio(kConventional, "# {X31}|>");
  EXPECT_EQ(radio.Told(ReadSpecification(radio.db)), "done ^#r00|r2A|r27|^\n");
  radio.user.WillAnswer("model configuration error", Answer::kYes);
  EXPECT_EQ(radio.Read(kAutoSave), "done ^#r00|r2A|r27|l|r01|r15|r32|^\n" + question + "Yes\n");
  radio.user.WillAnswer("model configuration error", Answer::kNo);
  EXPECT_EQ(radio.Read(kAutoSave), "failure 1 ^#^\n" + question + "No\n");
  EXPECT_EQ(radio.db.identity.serial_number + radio.db.data_file, "");
}

TEST(ReadRadio, CancelAtAnyTurnEndsItAndReleasesTheRadio) {
  int turn = 0;
  for (bool complete = false; !complete;) {
    SCOPED_TRACE(++turn);
    ScriptedRadio radio;
    radio.user.on_turn = [&](int now) {
      if (now == turn) radio.session.RequestCancel();
    };
    const std::string told = radio.Read(kAutoSave);
    complete = told.starts_with("done ");
    EXPECT_EQ(complete, !radio.session.CancelRequested);
    EXPECT_TRUE(complete || told.ends_with("^\n") ||
                told.ends_with("read the radio again. -> OK\n"));
    EXPECT_EQ(told.find("Error"), std::string::npos);
    EXPECT_LE(radio.user.turns, turn + 10);  // as many as the wait of a second has
  }
  EXPECT_GT(turn, 150);
}

// What is sent and shown; ID is the identity record of the file.
TEST(ProgramRadio, RecordsAreSentNetworkByNetwork) {
  const auto program = [](std::string_view item_0, TransferKind kind, const std::string& lines) {
    ScriptedRadio radio(item_0);
    const std::string id = item_0 == kTrunked ? "0000115A45502D483231324C30343035303230311E"
                                              : "0000115A45502D4831353130303430353032303138";
    radio.session.TransferMode = services::Transfer::kRead;
    std::string told = radio.Program(kind, "***\nmine\n---\n" + id + "\n" + lines);
    if (const std::size_t at = told.find(id); at != told.npos) told.replace(at, id.size(), "ID");
    EXPECT_EQ(radio.session.TransferMode, services::Transfer::kProgram);
    return told + radio.view.shown;
  };
  const std::string conventional = "done ^#r00|r2A|r27|b|";
  const std::string trunked = "done ^#r00|r3C|r40|r3D|d01|b|";
  EXPECT_EQ(program(kConventional, kChosenFile, "f0100020102FA\r\n\n150000EB\n2C0002AABB6D\n"),
            conventional +
                "wID|w0100020102FA|e|^\n[Programming Radio] 0 max=4 0 Writing Items. 1 Writing "
                "Items.. 2 Writing Items... 3 Writing Items.... 4 Closing communication ports...");
  EXPECT_EQ(program(kConventional, kCalibration, "2C0002AABB6D\n").substr(0, 38),
            conventional + "w2C0002AABB6D|e|^");
  EXPECT_EQ(program(kConventional, kAutoSave, "280001FFD8\n01010103FA\n").substr(0, 40),
            conventional + "wID|w01010103FA|e|^");
  EXPECT_EQ(program(kTrunked, kAutoSave, "47000247115F\n").substr(0, 36), trunked + "wID|e|^");
  EXPECT_EQ(
      program(kTrunked, kBoth, "Insert Common Dynamic Item Here\n~~~\n47000247115F\n32000111BC\n"),
      trunked +
          "wID|e|d02|b|w47000247115F|w32000111BC|e|^\n[Programming Radio] 0 max=2 0 Writing "
          "Radio database 1 of 2. 1 Writing Radio database 1 of 2.. 2 max=3 2 Writing Radio "
          "database 2 of 2... 3 Writing Radio database 2 of 2.... 3 Closing communication "
          "ports...");
}

TEST(ItemRecords, ListsAndFilesOfUnusualSizeAreTakenLiterally) {
  ScriptedRadio radio(kConventional, "r1| {C04}|>");
  radio.link.Port(1).Open();
  ReadFiles files;
  DataFile file;
  for (int network = 2; network <= 5; ++network) file.Add("~~~");
  EXPECT_FALSE(WriteItems(radio.db, radio.view, file));
  ReadItemList(radio.db, radio.view, "011", files);
  EXPECT_EQ(radio.Told(false),
            "failure 5 r01|r1|\n"
            "critical The file holds 5 networks; a radio has at most 4. -> OK\n" +
                kNoItem);
}

// A radio of the same model takes the data and gives it back, and it is what simulated radios say
// that their files are.
TEST(SimulatedRadio, WhatIsReadCanBeProgrammedAndIsThereThen) {
  const auto read = [](ScriptedRadio& bench) {
    EXPECT_EQ(bench.Read(kAutoSave), "done \n");
    bench.db.overwrite_allowed = true;
    return platform::ReadWholeFile(bench.db.data_file).bytes;
  };
  for (const std::string name : {"conventional", "trunked", "conventional2", "model31", "torvik",
                                 "trunked,old,networks=4"}) {
    SCOPED_TRACE(name);
    ScriptedRadio one;
    ScriptedRadio two;
    auto port = *simulator::MakeSimulatedPort("sim:" + name, one.clock).value;
    const std::string expected = simulator::DataFileText(port->Radio().Profile());
    one.link.ports[0] = std::move(port);
    two.link.ports[0] =
        *simulator::MakeSimulatedPort("sim:" + name + ",serial=12345678", two.clock).value;
    const std::string data = read(one);
    EXPECT_TRUE(data.ends_with(expected.substr(150)));
    EXPECT_TRUE(data != read(two));
    EXPECT_EQ(two.Program(kAutoSave, data), "done \n");
    EXPECT_TRUE(data == read(two));
  }
}

}  // namespace
}  // namespace zep::radiodb
