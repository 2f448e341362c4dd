#include "radiodb/data_files.h"

#include "tests/radiodb_testing.h"

namespace zep::radiodb {
namespace {

using services::Answer;
using testing::ScriptedRadio;
using testing::TestSession;

const std::string kIdentity51 = "0000115A45502D4831353130303430353032303138";
const std::string kNoRecord =
    "This is no record: a record is made of pairs of the digits 0 to 9 and A to F, at least four "
    "of them.\n";

TEST(DataFiles, FoldersAndNamesComeFromSettingsAndIdentity) {
  TestSession test;
  const std::string home = test.folder.Path("");
  EXPECT_EQ(DatabaseFolder(test.session), home + "database/");
  EXPECT_EQ(CalibrationFolder(test.session), home + "calibration/");
  EXPECT_EQ(DefaultDataFilePath(test.session), home + "Data Files/");
  test.settings.AppSaveUserSetting(test.settings.OwnType(), "MainDBLocation", "\\old\\radios");
  test.settings.AppSaveUserSetting(test.settings.OwnType(), "CalibrationDBLocation", "/srv/cal");
  EXPECT_EQ(DatabaseFolder(test.session), home + "old/radios/");
  EXPECT_EQ(CalibrationFolder(test.session), "/srv/cal/");
  RadioIdentity radio;
  radio.serial_number = "NOT SET";
  radio.database_version = "4/0?";
  radio.calibration_version = "0103";
  radio.networks = 2;
  EXPECT_EQ(DefaultDatabaseName(test.session, radio), "NOT SETv4_0_.omn");
  EXPECT_EQ(DefaultCalibrationName(test.session, radio), "NOT SETv0103.ocs");
}

// The questions before a read, in order, with the answers; and what became of the files.
TEST(DataFiles, ExistingFilesAreReplacedOnlyWithConsent) {
  const std::string save = "save [Select Data File to save to] -> ";
  const std::string exists = "question File exists overwrite? -> ";
  const std::string database = "question Database file for this radio exists, overwrite? -> ";
  const std::string calibration = "question Calibration file for this radio exists, overwrite? -> ";
  struct Row {
    TransferKind kind;
    const char* answers;  // N or Y for each question, - for a dialog given up
    std::string told;
    bool database_is_new;
    bool calibration_is_new;
  };
  using enum TransferKind;
  const Row rows[] = {
      {kChosenFile, "-", "failure 6 \n" + save + "nothing\n", false, false},
      {kChosenFile, "N", "failure 1 \n" + save + "a.ops\n" + exists + "No\n", false, false},
      {kChosenFile, "Y", "done \n" + save + "a.ops\n" + exists + "Yes\n", true, false},
      {kAutoSave, "N", "failure 1 \n" + database + "No\n", false, false},
      {kAutoSave, "Y", "done \n" + database + "Yes\n", true, false},
      {kCalibration, "N", "failure 1 \n" + calibration + "No\n", false, false},
      {kCalibration, "Y", "done \n" + calibration + "Yes\n", false, true},
      {kBoth, "YN", "failure 1 \n" + database + "Yes\n" + calibration + "No\n", false, false},
      {kBoth, "YY", "done \n" + database + "Yes\n" + calibration + "Yes\n", true, true},
      {kBoth, "", "done \n", true, true},  // overwriting was allowed beforehand
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.told);
    ScriptedRadio radio;
    radio.db.identity.serial_number = "10000001";
    radio.db.transfer_kind = row.kind;
    radio.db.overwrite_allowed = row.answers[0] == 0;
    const std::string data = row.kind == kChosenFile ? "mine/a.ops" : "database/10000001v.ops";
    const std::string path = radio.folder.Write(data, "former");
    radio.folder.Write("calibration/10000001v.ocs", "former");
    if (row.kind == kChosenFile)
      radio.user.WillChoose("save", *row.answers == '-' ? std::nullopt : std::optional(path));
    for (const char answer : std::string(row.answers)) {
      if (answer != '-') radio.user.WillAnswer("?", answer == 'Y' ? Answer::kYes : Answer::kNo);
    }
    ReadFiles files(radio.session);
    EXPECT_EQ(radio.Told(OpenReadFiles(radio.db, files)), row.told);
    EXPECT_EQ(radio.session.CancelRequested, row.told.starts_with("failure"));
    EXPECT_TRUE(files.database.Finish() && files.calibration.Finish());
    EXPECT_EQ(radio.folder.Read(data) != "former", row.database_is_new);
    EXPECT_EQ(radio.folder.Read("calibration/10000001v.ocs") != "former", row.calibration_is_new);
    EXPECT_FALSE(radio.folder.Read(data + ".bak"));
    EXPECT_EQ(DefaultDataFilePath(radio.session),
              radio.folder.Path(row.kind == kChosenFile && *row.answers != '-' ? "mine/"
                                                                               : "Data Files/"));
  }
}

TEST(DataFileWriter, KeepsWhatAFileHeldUntilTheNewOneIsComplete) {
  TestSession test;
  const std::string path = test.folder.Write("a.ops", "former");
  test.folder.Write("a.ops.bak", "before that");
  DataFileWriter file(test.session);
  ASSERT_TRUE(file.Create(path));
  file.WriteLine("first");
  EXPECT_EQ(file.Abandon(), path +
                                " is incomplete, because reading the radio ended early. Please "
                                "read the radio again. What it held before is kept in " +
                                path + ".bak2.");
  EXPECT_EQ(test.folder.Read("a.ops"), "first\r\n");
  EXPECT_EQ(test.folder.Read("a.ops.bak2"), "former");
  ASSERT_TRUE(file.Create(path) && file.Finish());
  EXPECT_EQ(file.Abandon(), "");
  EXPECT_EQ(test.folder.Read("a.ops.bak"), "before that");
  EXPECT_FALSE(test.folder.Read("a.ops.bak3"));
  EXPECT_EQ(test.user.Boxes(), "");

  EXPECT_FALSE(file.Create(test.folder.Path("missing/a.ops")));
  EXPECT_NE(test.user.TakeBoxes().find("There is no folder "), std::string::npos);
  EXPECT_TRUE(test.session.CancelRequested);
  ASSERT_TRUE(file.Create("/dev/full"));
  for (int line = 0; line < 100; ++line) file.WriteLine(std::string(400, '0'));
  EXPECT_FALSE(file.Finish());
  EXPECT_NE(test.user.TakeBoxes().find("There is no space left for /dev/full."), std::string::npos);
  EXPECT_EQ(test.session.failure, services::Failure::kFile);
}

TEST(DataFileReader, LinesBehindTheHeaderAreFoundHoweverTheyAreWritten) {
  TestSession test;
  for (const auto& [contents, lines] :
       {std::pair{"***\r\nany\r\n---\r\n00A\r\n~~~\r\n01", "4 00A;5 ~~~;6 01;"},
        {"00A\n\n \t\nf01\nf~~~\n", "1 00A;4 01;5 ~~~;"},
        {"\xEF\xBB\xBF***\n---\n02\n\x1A", "3 02;"},
        {"00A\n***\n---\n", "1 00A;2 ***;3 ---;"},
        {"***\nno end\n", ""},
        {"", ""}}) {
    const auto file = ReadDataFile(test.session, test.folder.Write("a", contents));
    std::string read;
    for (const DataFileLine& line : file->lines)
      read += std::to_string(line.number) + " " + line.text + ";";
    EXPECT_EQ(read, lines);
  }
  EXPECT_EQ(test.user.Boxes(), "");
  const std::string not_one = "a is not a file of radio data: ";
  for (const auto& [contents, reason] :
       {std::pair{std::string("00\n\0\n", 5), not_one + "it holds bytes that are no text."},
        {"00\n" + std::string(1001, '0'), not_one + "line 2 has more than 1000 characters."}}) {
    EXPECT_FALSE(ReadDataFile(test.session, test.folder.Write("a", contents)));
    EXPECT_NE(test.user.TakeBoxes().find(reason), std::string::npos);
  }
  EXPECT_FALSE(ReadDataFile(test.session, test.folder.Path("missing")));
  EXPECT_EQ(test.session.failure, services::Failure::kFile);
}

TEST(DataFileReader, CheckFindsEveryFaultWithItsLine) {
  TestSession test;
  const std::string record = "0100020102FA\n";
  const auto check = [&](const std::string& contents) {
    const auto file = ReadDataFile(test.session, test.folder.Write("a", contents));
    std::string text;
    for (const Finding& finding : CheckDataFile(test.session, *file).findings)
      text += FindingText(test.session, finding) + "\n";
    return text;
  };
  EXPECT_EQ(check("***\n---\n" + kIdentity51 + "\n" + record + "Insert Common Dynamic Item Here\n"),
            "");
  EXPECT_EQ(check("0000155A45502D483235324C303430353032303116\n" + record), "");
  EXPECT_EQ(check(kIdentity51 + "\n0100020102fa\n0100020102F\n0100\n0100030102F9\n0100020102FB\n"),
            "Line 2: " + kNoRecord + "Line 3: " + kNoRecord + "Line 4: " + kNoRecord +
                "Line 5: The record has 12 characters, but its length field asks for 14.\n"
                "Line 6: The record's checksum is FB, but should be FA.\n");
  EXPECT_EQ(check(record + "~~~\n~~~\n~~~\n~~~\n"),
            "The file has 29 bytes; a data file has at least 50.\n"
            "There is no identity record (item 00).\n"
            "The file holds 5 networks; a radio has at most 4.\n");
  const auto calibration = FindFileIdentity(*ReadDataFile(
      test.session,
      test.folder.Write("a",
                        "00001C5A45502D483231314C303132352C30303030303430302C303100126722\n")));
  EXPECT_TRUE(calibration->is_calibration);
  EXPECT_EQ(calibration->model_string + " " + calibration->serial_number, "ZEP-H211L 10004711");
}

// Before a file is programmed into a radio of model 51, or 43, with database version 0405.
TEST(DataFiles, FileIsCheckedAgainstTheRadio) {
  ScriptedRadio radio;
  const auto check = [&](const std::string& text, int tier = 13, TransferKind kind = {}) {
    radio.db.identity.database_version = "0405";
    radio.db.identity.tier = tier;
    radio.db.identity.type = tier == 10 ? RadioType::kConventionalII : RadioType::kConventional;
    radio.db.transfer_kind = kind;
    radio.session.ClearFlags();
    const auto file = ReadDataFile(radio.session, radio.folder.Write("a.ops", text));
    return radio.Told(CheckFileAgainstRadio(radio.db, *file));
  };
  const auto identity = [&](const std::string& model, const std::string& version = "0405") {
    const std::string record = "000011" + services::ConTextToHex(model + version + "0201");
    return record + services::CalcHexChecksum(radio.session, record) + "\r\n0100020102FA\r\n";
  };
  const std::string corrupt = "failure 5 \ncritical Data file is corrupt.\na.ops ";
  const std::string bad_identity =
      corrupt +
      "holds no identity record (item 00) that can be read. Please choose another file. -> OK\n";
  const std::string refused = "failure 1 \ncritical ";
  EXPECT_EQ(check(identity("ZEP-H1510")), "done \n");
  EXPECT_EQ(check(identity("ZEP-H1510", "4.05")), "done \n");
  EXPECT_EQ(check(std::string(49, '0')),
            corrupt + "is too short for a data file. Please choose another file. -> OK\n");
  EXPECT_EQ(check("010004" + std::string(50, '0')), bad_identity);
  EXPECT_EQ(check("000004313131\n010004" + std::string(50, '0')), bad_identity);
  EXPECT_EQ(check(identity("ZEP-H15?0")), bad_identity);
  EXPECT_EQ(check(identity("ZEP-H1520", "0404")),
            refused + "Can not program a Trunked file into a Conventional radio. -> OK\n");
  EXPECT_EQ(check(identity("ZEP-H1510"), 10),
            refused + "Can not program a Conventional file into a Conventional II radio. -> OK\n");
  EXPECT_EQ(check(identity("ZEP-H1410", "0404")),
            refused + "Can not program a ZEP 2100 as a ZEP 2200 -> OK\n");
  EXPECT_EQ(check(identity("ZEP-H1910")),
            "failure 1 \ninformation Radio Model is invalid, will be set to 'ZEP 1100'. -> OK\n"
            "critical Can not program a ZEP 1100 as a ZEP 2200 -> OK\n");
  EXPECT_EQ(check(identity("ZEP-H1510", "0404") + "bad"),
            refused +
                "Database versions incompatible. Please use the Programming Application -> "
                "OK\n");
  EXPECT_EQ(check(identity("ZEP-H1510") + "bad\n0100020102FB\nbad"),
            "failure 5 \ncritical a.ops is damaged and is not programmed. Please choose another "
            "file.\nLine 3: " +
                kNoRecord + "Faults besides this one: 2. -> OK\n");
  const std::string calibration =
      "00001C5A45502D4831353130303333352C30323031303430352C3031000001A8\n";
  EXPECT_EQ(
      check(calibration),
      refused + "a.ops is a calibration file. Please choose a data file of the radio. -> OK\n");
  EXPECT_EQ(check(calibration, 13, TransferKind::kCalibration), "done \n");
}

}  // namespace
}  // namespace zep::radiodb
