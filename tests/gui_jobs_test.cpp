// The technician's jobs through the windows, on the real engine and simulated radios.
#include <gmock/gmock.h>
#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/radiobut.h>

#include "tests/gui_testing.h"

namespace zep::testing {
namespace {

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kCancelQuestion =
    "This action will leave the radio in an undefined state. Cancel?";

// The names of the frames that are still shown besides the main window.
std::string OpenDialogs() {
  std::string names;
  for (const wxWindow* window : wxTopLevelWindows) {
    const auto* dialog = dynamic_cast<const wxDialog*>(window);
    if (dialog != nullptr && dialog->IsShown()) names += dialog->GetName().utf8_string() + " ";
  }
  return names;
}

TEST(Specification, ShowsTheRadioAndForgetsItWhenTheNextOneIsSilent) {
  Desktop desktop({"sim:trunked", "sim:conventional,fault=silent@caret"});
  ASSERT_TRUE(desktop.Start());
  desktop.dialogs.WhenShown("frmSelectCommPort",
                            [&](wxDialog& dialog) { desktop.Click("cmdCancel", &dialog); });
  desktop.Click("cmdReadRadio");
  EXPECT_EQ(desktop.Boxes(), "");
  EXPECT_FALSE(desktop.application->link.Port(1).IsOpen());
  desktop.dialogs.WhenShown("frmSelectCommPort", [&](wxDialog& dialog) {
    desktop.Find<wxRadioButton>("optCommSelect1", &dialog)->SetValue(true);
    wxCommandEvent chosen(wxEVT_RADIOBUTTON);
    desktop.Find<wxRadioButton>("optCommSelect1", &dialog)->ProcessWindowEvent(chosen);
    desktop.Click("cmdOk", &dialog);
  });
  desktop.Click("cmdReadRadio");
  EXPECT_EQ(desktop.Text("lblSerialNumber"), "10004711");
  EXPECT_EQ(desktop.Text("lblNetworks"), "3");
  EXPECT_EQ(desktop.Boxes(), "");

  desktop.application->link.CommStates[0] = link::PortState::kAvailable;
  desktop.Click("cmdReadRadio");
  EXPECT_EQ(desktop.Boxes(),
            "The radio is not responding, please check the connections.\n"
            "Error Reading Item 0.\n");
  EXPECT_EQ(desktop.Text("lblSerialNumber"), "-");
  EXPECT_FALSE(desktop.application->session.jobs.IsRunning());
}

TEST(RadioMenu, ReadsIntoAFileAndProgramsItAgain) {
  Desktop desktop({"sim:trunked"});
  ASSERT_TRUE(desktop.Start());
  desktop.Choose(desktop.folder.Path("a.omn"));
  desktop.Menu("mnuRead");
  EXPECT_EQ(desktop.Boxes(),
            "[Select Multiple Network Data File to save to]\n"
            "The data of radio 10004711 (ZEP 2250) is saved in FOLDER/a.omn.\n");
  EXPECT_EQ(desktop.application->current_task, shell::Task::kNone) << "the task was closed";
  const std::string saved = desktop.folder.Read("a.omn").value_or("");
  EXPECT_THAT(saved, HasSubstr("~~~"));

  desktop.Choose(desktop.folder.Path("a.omn"));
  desktop.Menu("mnuProgram");
  EXPECT_EQ(desktop.Boxes(),
            "[Select Data File]\nRadio 10004711 (ZEP 2250) is programmed with FOLDER/a.omn.\n");
  EXPECT_EQ(*desktop.user_hive.Read(Desktop::kKey, "DefaultDataFilePath"),
            desktop.folder.Path() + "/");
  desktop.Choose("");
  desktop.Menu("mnuProgram");
  EXPECT_EQ(desktop.Boxes(), "[Select Data File]\n") << "given up";

  desktop.Choose(desktop.folder.Path("a.omn"));
  desktop.Answer(wxID_NO);
  desktop.Menu("mnuRead");
  EXPECT_THAT(desktop.Boxes(), HasSubstr("File exists overwrite? -> No\n"));
  EXPECT_EQ(*desktop.folder.Read("a.omn"), saved);
  EXPECT_EQ(OpenDialogs(), "");
}

TEST(RadioMenu, ACancelledReadLeavesNoFileAndNoJobBehind) {
  for (const int turn : {1, 30, 300, 3000}) {
    SCOPED_TRACE(turn);
    Desktop desktop({"sim:conventional"});
    ASSERT_TRUE(desktop.Start());
    desktop.AtTurn(
        turn, [&] { desktop.Click("cmdCancel", wxWindow::FindWindowByName("frmReadWriteRadio")); });
    if (turn > 300) desktop.Choose(desktop.folder.Path("a.ops"));
    desktop.Menu("mnuRead");
    EXPECT_THAT(desktop.Boxes(), Not(HasSubstr("is saved in")));
    EXPECT_EQ(OpenDialogs(), "");
    EXPECT_FALSE(desktop.application->session.jobs.IsRunning());
    EXPECT_FALSE(desktop.application->link.Port(1).IsOpen());
    desktop.Open("Specifications");
    desktop.Click("cmdReadRadio");
    EXPECT_EQ(desktop.Text("lblSerialNumber"), "10000001") << "the next job works";
  }
}

TEST(RadioMenu, ProgrammingStopsOnlyAfterAQuestion) {
  for (const bool yes : {false, true}) {
    SCOPED_TRACE(yes);
    Desktop desktop({"sim:conventional,unpaced"});
    ASSERT_TRUE(desktop.Start());
    desktop.Choose(desktop.folder.Path("a.ops"));
    desktop.Menu("mnuRead");
    desktop.Boxes();
    const auto& counts = desktop.Radio("sim:conventional,unpaced").Counts();
    desktop.application->session.on_turn = [&, asked = false]() mutable {
      if (counts.records_written == 0 || std::exchange(asked, true)) return;
      desktop.Answer(yes ? wxID_YES : wxID_NO);
      desktop.Click("cmdCancel", wxWindow::FindWindowByName("frmReadWriteRadio"));
    };
    desktop.Choose(desktop.folder.Path("a.ops"));
    desktop.Menu("mnuProgram");
    const std::string boxes = desktop.Boxes();
    EXPECT_THAT(boxes, HasSubstr(std::string(kCancelQuestion) + (yes ? " -> Yes\n" : " -> No\n")));
    EXPECT_EQ(boxes.find("is programmed with") == std::string::npos, yes) << boxes;
    EXPECT_EQ(OpenDialogs(), "");
    EXPECT_FALSE(desktop.application->link.Port(1).IsOpen());
  }
}

// The download window with an image chosen.
void OpenDownload(Desktop& desktop, const std::string& image) {
  ASSERT_TRUE(desktop.Start());
  desktop.Open("Download");
  desktop.Choose(desktop.folder.Path(image));
  desktop.Click("cmdBrowseBinary");
  EXPECT_EQ(desktop.Boxes(), "[Select Firmware File to Download]\n");
  EXPECT_EQ(desktop.Text("txtBinaryFileName"), image);
}

constexpr const char* kImage = "model11-a1-1mbit.bin";
constexpr const char* kBootstrapBox = "Please put radio in Bootstrap mode.\n";

TEST(Download, GoesIntoFourRadiosAndTellsOfTheOneThatFails) {
  const std::string good = "sim:torvik,unpaced,serial=1000010";
  Desktop desktop({good + "1", good + "2,fault=silent@block:100", good + "3", good + "4"});
  OpenDownload(desktop, kImage);
  EXPECT_FALSE(desktop.Find<wxWindow>("chkAutoSaveRadioData")->IsShown()) << "several ports";
  EXPECT_FALSE(desktop.Find<wxWindow>("cmdUpload")->IsShown());
  desktop.Click("cmdDownload");
  const std::string boxes = desktop.Boxes();
  EXPECT_THAT(boxes, HasSubstr(kBootstrapBox));
  EXPECT_THAT(boxes, HasSubstr("The radio is not responding, please check the connections.\n"));
  for (const char* port : {"1", "3", "4"}) {
    EXPECT_THAT(boxes, HasSubstr("Completed downloading firmware to radio on communication port " +
                                 std::string(port)));
  }
  const std::string result = desktop.Text("txtResult");
  EXPECT_THAT(result, HasSubstr("serial=10000103): done")) << result;
  EXPECT_THAT(result, HasSubstr("failed"));
  EXPECT_THAT(result, HasSubstr("92544 bytes per radio"));
  EXPECT_TRUE(desktop.application->link.IsActive(2)) << "it can be tried again at once";
}

TEST(Download, SavesTheDataBeforeAndWritesItBackAfterwards) {
  Desktop desktop({"sim:torvik,unpaced"});
  OpenDownload(desktop, kImage);
  auto* save = desktop.Find<wxCheckBox>("chkAutoSaveRadioData");
  ASSERT_TRUE(save->IsShown());
  save->SetValue(true);
  desktop.Click("cmdDownload");
  const std::string boxes = desktop.Boxes();
  EXPECT_THAT(boxes, HasSubstr("Completed downloading firmware"));
  EXPECT_FALSE(desktop.application->radio.data_file.empty());
  EXPECT_EQ(OpenDialogs(), "");
}

TEST(Download, AsksOnceForTheDataFile) {
  for (const bool yes : {false, true}) {
    SCOPED_TRACE(yes);
    Desktop desktop({"sim:torvik,unpaced"});
    OpenDownload(desktop, kImage);
    desktop.Choose(desktop.folder.Write("empty.ops", ""));
    desktop.Click("cmdBrowseData");
    desktop.Answer(yes ? wxID_YES : wxID_NO);
    desktop.Click("cmdDownload");
    const std::string boxes = desktop.Boxes();
    EXPECT_THAT(boxes, HasSubstr("Program default data file: FOLDER/empty.ops -> "));
    EXPECT_EQ(boxes.find("Data file is corrupt.") != std::string::npos, yes);
  }
}

TEST(Download, RefusesWhatIsNoImageAndKeepsTheNames) {
  Desktop desktop;
  desktop.folder.Write("bad.bin", "no image");
  ASSERT_TRUE(desktop.Start());
  desktop.Open("Download");
  desktop.Click("cmdDownload");
  EXPECT_EQ(desktop.Boxes(), "Please select a valid file to down load.\n");
  desktop.Choose(desktop.folder.Path("bad.bin"));
  desktop.Click("cmdBrowseBinary");
  EXPECT_THAT(desktop.Boxes(),
              HasSubstr("The selected file is not valid. Please select another file.\n"));
  desktop.frame->Raise();
  desktop.Click("cmdDownload");
  EXPECT_THAT(desktop.Boxes(),
              HasSubstr("The selected file is not valid. Please select another file.\n"));
  EXPECT_TRUE(desktop.Find<wxTextCtrl>("txtBinaryFileName")->HasFocus());
  EXPECT_EQ(desktop.Text("txtBinaryFileName"), "bad.bin");
  desktop.Type("txtDataFileName", "other.ops");
  desktop.Open("Specifications");
  EXPECT_EQ(*desktop.user_hive.Read(Desktop::kKey, "BinaryFileName"), "bad.bin");
  EXPECT_EQ(*desktop.user_hive.Read(Desktop::kKey, "DataFileName"), "other.ops");
}

TEST(Download, KeepsWhatIsTypedOnceItIsComplete) {
  Desktop desktop;
  ASSERT_TRUE(desktop.Start());
  desktop.Open("Download");
  for (const char* file : {"txtBinaryFileName", "txtDataFileName"})
    desktop.Type(file, desktop.folder.Path(kImage));
  EXPECT_FALSE(desktop.user_hive.Read(Desktop::kKey, "BinaryFileName")) << "not at every key";
  wxFocusEvent leave(wxEVT_KILL_FOCUS);
  desktop.Find<wxTextCtrl>("txtBinaryFileName")->ProcessWindowEvent(leave);
  for (const std::string file : {"Binary", "Data"}) {
    EXPECT_EQ(desktop.Text("txt" + file + "FileName"), kImage);
    EXPECT_EQ(desktop.Text("txt" + file + "FilePath"), desktop.folder.Path("")) << "divided";
    EXPECT_EQ(desktop.user_hive.Read(Desktop::kKey, file + "FileName"), kImage);
  }
  EXPECT_EQ(desktop.Text("lblImageFacts"), "ZEP 1100 (11), Conventional, A1, 1 Mbit");
}

TEST(Download, CancelAsksAndOnlyYesStops) {
  for (const bool yes : {false, true}) {
    SCOPED_TRACE(yes);
    Desktop desktop({"sim:torvik"});
    OpenDownload(desktop, kImage);
    // Far into the blocks; the bootstraps cannot be cancelled.
    desktop.AtTurn(10000, [&] {
      desktop.Answer(yes ? wxID_YES : wxID_NO);
      desktop.Click("cmdCancel", wxWindow::FindWindowByName("frmWriteSWToRadio"));
    });
    desktop.Click("cmdDownload");
    const std::string boxes = desktop.Boxes();
    EXPECT_EQ(boxes.find("Completed downloading firmware") != std::string::npos, !yes);
    EXPECT_THAT(boxes, HasSubstr(kCancelQuestion + std::string(yes ? " -> Yes\n" : " -> No\n")));
    EXPECT_EQ(OpenDialogs(), "");
    EXPECT_FALSE(desktop.application->session.jobs.IsRunning());
  }
}

TEST(Frame, ClosingItDuringAJobAsksAndNeverLeavesTheJobBehind) {
  for (const bool yes : {false, true}) {
    SCOPED_TRACE(yes);
    Desktop desktop({"sim:conventional"});
    ASSERT_TRUE(desktop.Start());
    desktop.AtTurn(40, [&] {
      EXPECT_FALSE(desktop.frame->Entry("mnuRead")->IsEnabled()) << "no second job";
      EXPECT_TRUE(desktop.frame->Entry("mnuTranscript")->IsEnabled());
      desktop.Answer(yes ? wxID_YES : wxID_NO);
      desktop.frame->Close();
      EXPECT_NE(desktop.frame, nullptr) << "not before the job has ended";
    });
    desktop.Find<wxButton>("cmdReadRadio")
        ->Command(*std::make_unique<wxCommandEvent>(
            wxEVT_BUTTON, desktop.Find<wxButton>("cmdReadRadio")->GetId()));
    Desktop::Settle();
    EXPECT_EQ(desktop.Boxes(), std::string(kCancelQuestion) + (yes ? " -> Yes\n" : " -> No\n"));
    EXPECT_EQ(desktop.frame == nullptr, yes);
    EXPECT_FALSE(desktop.application->link.Port(1).IsOpen());
  }
}

TEST(Frame, TheEndOfTheSessionWarnsAndStopsAJobCleanly) {
  Desktop desktop({"sim:torvik"});
  OpenDownload(desktop, kImage);
  desktop.AtTurn(10000, [&] {
    desktop.Answer(wxID_NO);
    wxCloseEvent query(wxEVT_QUERY_END_SESSION);
    query.SetCanVeto(true);
    wxTheApp->ProcessEvent(query);
    EXPECT_TRUE(query.GetVeto());
    EXPECT_FALSE(desktop.application->session.jobs.IsStopping());
    wxCloseEvent end(wxEVT_END_SESSION);
    end.SetCanVeto(false);
    wxTheApp->ProcessEvent(end);
  });
  desktop.Click("cmdDownload");
  const std::string boxes = desktop.Boxes();
  EXPECT_THAT(boxes, HasSubstr(std::string(kCancelQuestion) + " -> No\n"));
  EXPECT_EQ(boxes.find("Completed downloading firmware"), std::string::npos);
  EXPECT_FALSE(desktop.application->link.Port(1).IsOpen());
  EXPECT_EQ(OpenDialogs(), "");
  EXPECT_EQ(desktop.frame, nullptr) << "the program ends after its job";
}

TEST(Frame, EndsWithoutAskingThroughAnOpenDialog) {
  const std::pair<const char*, const char*> rows[] = {{"frmAbout", "mnuAbout"},
                                                      {"frmPreferences", "mnuPreferences"},
                                                      {"frmReadWriteRadio", "mnuRead"}};
  for (const auto& [dialog, entry] : rows) {
    SCOPED_TRACE(dialog);
    Desktop desktop;
    ASSERT_TRUE(desktop.Start());
    desktop.dialogs.WhenShown(dialog, [&](wxDialog&) { desktop.frame->EndWithoutAsking(); });
    desktop.Menu(entry);
    if (desktop.frame != nullptr) desktop.frame->EndWithoutAsking();
    Desktop::Settle();
    EXPECT_EQ(desktop.Boxes(), "");
    EXPECT_EQ(OpenDialogs(), "");
    EXPECT_EQ(desktop.frame, nullptr);
  }
}

TEST(Frame, ASecondClickDuringAJobStartsNothing) {
  Desktop desktop;
  ASSERT_TRUE(desktop.Start());
  desktop.AtTurn(20, [&] {
    EXPECT_FALSE(desktop.Find<wxButton>("cmdReadRadio")->IsEnabled());
    desktop.Menu("mnuRead");
    desktop.Open("Download");
  });
  desktop.Click("cmdReadRadio");
  EXPECT_EQ(desktop.Boxes(), "");
  EXPECT_EQ(desktop.application->current_task, shell::Task::kSpecification);
  EXPECT_EQ(desktop.Text("lblSerialNumber"), "10000001");
}

TEST(Keyboard, EscapeCancelsTheJobOfATaskWindow) {
  Desktop desktop({"sim:conventional,fault=silent@caret"});
  ASSERT_TRUE(desktop.Start());
  desktop.frame->Raise();
  desktop.Find<wxButton>("cmdReadRadio")->SetFocus();
  desktop.AtTurn(20, [&] {
    const wxWindow* focus = wxWindow::FindFocus();
    ASSERT_NE(focus, nullptr);
    EXPECT_EQ(focus->GetName(), "cmdCancel");
    wxKeyEvent escape(wxEVT_CHAR_HOOK);
    escape.m_keyCode = WXK_ESCAPE;
    focus->GetEventHandler()->ProcessEvent(escape);
  });
  desktop.Click("cmdReadRadio");
  EXPECT_EQ(desktop.Boxes(), "");
  EXPECT_THAT(desktop.Text("lblStatus"), StartsWith("No radio has been read yet."));
}

TEST(InHouse, ReadsTheFlashOfOneRadioIntoAFile) {
  Desktop desktop({"sim:conventional,unpaced"});
  ASSERT_TRUE(desktop.Start("INHOUSE"));
  desktop.Choose(desktop.folder.Path("flash.bin"));
  desktop.Menu("mnuReadFirmware");
  EXPECT_THAT(desktop.Boxes(),
              ::testing::MatchesRegex(
                  "\\[Select Upload File Name\\]\nPlease put radio in Bootstrap mode.\n"
                  "Completed uploading firmware from radio on communication port 1\n"
                  "Slot 1 \\(sim:conventional,unpaced\\): done, E1, SST29EE020 2MBit\n"
                  "183552 bytes per radio in [0-9.]+ seconds.\n"
                  "The flash memory is saved in FOLDER/flash.bin \\(262144 bytes\\).\n"));
  EXPECT_EQ(desktop.folder.Read("flash.bin").value_or("").size(), 262144U);
}

TEST(AutomaticUpgrade, UpgradesAndTellsWhenThereIsNothingToDo) {
  Desktop desktop({"sim:torvik,unpaced"}, "Torvik");
  desktop.user_hive.Write(Desktop::kKey, "DefaultDataPath", desktop.folder.Path());
  ASSERT_TRUE(desktop.Start());
  desktop.Open("Upgrade");
  desktop.Click("cmdUpgrade");
  EXPECT_THAT(desktop.Boxes(), HasSubstr("The upgrade process has completed successfully\n"));
  EXPECT_THAT(desktop.Text("txtUpgradeSteps"),
              HasSubstr("Attempting to reprogram personality\nThe upgrade process has completed "
                        "successfully\n"));
  EXPECT_THAT(desktop.Text("txtBinaryFileName"), HasSubstr("PP11PhaseI.bin"));
  desktop.Click("cmdUpgrade");
  EXPECT_EQ(desktop.Boxes(), "Firmware already up-to-date. Upgrade not required.\n");
}

TEST(AutomaticUpgrade, CancelEndsItAsAborted) {
  for (const int turn : {20, 400, 3000}) {
    SCOPED_TRACE(turn);
    Desktop desktop({"sim:torvik,unpaced"}, "Torvik");
    desktop.user_hive.Write(Desktop::kKey, "DefaultDataPath", desktop.folder.Path());
    ASSERT_TRUE(desktop.Start());
    desktop.Open("Upgrade");
    desktop.AtTurn(turn, [&] { desktop.Click("cmdCancel"); });
    desktop.Click("cmdUpgrade");
    EXPECT_THAT(desktop.Boxes(), HasSubstr("The upgrade process was aborted\n"));
    EXPECT_THAT(desktop.folder.Read("upgrade.log").value_or(""),
                HasSubstr("The upgrade process was aborted"));
    EXPECT_FALSE(desktop.application->session.jobs.IsRunning());
  }
}

TEST(UpgradeDialog, SucceedsOnlyWhenEveryRadioHasTheFirmware) {
  Desktop desktop(
      {"sim:torvik,unpaced", "sim:torvik,unpaced,serial=10000102,fault=silent@block:3"});
  ASSERT_TRUE(desktop.Start("INHOUSE"));
  desktop.Menu("mnuUpgrade");
  desktop.Find<wxCheckBox>("chkSaveMain")->SetValue(false);
  desktop.Find<wxCheckBox>("chkSaveCalibration")->SetValue(false);
  desktop.Choose(desktop.folder.Path(kImage));
  desktop.Click("cmdBrowseBinary");
  desktop.Click("cmdUpgrade");
  EXPECT_THAT(desktop.Text("txtUpgradeSteps"),
              ContainsRegex("Slot 1 .*: done, .*\nSlot 2 .*: failed, .*\n[^\n]*\n"
                            "The upgrade process did not complete successfully\n$"));
  desktop.Boxes();
}

TEST(UpgradeDialog, KeepsItsBoxesAndSavesWhatIsTicked) {
  Desktop desktop({"sim:torvik,unpaced"});
  ASSERT_TRUE(desktop.Start("INHOUSE"));
  desktop.Menu("mnuUpgrade");
  EXPECT_EQ(desktop.application->current_task, shell::Task::kUpgrade);
  for (const char* box :
       {"chkSaveMain", "chkSaveCalibration", "chkUpgradeCalibration", "chkAppLaunchExe"})
    EXPECT_TRUE(desktop.Find<wxCheckBox>(box)->GetValue()) << box;
  desktop.Click("cmdUpgrade");
  EXPECT_THAT(desktop.Boxes(), HasSubstr("Please select a valid file to down load.\n"));
  desktop.Find<wxCheckBox>("chkSaveMain")->SetValue(false);
  desktop.Find<wxCheckBox>("chkSaveCalibration")->SetValue(false);
  desktop.Choose(desktop.folder.Path(kImage));
  desktop.Click("cmdBrowseBinary");
  desktop.Boxes();
  desktop.Click("cmdUpgrade");
  EXPECT_THAT(desktop.Boxes(), HasSubstr("Completed downloading firmware"));
  EXPECT_FALSE(std::filesystem::exists(desktop.folder.Path("database"))) << "nothing was read";
  desktop.Menu("mnuUpgrade");
  EXPECT_FALSE(desktop.Find<wxCheckBox>("chkSaveMain")->GetValue());
  EXPECT_TRUE(desktop.Find<wxCheckBox>("chkAppLaunchExe")->GetValue());
}

TEST(Preferences, ChangePortsAndLanguageAtOnce) {
  Desktop desktop({"sim:conventional", "sim:trunked"});
  ASSERT_TRUE(desktop.Start());
  desktop.dialogs.WhenShown("frmPreferences", [&](wxDialog& dialog) {
    desktop.Find<wxCheckBox>("chkSelectCommPort1", &dialog)->SetValue(false);
    desktop.Find<wxComboBox>("cboDevice2", &dialog)->SetValue("nosuchport");
    desktop.Click("cmdOk", &dialog);
    EXPECT_THAT(desktop.Boxes(), HasSubstr("nosuchport")) << "it cannot be opened";
    EXPECT_TRUE(dialog.IsModal());
    desktop.Find<wxComboBox>("cboDevice2", &dialog)->SetValue("sim:torvik,unpaced");
    desktop.Find<wxCheckBox>("chkSelectCommPort2", &dialog)->SetValue(true);
    desktop.Click("cmdTest2", &dialog);
    desktop.Find<wxChoice>("cboLanguage", &dialog)->SetSelection(1);
    desktop.Click("cmdOk", &dialog);
  });
  desktop.Menu("mnuPreferences");
  EXPECT_EQ(*desktop.user_hive.Read(Desktop::kKey, "CommPort1State"), "2");
  EXPECT_EQ(*desktop.user_hive.Read(Desktop::kKey, "CommPort2State"), "1");
  EXPECT_EQ(*desktop.user_hive.Read(Desktop::kKey, "CommPort2Device"), "sim:torvik,unpaced");
  EXPECT_EQ(desktop.frame->GetMenuBar()->GetMenuLabelText(0).utf8_string(), "Fichier");
  EXPECT_EQ(desktop.Find<wxButton>("cmdReadRadio")->GetLabelText().utf8_string(), "Lire la radio");
  desktop.Click("cmdReadRadio");
  EXPECT_EQ(desktop.Text("lblSerialNumber"), "10000125");

  desktop.dialogs.WhenShown("frmPreferences", [&](wxDialog& dialog) {
    desktop.Find<wxChoice>("cboLanguage", &dialog)->SetSelection(0);
    dialog.EndModal(wxID_CANCEL);
  });
  desktop.Menu("mnuPreferences");
  EXPECT_EQ(desktop.application->UILanguage, 2) << "cancelled";
}

TEST(Preferences, HoldUntilTheEndWhenTheyCannotBeSaved) {
  Desktop desktop({"sim:conventional"});
  ASSERT_TRUE(desktop.Start());
  desktop.user_hive.is_broken = true;
  desktop.dialogs.WhenShown("frmPreferences", [&](wxDialog& dialog) {
    desktop.Find<wxComboBox>("cboDevice1", &dialog)->SetValue("sim:trunked");
    desktop.Find<wxChoice>("cboLanguage", &dialog)->SetSelection(2);
    desktop.Click("cmdOk", &dialog);
  });
  desktop.Menu("mnuPreferences");
  EXPECT_EQ(desktop.Boxes(),
            "The settings cannot be saved, so your choice holds only until this application ends.\n"
            "settings.ini: Permission denied.\n");
  EXPECT_EQ(desktop.Find<wxButton>("cmdReadRadio")->GetLabelText().utf8_string(), "Leer radio");
  desktop.Click("cmdReadRadio");
  EXPECT_EQ(desktop.Text("lblSerialNumber"), "10004711");
}

TEST(Day, OfATechnicianInEachLanguage) {
  for (int language = 1; language <= services::kLanguageCount; ++language) {
    SCOPED_TRACE(language);
    Desktop desktop({"sim:torvik,unpaced"}, "Torvik", language);
    desktop.user_hive.Write(Desktop::kKey, "DefaultDataPath", desktop.folder.Path());
    ASSERT_TRUE(desktop.Start());
    desktop.Click("cmdReadRadio");
    EXPECT_EQ(desktop.Text("lblSerialNumber"), "10000125");
    desktop.Choose(desktop.folder.Path("day.ops"));
    desktop.Menu("mnuRead");
    desktop.Choose(desktop.folder.Path("day.ops"));
    desktop.Menu("mnuProgram");
    desktop.Open("Upgrade");
    desktop.Click("cmdUpgrade");
    desktop.Open("Download");
    desktop.Choose(desktop.folder.Path(kImage));
    desktop.Click("cmdBrowseBinary");
    desktop.Find<wxCheckBox>("chkAutoSaveRadioData")->SetValue(true);
    desktop.Click("cmdDownload");
    EXPECT_NE(desktop.Text("txtResult"), "");
    desktop.Open("Specifications");
    desktop.Click("cmdReadRadio");
    EXPECT_EQ(desktop.Text("lblSoftwareVersion"), "0126");
    EXPECT_NE(desktop.Boxes(), "");
  }
}

}  // namespace
}  // namespace zep::testing
