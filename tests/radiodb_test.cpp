#include "radiodb/item_records.h"
#include "simulator/samples.h"
#include "tests/radiodb_testing.h"

namespace zep::radiodb {
namespace {

using services::Answer;
using services::ConBytNumToHex;
using testing::RadioBench;
using testing::ScriptedRadio;
using testing::SimulatedBench;
using testing::TestSession;

const std::string kInvalidModel =
    "information Radio Model is invalid, will be set to 'ZEP 1100'. -> OK\n";
const std::string kNoAnswer =
    "information The radio is not responding, please check the connections. -> OK\n";

TEST(RadioModels, EveryCodeHasItsTierAndType) {
  TestSession test;
  std::string models;
  for (int code = 10; code < 100; ++code) {
    if (const auto model = FindRadioModel(std::to_string(code)))
      models += std::to_string(code) + "=" + std::to_string(model->tier) + "/" +
                std::to_string(static_cast<int>(model->type)) + " ";
  }
  EXPECT_EQ(models,
            "11=1/1 12=1/2 21=2/1 22=2/2 31=3/1 41=4/1 42=6/2 43=10/3 51=13/1 52=7/2 61=5/1 62=8/2 "
            "63=11/3 71=9/1 81=12/1 ");
  EXPECT_EQ(LookUpRadioModel(test.session, "62")->tier, 8);
  EXPECT_EQ(test.user.Boxes(), "");
  EXPECT_FALSE(LookUpRadioModel(test.session, "53"));
  EXPECT_EQ(test.user.Boxes(), kInvalidModel);
}

TEST(RadioIdentity, ItemZeroIsCutByItsLength) {
  struct Row {
    const char* data;
    const char* texts;  // model string, tier, software, hardware, database, calibration
    const char* database_record;
    const char* calibration_record;
  };
  const Row rows[] = {
      {"5A45502D483131313030313235303430302C303130303031", "ZEP-H1110 1 0125 0000 0400 0100",
       "0000115A45502D483231314C303430303030303027",
       "00001C5A45502D483231314C303132352C30303030303430302C303100126722"},
      {"5A45502D4831343330303332372C30323031303430322C303130323031",
       "ZEP-H1430 10 0327 0201 0402 0102", "0000115A45502D483234334C30343032303230311D",
       "00001C5A45502D483234334C303332372C30323031303430322C303100126714"},
      {"5A45502D4831353230303333352C5354442C30323031303430352C303130333031",
       "ZEP-H1520 7 0335 0201 0405 0103", "0000155A45502D483235324C303430353032303116",
       "0000205A45502D483235324C303333352C5354442C30323031303430352C3031001267F7"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.texts);
    TestSession test;
    RadioIdentity radio;
    ProcessItem0(test.session, row.data, IdentityUse::kTransfer, radio);
    EXPECT_EQ(radio.model_string + " " + std::to_string(radio.tier) + " " + radio.software_version +
                  " " + radio.hardware_version + " " + radio.database_version + " " +
                  radio.calibration_version,
              row.texts);
    ProcessFreqBandInfo(test.session, "E83200000000", IdentityUse::kTransfer, radio);
    ProcessRadioSerialNumber(test.session, "001267", IdentityUse::kTransfer, radio);
    EXPECT_EQ(DatabaseIdentityRecord(test.session, radio), row.database_record);
    EXPECT_EQ(CalibrationIdentityRecord(test.session, radio), row.calibration_record);
    EXPECT_EQ(test.user.Boxes(), "");

    ProcessItem0(test.session, std::string(50, '3'), IdentityUse::kTransfer, radio);
    EXPECT_EQ(radio.model_string + radio.software_version + radio.hardware_version +
                  radio.database_version + radio.calibration_version + radio.database_record,
              "");
    EXPECT_EQ(radio.tier, 1);
    EXPECT_EQ(test.user.Boxes(), kInvalidModel);
  }
}

// Band letter, bandwidth and compliance code, the byte that stands for them, the band's text.
TEST(RadioIdentity, BandItemTellsBandBandwidthAndCompliance) {
  const auto tell = [](std::string data) {
    TestSession test;
    RadioIdentity radio;
    data.append(8, data == "FFFF" ? 'F' : '0');
    ProcessFreqBandInfo(test.session, data, IdentityUse::kTransfer, radio);
    std::string told{radio.band, radio.bandwidth, radio.compliance_code, ' '};
    const auto byte = SetByteFromBandAndComplianceCode(radio);
    told += (byte ? ConBytNumToHex(*byte) : "none") + " " + std::string(BandText(radio));
    return told + "\n" + test.user.Boxes();
  };
  std::string told;
  for (const char* data : {"0131", "1232", "2331", "3431", "4531", "5631", "6731", "7831", "8931",
                           "9A31", "AB31", "B831", "C831", "D831", "E831"}) {
    told += tell(data);
  }
  EXPECT_EQ(told,
            "A1A 01 A 66-88 MHz\nB2B 12 B 136-174 MHz\nC1C 23 C 174-225 MHz\n"
            "D1D 34 D 220-270 MHz\nE10 45 E 270-310 MHz\nF12 56 F 290-340 MHz\n"
            "G13 67 G 336-400 MHz\nH14 78 H 400-470 MHz\nI15 89 I 450-530 MHz\n"
            "J1E 9A J 806-870 MHz\nK1F AB K 896-941 MHz\nH1G B8 H 400-470 MHz\n"
            "H1H C8 HH 440-470 MHz\nH1Z D8 H 400-470 MHz\nH1L E8 HL 400-440 MHz\n");
  for (const char* data : {"4C31", "0031", "F131"}) {
    EXPECT_EQ(tell(data),
              "H10 48 H 400-470 MHz\n"
              "information The band type is invalid, it will be set to 'H'. -> OK\n");
  }
  EXPECT_EQ(tell("4833"),
            "H20 48 H 400-470 MHz\n"
            "information The bandwidth value is invalid, it will be set to Universal. -> OK\n");
  EXPECT_EQ(tell("FFFF"),
            "xxx none Unknown\ninformation The Band Information Item is blank. Please check model "
            "configuration. -> OK\n");
}

TEST(RadioIdentity, SmallItemsAndVersionsAreConverted) {
  TestSession test;
  RadioIdentity radio;
  using Texts = std::pair<const char*, const char*>;
  for (const auto& [data, serial] :
       {Texts{"000001", "10000001"}, {"FFFFFE", "26777214"}, {"FFFFFF", "NOT SET"}}) {
    ProcessRadioSerialNumber(test.session, data, IdentityUse::kView, radio);
    EXPECT_EQ(radio.serial_number, serial);
  }
  EXPECT_EQ(test.user.Boxes(), "");
  ProcessRadioSerialNumber(test.session, "FFFFFF", IdentityUse::kTransfer, radio);
  EXPECT_EQ(test.user.Boxes(),
            "information The Radio Serial Number item is blank. Please check model configuration. "
            "-> OK\n");
  using Numbers = std::pair<const char*, int>;
  for (const auto& [mask, networks] :
       {Numbers{"05", 0}, {"01", 1}, {"03", 2}, {"07", 3}, {"0F", 4}, {"1F", 4}}) {
    ProcessNumberOfNetworks(mask, radio);
    EXPECT_EQ(radio.networks, networks) << mask;
  }
  for (const auto& [text, number] :
       {Numbers{"0402", 402}, {"4.02", 402}, {"312x9", 312}, {"x", 0}, {"99999999999", 999999999}})
    EXPECT_EQ(VersionNumber(text), number) << text;
}

TEST(ItemRecords, FilterLeavesOutItemsByTypeAndKind) {
  const auto left_out = [](int type, int kind) {
    std::string items;
    for (int item = 0; item < 256; ++item) {
      const std::string text = ConBytNumToHex(static_cast<std::uint8_t>(item));
      if (!IsItemSelected(static_cast<RadioType>(type), static_cast<TransferKind>(kind), text))
        items += text + " ";
    }
    return items;
  };
  EXPECT_EQ(left_out(1, 0), "28 29 2C 2D 2E ");
  EXPECT_EQ(left_out(3, 1), "28 29 2C 2D 2E ");
  EXPECT_EQ(left_out(3, 3), "28 29 2D 2E ");
  EXPECT_EQ(left_out(2, 0), "2F 3D 3E 3F 45 46 47 48 ");
  EXPECT_EQ(left_out(2, 1), "2F 3D 3E 3F 45 46 47 48 ");
  EXPECT_EQ(left_out(2, 3), "2F 3D 3E 3F 45 46 48 ");
  for (const auto& [type, item] : {std::pair{1, "2C "}, {2, "47 "}, {3, "2C "}}) {
    EXPECT_EQ(left_out(type, 2).size(), 255U * 3);
    EXPECT_EQ(left_out(type, 2).find(item), std::string::npos);
  }
}

TEST(ReadRadio, ConventionalRadioGivesADataFileAndACalibrationFile) {
  ScriptedRadio radio;
  radio.Answer("l|", "0003011528|01012C|>");
  EXPECT_EQ(radio.Told(radio.Read(TransferKind::kBoth)), "done ^#r00|r2A|r27|l|r01|r15|r2C|^\n");
  EXPECT_FALSE(radio.port(1).IsOpen());
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
  const std::string left_out = "d01|l|r01|d02|l|r01|r32|r33|";
  const std::string all = "d01|l|r01|r32|r33|d02|l|r01|r32|r33|";
  for (const auto& [item_0, sent] : {std::pair{"ZEP-H11200309,02010311,010001", left_out},
                                     {"ZEP-H12200309,02010311,010001", left_out},
                                     {"ZEP-H15200309,02010311,010001", all},
                                     {"ZEP-H11200308,02010311,010001", all},
                                     {"ZEP-H11200309,02010312,010001", all}}) {
    SCOPED_TRACE(item_0);
    ScriptedRadio radio(item_0);
    radio.Answer("l|", "000401323347|>");
    EXPECT_EQ(radio.Told(radio.Read(TransferKind::kAutoSave)),
              "done ^#r00|r3C|r40|r3D|" + sent + "^\n");
    const std::string file = platform::ReadWholeFile(radio.db.data_file).bytes;
    const std::string two = "\r\n0100020102FA\r\n01010103FA\r\n";
    const std::string common = "32000111BC\r\n33000122AA\r\n";
    EXPECT_TRUE(file.ends_with(two +
                               (sent == all ? common : "Insert Common Dynamic Item Here\r\n") +
                               "~~~" + two + common))
        << file;
    EXPECT_NE(file.find("ZEP Multiple Network Data File\r\nContains data for 2 networks\r\nSaved"),
              std::string::npos);
    EXPECT_EQ(radio.db.common_dynamic_item_skipped, sent == left_out);
    EXPECT_NE(radio.view.shown.find("Reading Items from Network 2 ... 0 max=4 0 1 Reading Radio "
                                    "database 2 of 2."),
              std::string::npos);
  }
}

TEST(ReadRadio, LastSingleCharacterOfAListIsAnItemToo) {
  ScriptedRadio radio;
  radio.port(1).Open();
  radio.Answer("r1|", "{C04}|>");
  ReadFiles files(radio.session);
  ReadItemList(radio.db, radio.view, "011", files);
  EXPECT_EQ(radio.Told(false).substr(0, 18), "failure 4 r01|r1|\n");
}

TEST(ReadRadio, CalibrationIsReadAloneAndKeptOnce) {
  ScriptedRadio radio("ZEP-H11200335,02010405,010301");
  radio.Answer("l|", "000232470|>");
  radio.db.chosen_calibration_file = radio.folder.Path("mine.ocs");
  EXPECT_EQ(radio.Told(radio.Read(TransferKind::kCalibration)),
            "done ^#r00|r3C|r40|r3D|d01|l|r47|d02|l|r47|^\n");
  EXPECT_TRUE(radio.folder.Read("mine.ocs")
                  ->ends_with("\r\n00001C5A45502D483231324C303333352C30323031303430352C303100126716"
                              "\r\n47000247115F\r\n"));
}

TEST(ReadRadio, FailuresEndTheReadAndNameTheIncompleteFile) {
  const std::string error = "critical [Radio reported error] ";
  const std::string nothing =
      "critical The radio reports no items that could be saved. Please check the radio's model "
      "configuration. -> OK\n";
  struct Row {
    const char* command;
    const char* answer;
    std::string told;
    const char* lines;  // of the file, behind the identity record
  };
  const Row rows[] = {
      {"r01|", "0100020102FB|01010103FA|>",
       "4 l|r01|^\n" + error + "{C02} Record corrupted -> OK\n", "0100020102FB\r\n"},
      {"r01|", "{C04}|>", "4 l|r01|^\n" + error + "{C04} Item not recognized -> OK\n", ""},
      {"r15|", "", "3 l|r01|r15|^\n" + kNoAnswer, "0100020102FA\r\n01010103FA\r\n"},
      {"r01|", "0100020102FA|010101", "3 l|r01|^\n" + kNoAnswer, "0100020102FA\r\n"},
      {"l|", "{C01}|>", "4 l|^\n" + error + "{C01} Command not recognized -> OK\n", ""},
      {"l|", ">", "4 l|^\n" + nothing, ""},
      {"l|", "00022C2D|>", "4 l|^\n" + nothing, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.command) + " " + row.answer);
    ScriptedRadio radio;
    radio.Answer(row.command, row.answer);
    radio.folder.Write("database/10000001v0405.ops", "former");
    radio.db.overwrite_allowed = true;
    std::string told = "failure " + row.told +
                       "critical database/10000001v0405.ops is incomplete, because reading the "
                       "radio ended early. Please read the radio again. What it held before is "
                       "kept in database/10000001v0405.ops.bak. -> OK\n";
    EXPECT_EQ(radio.Told(radio.Read(TransferKind::kAutoSave)), told.insert(10, "^#r00|r2A|r27|"));
    EXPECT_TRUE(radio.session.DownloadError);
    EXPECT_TRUE(radio.folder.Read("database/10000001v0405.ops")
                    ->ends_with(std::string("3032303138\r\n") + row.lines));
    EXPECT_EQ(radio.folder.Read("database/10000001v0405.ops.bak"), "former");
    EXPECT_LE(radio.clock.Now(), std::chrono::seconds(6));
  }
}

TEST(ReadRadio, IdentityThatCannotBeReadEndsTheJob) {
  const std::string item_0 = "critical Error Reading Item 0. -> OK\n";
  struct Row {
    const char* command;
    const char* answer;
    std::string told;
  };
  const Row rows[] = {
      {"^", "", "failure 3 ^^\n" + kNoAnswer + item_0},
      {"r00|", ">", "failure 4 ^#r00|^\n" + item_0},
      {"r2A|", "{C04}|>",
       "failure 4 ^#r00|r2A|^\ncritical [Radio reported error] {C04} Item not recognized -> OK\n"},
      {"r00|", "0000043131313138|>",
       "failure 1 ^#r00|r2A|r27|^\n" + kInvalidModel +
           "critical The identity of this radio (item 00) has an unknown format, so its data can "
           "neither be saved nor programmed. Please use another version of this application. -> "
           "OK\n"},
  };
  for (const Row& row : rows) {
    ScriptedRadio radio;
    radio.Answer(row.command, row.answer);
    EXPECT_EQ(radio.Told(radio.Read(TransferKind::kAutoSave)), row.told);
  }
}

TEST(ReadRadio, ModelConfigurationErrorIsAskedAboutForTransfersOnly) {
  const std::string question =
      "question [Radio Reported Error] The radio has a model configuration error, continue anyway? "
      "-> ";
  ScriptedRadio radio;
  radio.Answer("#", "{X31}|>");
  EXPECT_EQ(radio.Told(ReadSpecification(radio.db)), "done ^#r00|r2A|r27|^\n");
  radio.user.WillAnswer("model configuration error", Answer::kYes);
  EXPECT_EQ(radio.Told(radio.Read(TransferKind::kAutoSave)),
            "done ^#r00|r2A|r27|l|r01|r15|r32|^\n" + question + "Yes\n");
  radio.user.WillAnswer("model configuration error", Answer::kNo);
  EXPECT_EQ(radio.Told(radio.Read(TransferKind::kAutoSave)), "failure 1 ^#^\n" + question + "No\n");
}

TEST(ReadRadio, CancelAtAnyTurnEndsItAndReleasesTheRadio) {
  int turn = 0;
  for (bool complete = false; !complete;) {
    SCOPED_TRACE(++turn);
    ScriptedRadio radio;
    radio.user.on_turn = [&](int now) {
      if (now == turn) radio.session.RequestCancel();
    };
    complete = radio.Read(TransferKind::kAutoSave);
    const std::string told = radio.Told(complete);
    EXPECT_EQ(complete, !radio.session.CancelRequested);
    EXPECT_NE(told.find("^\n"), std::string::npos);
    EXPECT_TRUE(complete || told.starts_with("failure 6 "));
    EXPECT_LE(radio.user.turns, turn + 10);  // as many as the wait of a second has
    EXPECT_EQ(told.find("is incomplete") != std::string::npos,
              !complete && platform::FileExists(radio.db.data_file));
  }
  EXPECT_GT(turn, 150);
}

// The records of a file as they are sent, behind the identity of the radio.
TEST(ProgramRadio, RecordsAreSentNetworkByNetwork) {
  const std::string id_51 = "0000115A45502D4831353130303430353032303138";
  const std::string id_12 = "0000115A45502D483231324C30343035303230311E";
  struct Row {
    bool trunked;
    TransferKind kind;
    std::string file;
    std::string sent;
    const char* progress;
  };
  const Row rows[] = {
      {false, TransferKind::kChosenFile,
       id_51 + "\nf0100020102FA\r\n\n150000EB\n280001FFD8\n2C0002AABB6D\n01010103FA\n",
       "b|w" + id_51 + "|w0100020102FA|w01010103FA|e|",
       "0 max=6 0 Writing Items. 1 Writing Items.. 2 Writing Items... 3 Writing Items.... 4 "
       "Writing "
       "Items..... 5 Writing Items...... 6 "},
      {false, TransferKind::kCalibration, id_51 + "\n2C0002AABB6D\n", "b|w2C0002AABB6D|e|",
       "0 max=2 0 Writing Items. 1 Writing Items.. 2 "},
      {true, TransferKind::kBoth,
       id_12 + "\nInsert Common Dynamic Item Here\n~~~\n47000247115F\n32000111BC\n",
       "d01|b|w" + id_12 + "|e|d02|b|w47000247115F|w32000111BC|e|",
       "0 max=2 0 Writing Radio database 1 of 2. 1 Writing Radio database 1 of 2.. 2 max=3 2 "
       "Writing Radio database 2 of 2... 3 Writing Radio database 2 of 2.... 3 "},
      {true, TransferKind::kAutoSave, id_12 + "\n47000247115F\n", "d01|b|w" + id_12 + "|e|",
       "0 max=2 0 Writing Items. 1 Writing Items.. 2 "},
  };
  for (const Row& row : rows) {
    ScriptedRadio radio(row.trunked ? "ZEP-H11200335,02010405,010301"
                                    : "ZEP-H15100335,02010405,010301");
    for (const std::string& record :
         {id_51, id_12, std::string("0100020102FA"), std::string("01010103FA"),
          std::string("2C0002AABB6D"), std::string("47000247115F"), std::string("32000111BC")}) {
      radio.Answer("w" + record + "|", ">");
    }
    radio.db.transfer_kind = row.kind;
    const std::string file = radio.folder.Write("a.ops", "***\nmine\n---\n" + row.file);
    EXPECT_EQ(
        radio.Told(ProgramRadio(radio.db, radio.view, file)),
        "done ^#r00|" + std::string(row.trunked ? "r3C|r40|r3D|" : "r2A|r27|") + row.sent + "^\n");
    EXPECT_EQ(radio.view.shown, "[Programming Radio] " + std::string(row.progress) +
                                    "Closing communication ports...");
  }
}

TEST(ProgramRadio, ErrorReplyEndsItAtOnce) {
  ScriptedRadio radio;
  radio.Answer("w0000115A45502D4831353130303430353032303138|", "{C07}|>");
  const std::string file = radio.folder.Write(
      "a.ops", "0000115A45502D4831353130303430353032303138\n0100020102FA\n01010103FA\n");
  EXPECT_EQ(radio.Told(ProgramRadio(radio.db, radio.view, file)),
            "failure 4 ^#r00|r2A|r27|b|w0000115A45502D4831353130303430353032303138|^\n"
            "critical [Radio reported error] {C07} Read only item error -> OK\n");
}

// A radio of the same model takes the data and gives it back, and both agree with what simulated
// radios say their files are.
TEST(SimulatedRadio, WhatIsReadCanBeProgrammedAndIsThereThen) {
  const auto read = [](RadioBench& bench, TransferKind kind) {
    bench.db.overwrite_allowed = true;
    EXPECT_TRUE(bench.Read(kind)) << bench.user.Boxes();
    std::string contents = platform::ReadWholeFile(bench.db.data_file).bytes;
    const std::string version = bench.strings.Get(101);
    return contents.replace(contents.find(version), version.size(), "1.0.0");
  };
  for (const std::string name : {"conventional", "trunked", "conventional2", "model31", "torvik",
                                 "trunked,old,networks=4"}) {
    SCOPED_TRACE(name);
    SimulatedBench one(name + ",unpaced");
    SimulatedBench two(name + ",unpaced,serial=12345678");
    const std::string data = read(one, TransferKind::kAutoSave);
    EXPECT_EQ(data, simulator::DataFileText(one.simulated->Radio().Profile()));
    EXPECT_NE(data, read(two, TransferKind::kBoth));
    two.db.transfer_kind = TransferKind::kAutoSave;
    ASSERT_TRUE(ProgramRadio(two.db, two.view, one.db.data_file)) << two.user.Boxes();
    EXPECT_EQ(data, read(two, TransferKind::kAutoSave));
  }
}

}  // namespace
}  // namespace zep::radiodb
