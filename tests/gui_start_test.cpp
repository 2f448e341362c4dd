// The program's start and its frame: command line, single copy, ports, menus, task tree, modes,
// language, companions, closing.
#include <gmock/gmock.h>
#include <wx/html/helpwnd.h>

#include "tests/gui_testing.h"

namespace zep::testing {
namespace {

using platform::SystemFamily;

struct CommandLineCase {
  const char *name, *line;
  SystemFamily family;
  bool starts;
  const char *boxes, *options;  // the About window's letters
};

TEST(StartUp, TheWholeCommandLineMustBeOptions) {
  const char* invalid = "Command line not valid.\n";
  const char* slow =
      "Highspeed mode will only run under Windows 95, application will start in normal mode.\n";
  const std::vector<CommandLineCase> cases = {
      {"no words", "", SystemFamily::kOther, true, "", "None"},
      {"in-house", "INHOUSE", SystemFamily::kOther, true, "", "I"},
      {"twice", "INHOUSE INHOUSE", SystemFamily::kOther, true, "", "I"},
      {"upload is switched off", "UPLOAD", SystemFamily::kOther, true, "", "None"},
      {"high speed on another system", "HIGHSPEED INHOUSE", SystemFamily::kWindowsNt, true, slow,
       "I"},
      {"high speed is switched off", "HIGHSPEED", SystemFamily::kWindows95, true, "", "None"},
      {"lower case", "highspeed", SystemFamily::kOther, false, invalid, ""},
      {"two blanks", "INHOUSE  UPLOAD", SystemFamily::kOther, false, invalid, ""},
      {"blank at the end", "INHOUSE ", SystemFamily::kOther, false, invalid, ""},
      {"words behind the wrong one are not looked at", "X HIGHSPEED", SystemFamily::kWindowsNt,
       false, invalid, ""},
  };
  for (const CommandLineCase& row : cases) {
    SCOPED_TRACE(row.name);
    Desktop desktop;
    desktop.system.family = row.family;
    EXPECT_EQ(desktop.Start(row.line), row.starts);
    EXPECT_EQ(desktop.Boxes(), row.boxes);
    if (!row.starts) continue;
    EXPECT_EQ(shell::OptionLetters(desktop.application->session), row.options);
    EXPECT_EQ(desktop.frame->Entry("mnuUpgrade") != nullptr, row.options[0] == 'I');
    EXPECT_EQ(desktop.frame->Entry("mnuReadFirmware") != nullptr, row.options[0] == 'I');
    EXPECT_GE(desktop.clock.Now(), std::chrono::seconds(2)) << "the splash";
  }
}

TEST(StartUp, EndsWithAReasonWhenItCannotGoOn) {
  {
    Desktop desktop;
    desktop.is_only_copy = false;
    EXPECT_FALSE(desktop.Start());
    EXPECT_EQ(desktop.Boxes(), "The Application is already running.\n");
  }
  {
    Desktop desktop;
    desktop.system.error.number = 5;
    EXPECT_FALSE(desktop.Start());
    EXPECT_EQ(desktop.Boxes(), "Error getting operating system version information\n");
  }
  {
    Desktop desktop({"/dev/missing1", "/dev/missing2", "/dev/missing3", "/dev/missing4"}, "ZEP", 2);
    EXPECT_FALSE(desktop.Start());
    EXPECT_EQ(desktop.Boxes(),
              "Aucun port de communication n'est disponible. L'application va se fermer\n");
  }
}

TEST(StartUp, TellsOnceOfAnUpgradeThatDidNotFinish) {
  Desktop desktop;
  const std::string data = desktop.folder.Write("database/10000104v0400.ops", "data");
  desktop.folder.Write("upgrade/10000104v0400.ops.unfinished", data + "\n\n");
  ASSERT_TRUE(desktop.Start());
  EXPECT_EQ(desktop.Boxes(),
            "An earlier upgrade did not finish. The data of that radio is in "
            "FOLDER/database/10000104v0400.ops. Please keep this file until the radio has its data "
            "back, then delete FOLDER/upgrade/10000104v0400.ops.unfinished.\n");
  EXPECT_THAT(desktop.folder.Read("upgrade.log").value_or(""),
              ::testing::HasSubstr("An earlier upgrade did not finish. Its data is in " + data));
}

TEST(Frame, ShowsModeAndLanguageAndSwitchesThem) {
  RunningDesktop desktop;
  const auto mode = [&] { return desktop.frame->Entry("mnuMode")->GetItemLabel().utf8_string(); };
  EXPECT_EQ(desktop.frame->GetTitle(), "ZEP Download and Configuration Application - Factory Mode");
  EXPECT_EQ(mode(), "Change to Customer &Mode");
  EXPECT_EQ(desktop.frame->GetStatusBar()->GetStatusText(1), "Factory Mode");
  EXPECT_EQ(desktop.frame->GetStatusBar()->GetStatusText(2), "English (1)");
  EXPECT_NE(desktop.frame->Entry("mnuTranscript"), nullptr);
  desktop.Menu("mnuMode");
  EXPECT_EQ(desktop.frame->GetTitle(),
            "ZEP Download and Configuration Application - Customer Mode");
  EXPECT_EQ(mode(), "Change to Factory &Mode");
  EXPECT_EQ(desktop.frame->Entry("mnuTranscript"), nullptr);
  desktop.Menu("mnuMode");
  EXPECT_EQ(mode(), "Change to Customer &Mode");

  desktop.application->session.settings.AppSaveSharedUserSetting("UILanguage", "2");
  desktop.application->UseLanguage();
  Desktop::Settle();
  EXPECT_EQ(desktop.frame->GetStatusBar()->GetStatusText(2).utf8_string(), "Français (2)");
}

// Texts of the task tree, from the top.
std::string Tree(Desktop& desktop) {
  auto* tree = desktop.Find<wxTreeCtrl>("TreeView1", desktop.frame);
  wxTreeItemIdValue cookie = nullptr;
  std::string texts;
  for (wxTreeItemId node = tree->GetFirstChild(tree->GetRootItem(), cookie); node.IsOk();
       node = tree->GetNextSibling(node)) {
    texts += (texts.empty() ? "" : " ") + tree->GetItemText(node).utf8_string();
  }
  return texts;
}

TEST(TaskTree, OffersTheTasksOfTheApplicationAndOpensOneAtATime) {
  {
    RunningDesktop desktop({"sim:conventional"}, "Torvik");
    EXPECT_EQ(Tree(desktop), "Specifications Upgrade Download");
  }
  {
    RunningDesktop desktop({"sim:conventional"}, "ZEP", 1, "base ZEP\n901 True\n");
    EXPECT_EQ(Tree(desktop), "Specifications");
    desktop.user_hive.Write(Desktop::kKey, "ShowAdvanced", "-1");
    desktop.frame->MainWindow().UpdateTreeView();
    EXPECT_EQ(Tree(desktop), "Specifications Download");
  }
  RunningDesktop desktop;
  EXPECT_EQ(Tree(desktop), "Specifications Download");
  EXPECT_EQ(desktop.application->current_task, shell::Task::kSpecification);
  EXPECT_STREQ(desktop.frame->MainWindow().TaskForm()->GetName(), "frmSpecification");

  auto* tree = desktop.Find<wxTreeCtrl>("TreeView1", desktop.frame);
  const auto press = [&](int key) {
    wxKeyEvent down(wxEVT_KEY_DOWN);
    down.m_keyCode = key;
    wxTreeEvent event(wxEVT_TREE_KEY_DOWN, tree, tree->GetSelection());
    event.SetKeyEvent(down);
    tree->ProcessWindowEvent(event);
    Desktop::Settle();
  };
  tree->SelectItem(tree->GetLastChild(tree->GetRootItem()));
  Desktop::Settle();
  press('x');
  EXPECT_EQ(desktop.application->current_task, shell::Task::kSpecification);
  press(WXK_SPACE);
  EXPECT_EQ(desktop.application->current_task, shell::Task::kDownload);
  bool closed = false;
  desktop.frame->MainWindow().TaskForm()->Bind(wxEVT_DESTROY, [&](wxWindowDestroyEvent& event) {
    closed = true;
    event.Skip();
  });
  press(WXK_RETURN);
  EXPECT_EQ(desktop.application->current_task, shell::Task::kDownload);
  EXPECT_TRUE(closed) << "and opened anew";
  desktop.Open("sPECIFICATIONS");
  EXPECT_EQ(desktop.application->current_task, shell::Task::kSpecification);
  desktop.Click("cmdCancel");
  EXPECT_EQ(desktop.application->current_task, shell::Task::kNone);
  EXPECT_EQ(desktop.frame->MainWindow().TaskForm(), nullptr);
}

TEST(Menus, CompanionsAndWebPagesAreOpened) {
  RunningDesktop desktop;
  const std::string program = desktop.folder.Write("zeptrunk", "");
  desktop.Answer(wxID_NO);
  desktop.Menu("mnuLaunchTrunked");
  EXPECT_EQ(desktop.Boxes(), "Cannot find zeptrunk would you like to locate the file? -> No\n");
  EXPECT_TRUE(desktop.started.empty());
  desktop.Answer(wxID_YES);
  desktop.Choose(program);
  desktop.Menu("mnuLaunchTrunked");
  EXPECT_EQ(desktop.Boxes(),
            "Cannot find zeptrunk would you like to locate the file? -> Yes\n[Find zeptrunk...]\n");
  desktop.Menu("mnuLaunchTrunked");  // its place is known now
  desktop.Menu("mnuVornWorld");
  desktop.Menu("mnuVornSupport");
  desktop.Menu("mnuVornUpdate");
  EXPECT_EQ(desktop.started,
            (std::vector<std::string>{program, program, "https://www.vorn.example/",
                                      "https://www.vorn.example/support",
                                      "https://www.vorn.example/support/zep/upgrade"}));
  EXPECT_EQ(desktop.Boxes(), "");
}

TEST(Menus, ExitAsksAndCancelLeavesEverythingAsItWas) {
  RunningDesktop desktop;
  desktop.Answer(wxID_CANCEL);
  desktop.Menu("mnuExit");
  ASSERT_NE(desktop.frame, nullptr);
  EXPECT_EQ(desktop.application->current_task, shell::Task::kSpecification);
  desktop.Answer(wxID_OK);
  desktop.frame->Entry("mnuExit")->GetMenu()->SendEvent(desktop.frame->Entry("mnuExit")->GetId());
  Desktop::Settle();
  EXPECT_EQ(desktop.frame, nullptr);
  EXPECT_EQ(desktop.Boxes(),
            "Are you sure you wish to Exit? -> No\nAre you sure you wish to Exit? -> Yes\n");
}

TEST(StartUp, GoesOnInEnglishWithADamagedDictionaryAndSaysSo) {
  Desktop desktop({"sim:conventional"}, "ZEP", 2);
  desktop.folder.Write("ZEPDLCA.mld", "fr \"sans anglais\"\n");
  ASSERT_TRUE(desktop.Start());
  EXPECT_THAT(desktop.Boxes(), ::testing::MatchesRegex("The dictionary is damaged .line 1.*"));
  EXPECT_EQ(desktop.frame->GetMenuBar()->GetMenuLabelText(desktop.frame->Heading("mnuFile")),
            "File");
}

// Notes which labels have which letters, and tells of clashes.
struct Letters {
  std::map<wxChar, wxString> owners;
  std::string clashes;

  // Whether the label has a letter.
  bool Add(const wxString& label) {
    const wxChar letter = services::MnemonicOf(label);
    if (letter == 0) return false;
    const auto [owner, is_new] = owners.emplace(letter, label);
    if (!is_new) clashes += (owner->second + " / " + label + "\n").utf8_string();
    return true;
  }
  // And labels of buttons and boxes that are cut off.
  void AddControls(const wxWindow& window) {
    for (const wxWindow* child : window.GetChildren()) {
      if (child->IsShown()) Add(child->GetLabel());
      const bool has_text = dynamic_cast<const wxButton*>(child) != nullptr ||
                            dynamic_cast<const wxCheckBox*>(child) != nullptr;
      if (has_text && child->IsShown() && child->GetSize().x < child->GetBestSize().x)
        clashes += (child->GetLabel() + " is cut off\n").utf8_string();
      AddControls(*child);
    }
  }
};

TEST(Keyboard, NoLetterIsTakenTwiceInAnyWindowOrLanguage) {
  for (int language = 1; language <= services::kLanguageCount; ++language) {
    Desktop desktop({"sim:conventional"}, "Torvik", language);
    ASSERT_TRUE(desktop.Start("INHOUSE"));
    const wxMenuBar* bar = desktop.frame->GetMenuBar();
    Letters headings;
    for (std::size_t at = 0; at < bar->GetMenuCount(); ++at) {
      EXPECT_TRUE(headings.Add(bar->GetMenuLabel(at)));
      Letters entries;
      for (const wxMenuItem* item : bar->GetMenu(at)->GetMenuItems()) {
        EXPECT_TRUE(item->IsSeparator() || entries.Add(item->GetItemLabel()))
            << item->GetItemLabel();
      }
      EXPECT_EQ(entries.clashes, "");
    }
    for (const char* task : {"Specifications", "Download", "Upgrade"}) {
      SCOPED_TRACE(std::string(task) + " in language " + std::to_string(language));
      desktop.Open(task);
      Letters letters = headings;
      letters.AddControls(*desktop.frame->MainWindow().TaskForm());
      EXPECT_EQ(letters.clashes, "");
    }
    for (const auto& [dialog, entry] : std::map<std::string, std::string>{
             {"frmPreferences", "mnuPreferences"}, {"frmAbout", "mnuAbout"}}) {
      SCOPED_TRACE(dialog + " in language " + std::to_string(language));
      desktop.dialogs.WhenShown(dialog, [](wxDialog& shown) {
        Letters letters;
        letters.AddControls(shown);
        EXPECT_EQ(letters.clashes, "");
        EXPECT_NE(shown.GetEscapeId(), wxID_NONE);
        shown.EndModal(wxID_CANCEL);
      });
      desktop.Menu(entry);
    }
  }
}

TEST(Keyboard, TabGoesThroughTheTreeAndTheTask) {
  RunningDesktop desktop;
  desktop.frame->Raise();
  std::string way;
  for (int step = 0; step < 5; ++step) {
    wxWindow* focus = wxWindow::FindFocus();
    if (focus == nullptr) break;
    way += focus->GetName().utf8_string() + " ";
    focus->Navigate();
    Desktop::Settle();
  }
  EXPECT_EQ(way, "TreeView1 cmdReadRadio cmdCancel cmdHelp TreeView1 ");
}

TEST(Keyboard, EnterStartsNoUpgradeByAccident) {
  for (const auto& [strings, first] :
       std::map<std::string, std::string>{{"Torvik", "cmdCancel"}, {"ZEP", "cmdBrowseBinary"}}) {
    RunningDesktop desktop({"sim:conventional"}, strings);
    desktop.frame->Raise();
    desktop.Open("Upgrade");
    const wxWindow* focus = wxWindow::FindFocus();
    EXPECT_EQ(focus != nullptr ? focus->GetName().utf8_string() : "", first);
    EXPECT_EQ(desktop.frame->GetDefaultItem(), nullptr);
  }
}

TEST(Help, EveryWindowShowsItsOwnPage) {
  RunningDesktop desktop({"sim:conventional"}, "Torvik");
  std::string pages;
  desktop.application->context.show_help = [&](const std::string& page) {
    EXPECT_TRUE(std::filesystem::exists(ZEP_SOURCE_DIR "/resources/help/en/" + page)) << page;
    pages += page + " ";
  };
  for (const char* task : {"Specifications", "Download", "Upgrade"}) {
    desktop.Open(task);
    desktop.Click("cmdHelp");
  }
  desktop.dialogs.WhenShown("frmPreferences", [&](wxDialog& dialog) {
    desktop.Click("cmdHelp", &dialog);
    dialog.EndModal(wxID_CANCEL);
  });
  desktop.Menu("mnuPreferences");
  EXPECT_EQ(pages, "specification.htm download.htm automatic_upgrade.htm preferences.htm ");
}

// A dialog of the help window would hold up the job.
TEST(Help, CanBeReadBesideADialogAndAJob) {
  RunningDesktop desktop;
  desktop.Menu("mnuContents");
  wxWindow* book = nullptr;
  for (wxWindow* window : wxTopLevelWindows)
    if (window != desktop.frame && window->IsShown()) book = window;
  ASSERT_NE(book, nullptr);
  wxWindow* search = book->FindWindow(wxID_HTML_SEARCHBUTTON);
  desktop.dialogs.WhenShown("frmPreferences", [&](wxDialog& dialog) {
    desktop.Click("cmdHelp", &dialog);
    EXPECT_TRUE(book->IsEnabled());
    EXPECT_TRUE(search->IsEnabled());
    auto* page = desktop.Find<wxHtmlWindow>("htmlWindow", book);
    EXPECT_EQ(page->GetOpenedPageTitle(), "Preferences");
    dialog.EndModal(wxID_CANCEL);
  });
  desktop.Menu("mnuPreferences");
  {
    const link::Job job(desktop.application->link);
    book->UpdateWindowUI(wxUPDATE_UI_RECURSE);
    EXPECT_FALSE(search->IsEnabled());
  }
  book->UpdateWindowUI(wxUPDATE_UI_RECURSE);
  EXPECT_TRUE(search->IsEnabled());
}

TEST(Help, EscapeClosesItAndLeavesTheJobAlone) {
  RunningDesktop desktop;
  const link::Job job(desktop.application->link);
  for (const char* part : {"treeCtrl", "htmlWindow"}) {
    desktop.application->context.show_help("download.htm");
    wxWindow* window = wxWindow::FindWindowByName(part);
    ASSERT_NE(window, nullptr) << part;
    wxKeyEvent escape(wxEVT_CHAR_HOOK);
    escape.m_keyCode = WXK_ESCAPE;
    window->ProcessWindowEvent(escape);
    Desktop::Settle();
    EXPECT_EQ(wxWindow::FindWindowByName(part), nullptr) << part;
  }
  EXPECT_FALSE(job.Stopped());
}

}  // namespace
}  // namespace zep::testing
