#include <gtest/gtest.h>

#include "services/foundation.h"
#include "services/messages.h"
#include "services/text_layout.h"
#include "tests/testing.h"

namespace zep::services {
namespace {

using testing::BreakableHive;
using testing::TempFolder;
using testing::TestSession;

struct SettingsTest : ::testing::Test {
  static constexpr std::string_view kRoot = R"(Software\Vorn Electronics Ltd\ZEP)";
  static constexpr std::string_view kDownload = R"(Software\Vorn Electronics Ltd\ZEP\Download)";

  TestSession test;
  BreakableHive user;
  BreakableHive machine;
  Settings settings{user, machine, test.strings, test.log};
};

TEST_F(SettingsTest, ReadTheUserThenTheMachineThenTheDefault) {
  struct Row {
    const char *name, *of_user, *of_machine;
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
}

TEST_F(SettingsTest, ReadNumbersAndSkipWhatIsNone) {
  for (const auto& [text, number] : std::vector<std::pair<std::string_view, int>>{
           {"1", 1}, {"-3", -3}, {"2x", 7}, {"", 7}, {"99999999999", 7}}) {
    SCOPED_TRACE(std::string(text));
    user.Write(kDownload, "Port1", text);
    EXPECT_EQ(settings.AppGetUserNumber(AppType::kDownload, "Port1", 7), number);
  }
}

TEST_F(SettingsTest, AreWrittenForTheUserOnlyWhenTheyChangeAndFailuresAreLogged) {
  machine.Write(kDownload, "SaveMain", "1");
  machine.is_broken = true;
  EXPECT_TRUE(settings.AppSaveUserSetting(AppType::kDownload, "SaveMain", "0"));
  EXPECT_TRUE(settings.AppSaveSharedUserSetting("UILanguage", "3"));
  EXPECT_EQ(user.Read(kDownload, "SaveMain"), "0");
  EXPECT_EQ(user.Read(kRoot, "UILanguage"), "3");

  user.is_broken = true;
  EXPECT_TRUE(settings.AppSaveUserSetting(AppType::kDownload, "SaveMain", "0"));
  EXPECT_FALSE(test.folder.Read("application.log"));
  EXPECT_FALSE(settings.AppSaveUserSetting(AppType::kDownload, "ShowAdvanced", "1"));
  EXPECT_EQ(settings.WriteProblem().number, 13);
  EXPECT_EQ(test.folder.Read("application.log"),
            "Error: 2026-11-21 07:05:33  Application::RegSaveSetting - ShowAdvanced: 13 Permission "
            "denied\n");
}

TEST(StringTables, BuildOnZepAndDifferInTheirIdentity) {
  EXPECT_EQ(StringTable::Names(), (std::vector<std::string>{"ZEP", "Torvik", "Vorn PMR II"}));
  for (const std::string& name : StringTable::Names()) {
    const StringTable table(name, "");
    EXPECT_EQ(table.Problem() + table.Get(100), name);
    EXPECT_EQ(table.Get(102), R"(Software\Vorn Electronics Ltd\ZEP)");
  }
  const StringTable zep("ZEP", "");
  EXPECT_EQ(zep.Get(507),
            "ZEP Data files(*.ops)|*.ops|ZEP Multi-Network Data Files(*.omn)|*.omn|All Files|*.*");
}

TEST(StringTables, AFileInTheApplicationFolderTakesATablesPlace) {
  const TempFolder folder;
  folder.Write("Torvik.strings",
               "\xEF\xBB\xBF# mine\r\nbase Torvik\r\n104 My Title\r\n\r\n700\r\n");
  const StringTable torvik("Torvik", folder.Path());
  EXPECT_EQ(torvik.Problem(), "");
  EXPECT_EQ(torvik.Get(104) + "," + torvik.Get(700) + "," + torvik.Get(203),
            "My Title,,Torvik 1300");
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
  translation.SetLanguage(Language::kFrench);
  EXPECT_EQ(translation.Translate("Say \"%0:s\"\n"), "Dire \"%0:s\"\n");
  EXPECT_EQ(translation.Translate("Blank  "), "Blank  ");
  translation.SetLanguage(Language::kChinese);
  EXPECT_EQ(translation.Translate("Blank  "), "空  ");
  translation.Load("en \"Blank  \"\nzh \"白  \"\n");
  EXPECT_EQ(translation.Problem(), "") << "what was loaded before has gone";
  EXPECT_EQ(translation.Translate("Blank  "), "白  ");
}

TEST(Translations, OfADamagedDictionaryAreUsedAsFarAsTheyCanBeRead) {
  const std::string no_text =
      "line 2: this is no language (en, fr, es, zh) with a text in double quotes";
  for (const auto& [contents, problem] : std::vector<std::pair<std::string, std::string>>{
           {"en \"A\"\nfr \"B\n", no_text},
           {"en \"A\"\nfr \"B\"C\"\n", no_text},
           {"en \"A\"\nfr \"\\t\"\n", no_text},
           {"en \"A\"\nfr \"\"\n", no_text},
           {"en \"A\"\nde \"B\"\n", no_text},
           {"en \"A\"\nen \"A\"\n", "line 2: this text has an entry already"},
           {"en \"A\"\n\nfr \"B\"\n", "line 3: there is no English text above this translation"}}) {
    SCOPED_TRACE(contents);
    Translation translation;
    translation.Load(contents + "\nen \"X\"\nfr \"Y\"\n");
    translation.SetLanguage(Language::kFrench);
    EXPECT_EQ(translation.Problem(), problem);
    EXPECT_EQ(translation.Translate("A") + translation.Translate("X"), "AY");
  }
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
    EXPECT_FALSE(test.folder.Read("application.log"));
  }
  TestSession bare;
  EXPECT_NE(LoadTexts(bare.session, Language::kSpanish).number, 0);
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
  EXPECT_EQ(test.user.Boxes(),
            "question [Application] Remplacer ? -> No\n"
            "information [Titre] again -> Cancel\n");
}

TEST(Messages, ErrorsOfPortsHaveTextsOfTheirOwnAndAllBringTheirAdvice) {
  TestSession test;
  ReportError(test.session, {8005, "busy", "/dev/x", "Close %0:s.", {"it"}}, "GetAnyByte", 3);
  ReportError(test.session, {2, "No such file", "bs.tsk", "", {}}, "SendBootStrap1ToAllComms");
  EXPECT_EQ(test.user.Boxes(),
            "critical Communication port 3 already in use, please select another port from menu "
            "File->Preferences.\nClose it. -> OK\n"
            "critical Error: 2 No such file[SendBootStrap1ToAllComms] -> OK\n");
  EXPECT_EQ(test.folder.Read("application.log"),
            "Error: 2026-11-21 07:05:33  8005 busy[GetAnyByte] /dev/x\n"
            "Error: 2026-11-21 07:05:33  2 No such file[SendBootStrap1ToAllComms] bs.tsk\n");
}

TEST(TextLayout, CountsCharactersAndColumnsWhateverTheLanguage) {
  struct Row {
    std::string text;
    int characters, columns;
  };
  for (const auto& [text, characters, columns] : std::vector<Row>{
           {"\u00E9\u7535\u53F0\u3002", 4, 7},
           {"e\u0301t", 3, 2},  // an accent of its own
           {"\u2026 \u00AB", 3, 3},
           {"\xFF\xE7\x94z", 4, 4},  // no UTF-8: a byte each
       }) {
    SCOPED_TRACE(text);
    EXPECT_EQ(CountCharacters(text), characters);
    EXPECT_EQ(DisplayWidth(text), columns);
    EXPECT_EQ(PadTo(text, columns + 1), text + " ");
    EXPECT_EQ(DisplayWidth(PadMessage(text)), 85 + columns - characters);
  }
  EXPECT_EQ(CutTo("\u7535\u53F0\u7535\u53F0", 6), "\u7535...");
  EXPECT_EQ(Wrap("\u7535\u53F0 \u7535\u53F0", 8, 1), "\u7535\u53F0\n \u7535\u53F0");
}

TEST(Log, KeepsOneLineForEachCall) {
  TestSession test;
  test.log.Line("two\nlines");
  test.clock.Sleep(std::chrono::seconds(60));
  test.log.Error("bad");
  EXPECT_EQ(test.folder.Read("application.log"),
            "2026-11-21 07:05:33  two lines\nError: 2026-11-21 07:06:33  bad\n");
}

}  // namespace
}  // namespace zep::services
