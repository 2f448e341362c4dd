#include "radiodb/data_files.h"

#include <algorithm>

#include "services/messages.h"
#include "tests/radiodb_testing.h"

namespace zep::radiodb {
namespace {

using services::Answer;
using testing::ScriptedRadio;
using testing::TestSession;
using enum TransferKind;

const std::string kIdentity51 = "0000115A45502D4831353130303430353032303138\n";
const std::string kNoRecord =
    "This is no record: a record is made of pairs of the digits 0 to 9 and A to F, at least four "
    "of them.\n";

TEST(DataFiles, FoldersAndNamesComeFromSettingsAndIdentity) {
  ScriptedRadio radio;
  const auto folders = [&](const std::string& setting) {
    for (const char* name : {"MainDBLocation", "CalibrationDBLocation"})
      radio.settings.AppSaveUserSetting(radio.settings.OwnType(), name, setting);
    return DatabaseFolder(radio.session) + " " + CalibrationFolder(radio.session);
  };
  const std::string home = radio.folder.Path("");
  EXPECT_EQ(folders(""), home + "database/ " + home + "calibration/");
  EXPECT_EQ(folders("\\old\\radios"), home + "old/radios/ " + home + "old/radios/");
  EXPECT_EQ(folders("/srv/cal"), "/srv/cal/ /srv/cal/");
  radio.db.identity.serial_number = "NOT SET";
  radio.db.identity.database_version = "4/0?";
  radio.db.identity.networks = radio.db.number_of_networks = 2;
  radio.user.WillChoose("save", radio.folder.Path("a.omn"));
  ReadFiles files;
  EXPECT_TRUE(OpenReadFiles(radio.db, files));
  SaveDefaultDataFilePath(radio.session, "without a folder.ops");
  EXPECT_EQ(DefaultDataFilePath(radio.session), home);
  const services::FileRequest& request = radio.user.file_requests[0];
  EXPECT_EQ(request.title, "Select Multiple Network Data File to save to");
  EXPECT_EQ(request.folder + request.name, home + "Data Files/NOT SETv4_0_.omn");
  EXPECT_EQ(request.filter, "ZEP Multi-Network Data Files(*.omn)|*.omn|All Files|*.*");
}

// The questions before a read when both files exist, and which of them are new then.
TEST(DataFiles, ExistingFilesAreReplacedOnlyWithConsent) {
  const auto open = [](TransferKind kind, const std::string& answers) {
    ScriptedRadio radio;
    radio.db.identity.serial_number = "7";
    radio.db.transfer_kind = kind;
    const std::string file = radio.folder.Write("database/7v.ops", "former");
    radio.folder.Write("calibration/7v.ocs", "former");
    if (kind == kChosenFile)
      radio.user.WillChoose("save", answers.empty() ? std::nullopt : std::optional(file));
    for (const char answer : answers)
      radio.user.WillAnswer("?", answer == 'Y' ? Answer::kYes : Answer::kNo);
    ReadFiles files;
    const bool opened = OpenReadFiles(radio.db, files);
    EXPECT_NE(opened, radio.session.CancelRequested);
    EXPECT_EQ(radio.folder.Read("calibration/7v.ocs"), "former");  // until the end of the read
    if (opened) {
      EXPECT_TRUE(EndReadFiles(radio.db, files, true));
    }
    return radio.Told(opened) + (radio.folder.Read("database/7v.ops") == "former" ? "" : "ops ") +
           (radio.folder.Read("calibration/7v.ocs") == "former" ? "" : "ocs ");
  };
  const std::string save = "save [Select Data File to save to] -> ";
  const std::string exists = "question File exists overwrite? -> ";
  const std::string database = "question Database file for this radio exists, overwrite? -> ";
  const std::string calibration = "question Calibration file for this radio exists, overwrite? -> ";
  EXPECT_EQ(open(kChosenFile, ""), "failure 6 \n" + save + "nothing\n");
  EXPECT_EQ(open(kChosenFile, "N"), "failure 1 \n" + save + "7v.ops\n" + exists + "No\n");
  EXPECT_EQ(open(kChosenFile, "Y"), "done \n" + save + "7v.ops\n" + exists + "Yes\nops ");
  EXPECT_EQ(open(kAutoSave, "N"), "failure 1 \n" + database + "No\n");
  EXPECT_EQ(open(kCalibration, "Y"), "done \n" + calibration + "Yes\nocs ");
  EXPECT_EQ(open(kBoth, "YN"), "failure 1 \n" + database + "Yes\n" + calibration + "No\n");
  EXPECT_EQ(open(kBoth, "YY"), "done \n" + database + "Yes\n" + calibration + "Yes\nops ocs ");
}

TEST(DataFiles, AreWrittenAsAWholeAndWhatTheyHeldIsKept) {
  TestSession test;
  const std::string path = test.folder.Write("a.ops", "former");
  test.folder.Write("a.ops.bak", "before that");
  // The contents, and the copy of those before.
  for (const auto& [line, copy] :
       {std::pair("first", path + ".bak2"), std::pair("first", std::string()),
        std::pair("second", path + ".bak3")}) {
    EXPECT_EQ(*WriteDataFile(DataFile(path, {line})), copy);
    EXPECT_EQ(test.folder.Read("a.ops"), line + std::string("\r\n"));
  }
  EXPECT_EQ(test.folder.Read("a.ops.bak"), "before that");
  EXPECT_EQ(test.folder.Read("a.ops.bak2"), "former");
  EXPECT_EQ(test.folder.Read("a.ops.bak3"), "first\r\n");

  // Begun, and given up or not to be made.
  platform::NewFile out;
  EXPECT_FALSE(out.Open(path));
  EXPECT_TRUE(out.Open(test.folder.Path("missing/a.ops")));
  EXPECT_EQ(platform::ListFolder(test.folder.Path()),
            (std::vector<std::string>{"a.ops", "a.ops.bak", "a.ops.bak2", "a.ops.bak3"}));
  EXPECT_EQ(test.folder.Read("a.ops"), "second\r\n");
  const auto full = WriteDataFile(DataFile("/dev/full", {"***"}));
  EXPECT_EQ(ErrorNote(test.session, full.error().error).substr(0, 40),
            "There is no space left for /dev/full. Pl");
}

TEST(DataFileReader, LinesBehindTheHeaderAreFoundHoweverTheyAreWritten) {
  ScriptedRadio radio;
  const auto read = [&](const std::string& contents) {
    const auto file = ReadDataFile(radio.folder.Write("a", contents));
    std::string lines = file ? "" : radio.Told(services::Refuse(radio.session, file.error()));
    const DataFile data = file.value_or(DataFile{});
    for (const DataFileLine& line : data.Lines())
      lines += std::to_string(line.number) + " " + std::string(line.Text()) + ";";
    return lines;
  };
  EXPECT_EQ(read("***\r\nany\r\n---\r\n00A\r\n~~~\r\n01"), "4 00A;5 ~~~;6 01;");
  EXPECT_EQ(read("00A\n\n \t\nf01\nf~~~\n"), "1 00A;4 01;5 ~~~;");
  EXPECT_EQ(read("\xEF\xBB\xBF***\n---\n02\n\x1A"), "3 02;");
  EXPECT_EQ(read("***\nno end\n"), "");
  const std::string refused =
      "failure 5 \ncritical Data file is corrupt.\na is not a file of radio data: ";
  EXPECT_EQ(read("00\n" + std::string(50, '\0')),
            refused + "it holds bytes that are no text. Please choose another file. -> OK\n");
  EXPECT_EQ(read("00\n" + std::string(1001, '0')),
            refused + "line 2 has more than 1000 characters. Please choose another file. -> OK\n");
}

TEST(DataFileReader, CheckFindsEveryFaultWithItsLine) {
  TestSession test;
  const auto check = [&](const std::string& contents) {
    std::string text;
    for (const Finding& finding : ReadDataFile(test.folder.Write("a", contents))->Findings())
      text += English(FindingText(finding)) + "\n";
    return text;
  };
  EXPECT_EQ(check(kIdentity51 + "~~~\n0100020102FA\nInsert Common Dynamic Item Here\n"), "");
  EXPECT_EQ(check("0000155A45502D483235324C303430353032303116\n0100020102FA\n"), "");
  EXPECT_EQ(check(kIdentity51 + "0100020102fa\n0100020102F\n0100\n0100030102F9\n0100020102FB\n"),
            "Line 2: " + kNoRecord + "Line 3: " + kNoRecord + "Line 4: " + kNoRecord +
                "Line 5: The record has 12 characters, but its length field asks for 14.\n"
                "Line 6: The record's checksum is FB, but should be FA.\n");
  EXPECT_EQ(check("0100020102FA\n~~~\n~~~\n~~~\n~~~\n"),
            "The file has 29 bytes; a data file has at least 50.\n"
            "There is no identity record (item 00).\n"
            "The file holds 5 networks; a radio has at most 4.\n");
  std::string hostile;
  for (int line = 0; line < 3000; ++line) hostile += "a\n";
  const std::string findings = check(hostile);
  EXPECT_EQ(std::ranges::count(findings, '\n'), 1002);
  EXPECT_NE(findings.find("Only the first 1000 bad records are told.\n"), std::string::npos);
  DataFile file;
  file.Add("00001C5A45502D483231314C303132352C30303030303430302C303100126722");
  EXPECT_EQ(file.Identity()->serial_number, "10004711");
}

// Before a file is programmed into a radio of model 51, or 43, with database version 0405.
TEST(DataFiles, FileIsCheckedAgainstTheRadio) {
  ScriptedRadio radio;
  radio.db.identity.database_version = "0405";
  const auto check = [&](const std::string& text, int tier = 13, TransferKind kind = kChosenFile) {
    radio.db.identity.tier = tier;
    radio.db.identity.type = tier == 10 ? RadioType::kConventionalII : RadioType::kConventional;
    radio.db.transfer_kind = kind;
    radio.session.ClearFlags();
    const auto file = ReadDataFile(radio.folder.Write("a.ops", text));
    return radio.Told(CheckFileAgainstRadio(radio.db, *file));
  };
  const auto identity = [&](const std::string& model, const std::string& version = "0405") {
    const std::string record = "000011" + services::ConTextToHex(model + version + "0201");
    return record + services::CalcHexChecksum(radio.session, record) + "\r\n0100020102FA\r\n";
  };
  const auto refused = [](int failure, const std::string& text) {
    return "failure " + std::to_string(failure) + " \ncritical " + text + " -> OK\n";
  };
  const std::string corrupt = "Data file is corrupt.\na.ops ";
  EXPECT_EQ(check(identity("ZEP-H1510")), "done \n");
  EXPECT_EQ(check(identity("ZEP-H1510", "4.05")), "done \n");
  EXPECT_EQ(check(kIdentity51 + "000000"),
            refused(5, corrupt + "is too short for a data file. Please choose another file."));
  const std::string filler(50, '1');
  for (const std::string& text : {filler, "000004313131\n" + filler, identity("ZEP-H15?0")}) {
    EXPECT_EQ(check(text), refused(5, corrupt + "holds no identity record (item 00) that can be "
                                                "read. Please choose another file."));
  }
  EXPECT_EQ(check(identity("ZEP-H1520", "0404")),
            refused(1, "Can not program a Trunked file into a Conventional radio."));
  EXPECT_EQ(check(identity("ZEP-H1510"), 10),
            refused(1, "Can not program a Conventional file into a Conventional II radio."));
  EXPECT_EQ(check(identity("ZEP-H1410", "0404")),
            refused(1, "Can not program a ZEP 2100 as a ZEP 2200"));
  EXPECT_EQ(check(identity("ZEP-H1510", "0404") + "bad"),
            refused(1, "Database versions incompatible. Please use the Programming Application"));
  EXPECT_EQ(check(identity("ZEP-H1510") + "bad\n0100020102FB\nbad"),
            refused(5,
                    "a.ops is damaged and is not programmed. Please choose another file.\nLine "
                    "3: " +
                        kNoRecord + "Faults besides this one: 2."));
  const std::string calibration =
      "00001C5A45502D4831353130303333352C30323031303430352C3031000001A8\n";
  EXPECT_EQ(check(calibration),
            refused(1, "a.ops is a calibration file. Please choose a data file of the radio."));
  EXPECT_EQ(check(calibration, 13, kCalibration), "done \n");
}

}  // namespace
}  // namespace zep::radiodb
