#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "services/application.h"
#include "services/messages.h"
#include "services/radio_model.h"
#include "services/waits.h"
#include "tests/testing.h"

namespace zep::services {
namespace {

using testing::TempFolder;
using testing::TestSession;

// Counts what is written and fails when told to.
class CountingHive final : public platform::SettingsHive {
 public:
  std::optional<std::string> Read(std::string_view key, std::string_view name) const override {
    return values.Read(key, name);
  }
  platform::SystemError Write(std::string_view key, std::string_view name,
                              std::string_view value) override {
    ++writes;
    return is_broken ? platform::SystemError{13, "Permission denied"}
                     : values.Write(key, name, value);
  }

  platform::MemoryHive values;
  int writes = 0;
  bool is_broken = false;
};

struct SettingsTest : ::testing::Test {
  static constexpr std::string_view kRoot = R"(Software\Vorn Electronics Ltd\ZEP)";
  static constexpr std::string_view kDownload = R"(Software\Vorn Electronics Ltd\ZEP\Download)";

  TestSession test;
  CountingHive user;
  CountingHive machine;
  Settings settings{user, machine, test.strings, test.log};
};

TEST_F(SettingsTest, ReadTheUserThenTheMachineThenTheDefault) {
  struct Row {
    const char* name;
    const char* of_user;
    const char* of_machine;
    std::string_view value;
  };
  for (const Row& row : std::vector<Row>{{"Nowhere", nullptr, nullptr, "default"},
                                         {"User", "u", "m", "u"},
                                         {"Machine", nullptr, "m", "m"},
                                         {"EmptyUser", "", "m", "m"},
                                         {"EmptyBoth", "", "", "default"},
                                         {"Sentinel", "<<VALUENOTDEFINED>>", "m", "m"}}) {
    SCOPED_TRACE(row.name);
    for (const std::string_view key : {kRoot, kDownload}) {
      if (row.of_user != nullptr) user.Write(key, row.name, row.of_user);
      if (row.of_machine != nullptr) machine.Write(key, row.name, row.of_machine);
    }
    EXPECT_EQ(settings.AppGetUserSetting(AppType::kDownload, row.name, "default"), row.value);
    EXPECT_EQ(settings.AppGetSharedUserSetting(row.name, "default"), row.value);
  }
  user.Write(kDownload, "Nul", std::string_view("ab\0cd", 5));
  EXPECT_EQ(settings.AppGetUserSetting(AppType::kDownload, "Nul", ""), "ab");
}

TEST_F(SettingsTest, ReadNumbersAndSkipWhatIsNone) {
  for (const auto& [text, number] : std::vector<std::pair<std::string_view, int>>{
           {"1", 1}, {"-3", -3}, {"2x", 7}, {"", 7}, {"99999999999", 7}}) {
    SCOPED_TRACE(std::string(text));
    user.Write(kDownload, "Port1", text);
    EXPECT_EQ(settings.AppGetUserNumber(AppType::kDownload, "Port1", 7), number);
  }
  machine.Write(kDownload, "Port1", "4");
  EXPECT_EQ(settings.AppGetUserNumber(AppType::kDownload, "Port1", 7), 4);
  user.Write(kDownload, "Port1", "5");
  EXPECT_EQ(settings.AppGetUserNumber(AppType::kDownload, "Port1", 7), 5);
}

TEST_F(SettingsTest, AreWrittenForTheUserAndOnlyWhenTheyChange) {
  machine.Write(kDownload, "SaveMain", "1");
  machine.writes = 0;
  EXPECT_TRUE(settings.AppSaveUserSetting(AppType::kDownload, "SaveMain", "1"));
  EXPECT_EQ(user.writes, 0);
  EXPECT_TRUE(settings.AppSaveUserSetting(AppType::kDownload, "SaveMain", "0"));
  EXPECT_TRUE(settings.AppSaveUserSetting(AppType::kDownload, "SaveMain", "0"));
  EXPECT_TRUE(settings.AppSaveSharedUserSetting("UILanguage", "3"));
  EXPECT_TRUE(settings.AppSaveSharedUserSetting("UILanguage", "3"));
  EXPECT_EQ(user.writes, 2);
  EXPECT_EQ(machine.writes, 0);
  EXPECT_EQ(user.Read(kDownload, "SaveMain"), "0");
  EXPECT_EQ(user.Read(kRoot, "UILanguage"), "3");
}

TEST_F(SettingsTest, ThatCannotBeWrittenAreLoggedAndKeptAsProblem) {
  user.is_broken = true;
  EXPECT_FALSE(settings.AppSaveUserSetting(AppType::kDownload, "ShowAdvanced", "1"));
  EXPECT_EQ(settings.WriteProblem().number, 13);
  EXPECT_EQ(test.folder.Read("application.log"),
            "Error: 2026-11-21 07:05:33  Application::RegSaveSetting - ShowAdvanced: 13 Permission "
            "denied\n");
}

TEST_F(SettingsTest, HaveASubkeyForEachApplicationAndLogAnyOther) {
  std::string keys;
  for (int type = 0; type <= 4; ++type) {
    keys += settings.AppGetRegKey(static_cast<AppType>(type)) + ";";
  }
  EXPECT_EQ(keys, "Calibration;Download;Conventional;Trunked;;");
  EXPECT_EQ(settings.OwnType(), AppType::kDownload);
  EXPECT_FALSE(test.folder.Read("application.log"));
  EXPECT_EQ(settings.AppGetRegKey(static_cast<AppType>(5)), "");
  AppLocation location;
  EXPECT_FALSE(settings.AppGetAppLocation(static_cast<AppType>(-1), location));
  EXPECT_EQ(test.folder.Read("application.log"),
            "Error: 2026-11-21 07:05:33  Application::AppGetRegKey - Invalid AppType\n"
            "Error: 2026-11-21 07:05:33  Application::AppGetAppLocation - Invalid AppType\n");
}

TEST_F(SettingsTest, FindAnApplicationWhereItWasShownLast) {
  AppLocation location;
  EXPECT_FALSE(settings.AppGetAppLocation(AppType::kConventional, location));
  EXPECT_EQ(location.folder + " " + location.executable,
            "/opt/vorn-electronics/zep programming/zepprog");
  test.folder.Write("prog", "");
  settings.AppSaveAppLocation(AppType::kConventional, {test.folder.Path(), "prog"});
  EXPECT_TRUE(settings.AppGetAppLocation(AppType::kConventional, location));
  EXPECT_EQ(location.folder, test.folder.Path());
  EXPECT_EQ(user.Read(std::string(kRoot) + "\\Conventional", "Application"), "prog");
  EXPECT_FALSE(settings.AppGetAppLocation(AppType::kRoot, location));
}

TEST(Paths, AreJoinedWithOneSeparatorAndTakenApart) {
  EXPECT_EQ(AppMakePath("/data", "a.ops"), "/data/a.ops");
  EXPECT_EQ(AppMakePath("/data/", "a.ops"), "/data/a.ops");
  EXPECT_EQ(WithSeparator("/data"), "/data/");
  EXPECT_EQ(WithSeparator("/"), "/");
  EXPECT_EQ(WithSeparator(""), "");
  EXPECT_EQ(FolderOf("/data/x/a.ops"), "/data/x/");
  EXPECT_EQ(FolderOf("a.ops"), "");
  EXPECT_EQ(FileTitleOf("/data/x/a.ops"), "a.ops");
  EXPECT_EQ(FileTitleOf("a.ops"), "a.ops");
}

TEST(Paths, AFileIsLookedForAtHomeThenBesideTheProgramThenInTheSharedFolder) {
  const TempFolder folder;
  const ApplicationPaths paths = {folder.Path("home"), folder.Path("bin")};
  EXPECT_EQ(FindApplicationFile(paths, "dl.tsk"), folder.Path("home/dl.tsk"));
  for (const char* file : {"share/zepdlca/dl.tsk", "bin/dl.tsk", "home/dl.tsk"}) {
    folder.Write(file, "");
    EXPECT_EQ(FindApplicationFile(paths, "dl.tsk"), folder.Path(file));
  }
}

TEST(Paths, TheApplicationFolderIsTheProgramsOwnUnlessGiven) {
  const std::string own = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
  EXPECT_EQ(FindApplicationPaths("").application_folder, own);
  EXPECT_EQ(FindApplicationPaths("/tmp/bench/").application_folder, "/tmp/bench");
  EXPECT_EQ(FindApplicationPaths("/tmp/bench/").program_folder, own);
  EXPECT_EQ(FindApplicationPaths("/").application_folder, "/");
}

TEST(StringTables, BuildOnZepAndDifferInTheirIdentity) {
  EXPECT_EQ(StringTable::Names(), (std::vector<std::string>{"ZEP", "Torvik", "Vorn PMR II"}));
  for (const std::string& name : StringTable::Names()) {
    const StringTable table(name, "");
    EXPECT_EQ(table.Problem() + table.Get(100), name);
    EXPECT_EQ(table.Get(102), R"(Software\Vorn Electronics Ltd\ZEP)");
  }
  const StringTable zep("ZEP", "");
  EXPECT_EQ(zep.Get(101).find('@'), std::string::npos);
  EXPECT_EQ(zep.Get(507),
            "ZEP Data files(*.ops)|*.ops|ZEP Multi-Network Data Files(*.omn)|*.omn|All Files|*.*");
  EXPECT_EQ(zep.Get(99), "");
}

TEST(StringTables, NameTheModelsOfThirteenTiers) {
  for (const char* table : {"ZEP", "Torvik", "Vorn PMR II"}) {
    const TestSession test(table);
    std::set<std::string> names;
    for (int tier = -200; tier <= 300; ++tier) names.insert(AppGetRadioModel(test.session, tier));
    EXPECT_EQ(names.size(), 14U) << "all different, and empty for every other number";
    EXPECT_FALSE(AppGetRadioModel(test.session, 1).empty());
    EXPECT_FALSE(AppGetRadioModel(test.session, 13).empty());
  }
}

TEST(StringTables, AFileInTheApplicationFolderTakesATablesPlace) {
  const TempFolder folder;
  folder.Write("Torvik.strings",
               "\xEF\xBB\xBF# mine\r\nbase Torvik\r\n104 My Title\r\n\r\n700\r\n");
  folder.Write("Bench.strings", "base Torvik\n100 Bench\n");
  const StringTable torvik("Torvik", folder.Path());
  EXPECT_EQ(torvik.Problem(), "");
  EXPECT_EQ(torvik.Get(100) + "," + torvik.Get(104) + "," + torvik.Get(700), "Torvik,My Title,");
  const StringTable bench("Bench", folder.Path());
  EXPECT_EQ(bench.Get(100) + "," + bench.Get(104) + "," + bench.Get(203),
            "Bench,My Title,Torvik 1300");
}

TEST(StringTables, ZepStandsInForWhatCannotBeRead) {
  const TempFolder folder;
  folder.Write("Torvik.strings", "100 Torvik\n104My Title\n103 \x01\nnonsense\n");
  folder.Write("Loop.strings", "base Ring\n100 Loop\n");
  folder.Write("Ring.strings", "base Loop\n101 Ring\n");
  const StringTable torvik("Torvik", folder.Path());
  EXPECT_EQ(torvik.Problem(), "Torvik.strings line 2: this is no number with a text");
  EXPECT_EQ(torvik.Get(100) + "," + torvik.Get(104) + "," + torvik.Get(103),
            "Torvik,ZEP Download and Configuration Application,1");
  const StringTable loop("Loop", folder.Path());
  EXPECT_EQ(loop.Problem(), "there is no string table \"Loop\"");
  EXPECT_EQ(loop.Get(100) + "," + loop.Get(101), "Loop,Ring");
  EXPECT_EQ(StringTable("Unheard", folder.Path()).Get(100), "ZEP");
}

TEST(Translations, AreReadFromTheDictionary) {
  Translation translation;
  translation.Load(
      "\xEF\xBB\xBF# comment\r\nen \"Say \\\"%0:s\\\"\\n\"\r\nfr \"Dire \\\"%0:s\\\"\\n\"\r\n\r\n"
      "en \"Blank  \"\nzh \"空  \"\n");
  EXPECT_EQ(translation.Problem(), "");
  EXPECT_EQ(translation.Translate("Blank  "), "Blank  ");
  translation.SetLanguage(Language::kFrench);
  EXPECT_EQ(translation.Translate("Say \"%0:s\"\n"), "Dire \"%0:s\"\n");
  EXPECT_EQ(translation.Translate("Blank  "), "Blank  ");
  EXPECT_EQ(translation.Translate("Blank"), "Blank");
  translation.SetLanguage(Language::kChinese);
  EXPECT_EQ(translation.Translate("Blank  "), "空  ");
}

TEST(Translations, BelongToTheEnglishTextOfTheirBlock) {
  Translation translation;
  translation.Load("en \"A\"\n\nfr \"B\"\n");
  EXPECT_EQ(translation.Problem(), "line 3: there is no English text above this translation");
  EXPECT_EQ(translation.In(Language::kFrench, "A"), "");
}

TEST(Translations, OfADamagedDictionaryAreUsedAsFarAsTheyCanBeRead) {
  struct Row {
    std::string_view contents;
    std::string_view problem;
  };
  constexpr std::string_view no_text =
      "this is no language (en, fr, es, zh) with a text in double quotes";
  for (const Row& row :
       std::vector<Row>{{"en \"A\"\nfr \"B\n", no_text},
                        {"en \"A\"\nfr B\"\n", no_text},
                        {"en \"A\"\nfr \"B\"C\"\n", no_text},
                        {"en \"A\"\nfr \"B\\\"\n", no_text},
                        {"en \"A\"\nfr \"\\t\"\n", no_text},
                        {"en \"A\"\nfr \"\"\n", no_text},
                        {"en \"A\"\nde \"B\"\n", no_text},
                        {"en \"A\"\nfr\"B\"\n", no_text},
                        {"en \"A\"\nen \"A\"\n", "this text has an entry already"}}) {
    SCOPED_TRACE(std::string(row.contents));
    Translation translation;
    translation.Load(std::string(row.contents) + "\nen \"X\"\nfr \"Y\"\n");
    translation.SetLanguage(Language::kFrench);
    EXPECT_EQ(translation.Problem(), "line 2: " + std::string(row.problem));
    EXPECT_EQ(translation.Translate("A") + translation.Translate("X"), "AY");
  }
  Translation translation;
  translation.Load("en \"A\"\nfr \"B\"\nfr \"C\"\n\xFF\xFE\n\n");
  EXPECT_EQ(translation.Problem(),
            "line 3: this language has a text in this entry already (and 1 more)");
}

TEST(Translations, AreLoadedInTheLanguageOfTheSettings) {
  for (const auto& [setting, text] : std::vector<std::pair<std::string_view, std::string_view>>{
           {"1", "On"}, {"2", "Allumé"}, {"4", "开"}, {"5", "On"}, {"0", "On"}, {"fr", "On"}}) {
    SCOPED_TRACE(std::string(setting));
    TestSession test;
    test.folder.Write("ZEPDLCA.mld", "en \"On\"\nfr \"Allumé\"\nzh \"开\"\n");
    test.settings.AppSaveSharedUserSetting("UILanguage", setting);
    LoadTexts(test.session);
    EXPECT_EQ(NLSFmt(test.session, "On"), text);
    EXPECT_NE(services::LanguageCode(test.translation.GetLanguage()), "");
    EXPECT_FALSE(test.folder.Read("application.log"));
  }
  TestSession bare;
  bare.settings.AppSaveSharedUserSetting("UILanguage", "2");
  EXPECT_NE(LoadTexts(bare.session, Language::kSpanish).number, 0);
  EXPECT_EQ(bare.translation.GetLanguage(), Language::kSpanish);
  EXPECT_NE(bare.folder.Read("application.log").value_or("").find("ZEPDLCA.mld"),
            std::string::npos);
}

TEST(Messages, PlaceholdersAreFilledInOnceAndOnlyWithWhatIsGiven) {
  const TestSession test;
  EXPECT_EQ(NLSFmt(test.session, "%1:s of %0:s, %1:s", {"a", "b"}), "b of a, b");
  EXPECT_EQ(NLSFmt(test.session, "%0:s %1:s %:s 100%", {"%1:s"}), "%1:s %1:s %:s 100%");
}

TEST(Messages, ABoxIsTranslatedAndHasTheApplicationsTitleUnlessGiven) {
  TestSession test;
  test.translation.Load(
      "en \"Overwrite?\"\nfr \"Remplacer ?\"\n\nen \"Title\"\nfr \"Titre\"\n\n"
      "en \"ZEP Download and Configuration Application\"\nfr \"Application\"\n");
  test.translation.SetLanguage(Language::kFrench);
  test.user.WillAnswer("Remplacer", Answer::kNo);
  test.user.WillAnswer("again", Answer::kCancel);
  EXPECT_EQ(
      NLSMsgBox(test.session, "Overwrite?", {.icon = Icon::kQuestion, .buttons = Buttons::kYesNo}),
      Answer::kNo);
  EXPECT_EQ(NLSMsgBox(test.session, "again", {.buttons = Buttons::kOkCancel, .title = "Title"}),
            Answer::kCancel);
  EXPECT_EQ(NLSMsgBox(test.session, "done", {.notice = Notice::kAwaitsAction}), Answer::kOk);
  EXPECT_EQ(test.user.Boxes(),
            "question [Application] Remplacer ? -> No\n"
            "information [Titre] again -> Cancel\n"
            "information [Application] done -> OK\n");
  EXPECT_EQ(test.user.messages.back().notice, Notice::kAwaitsAction);
}

TEST(Messages, ShortOnesArePaddedTo85CharactersNotBytes) {
  EXPECT_EQ(PadMessage("abc"), "abc" + std::string(82, ' '));
  EXPECT_EQ(PadMessage("电台"), "电台" + std::string(83, ' '));
  EXPECT_EQ(PadMessage(std::string(85, 'x')), std::string(85, 'x'));
}

TEST(Messages, ErrorsOfPortsHaveTextsOfTheirOwnAndAllBringTheirAdvice) {
  TestSession test;
  ReportError(test.session, {8002, "no such port", "", "", {}}, "WaitForChar Func", 3);
  ReportError(test.session, {8005, "busy", "/dev/x", "Close %0:s.", {"it"}}, "GetAnyByte", 3);
  ReportError(test.session, {2, "No such file", "bs.tsk", "", {}}, "SendBootStrap1ToAllComms");
  EXPECT_EQ(test.user.Boxes(),
            "critical A communication port has been selected that does not exist on the PC, please "
            "select another "
            "port from menu File->Preferences. -> OK\n"
            "critical Communication port 3 already in use, please select another port from menu "
            "File->Preferences.\nClose it. -> OK\n"
            "critical Error: 2 No such file[SendBootStrap1ToAllComms] -> OK\n");
  EXPECT_EQ(test.folder.Read("application.log"),
            "Error: 2026-11-21 07:05:33  8002 no such port[WaitForChar Func] \n"
            "Error: 2026-11-21 07:05:33  8005 busy[GetAnyByte] /dev/x\n"
            "Error: 2026-11-21 07:05:33  2 No such file[SendBootStrap1ToAllComms] bs.tsk\n");
}

TEST(Waits, LastAsLongAsTheirKindSays) {
  using std::chrono::milliseconds;
  struct Row {
    const char* name;
    double seconds;
    void (*wait)(Session&, double);
    milliseconds lasts;
    int turns;
  };
  for (const Row& row : std::vector<Row>{
           {"blocking", 0.02, WaitSeconds, milliseconds(20), 0},
           {"half a second", 0.5, WaitSecondsYielding, milliseconds(100), 1},
           {"short", 0.02, WaitSecondsYielding, milliseconds(20), 1},
           {"one second", 1, WaitSecondsYielding, milliseconds(1000), 10},
           {"two seconds", 2, WaitSecondsYielding, milliseconds(2000), 20},
           {"a fraction is dropped", 2.9, WaitSecondsYielding, milliseconds(2000), 20}}) {
    SCOPED_TRACE(row.name);
    TestSession test;
    row.wait(test.session, row.seconds);
    EXPECT_EQ(test.clock.Now(), row.lasts);
    EXPECT_EQ(test.user.turns, row.turns);
  }
}

TEST(Log, KeepsOneLineForEachCall) {
  TestSession test;
  test.log.Line("two\nlines");
  test.clock.Sleep(std::chrono::seconds(60));
  test.log.Error("bad");
  EXPECT_EQ(test.folder.Read("application.log"),
            "2026-11-21 07:05:33  two lines\nError: 2026-11-21 07:06:33  bad\n");
  ApplicationLog(test.clock, "").Line("nowhere");
  ApplicationLog(test.clock, test.folder.Path("missing/x.log")).Line("lost");
}

void AskWithout(std::string_view script) {
  testing::TestUser user;
  if (!script.empty()) user.WillAnswer(std::string(script), Answer::kYes);
  const Answer answer =
      user.ShowMessage({"Overwrite?", "", Icon::kQuestion, Buttons::kYesNo, Notice::kPlain});
  EXPECT_EQ(answer, script.empty() ? Answer::kNo : Answer::kYes);
  user.WillAnswer("nothing", Answer::kYes);
}

TEST(TestUsers, FailTheTestWhenAQuestionOrAnAnswerIsLeftOver) {
  EXPECT_NONFATAL_FAILURE(AskWithout("write"), "never asked: nothing");
  ::testing::TestPartResultArray failures;
  {
    const ::testing::ScopedFakeTestPartResultReporter reporter(
        ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    AskWithout("");
  }
  ASSERT_EQ(failures.size(), 2);
  EXPECT_STREQ(failures.GetTestPartResult(0).message(),
               "Failed\nunexpected question: Overwrite?\n  expected nothing more");
}

}  // namespace
}  // namespace zep::services
