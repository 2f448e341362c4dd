// The technician's jobs with a radio's data through the windows, on the real engine and simulated
// radios; and the frame around a job.
#include <gmock/gmock.h>
#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/radiobut.h>

#include "tests/gui_testing.h"

namespace zep::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

TEST(Specification, ShowsTheRadioAndForgetsItWhenTheNextOneIsSilent) {
  RunningDesktop desktop({"sim:trunked", "sim:conventional,fault=silent@caret"});
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
  RunningDesktop desktop({"sim:trunked"});
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
    RunningDesktop desktop({"sim:conventional"});
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
    RunningDesktop desktop({"sim:conventional,unpaced"});
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

TEST(Frame, ClosingItDuringAJobAsksAndNeverLeavesTheJobBehind) {
  for (const bool yes : {false, true}) {
    SCOPED_TRACE(yes);
    RunningDesktop desktop({"sim:conventional"});
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

TEST(Frame, EndsWithoutAskingThroughAnOpenDialog) {
  const std::pair<const char*, const char*> rows[] = {{"frmAbout", "mnuAbout"},
                                                      {"frmPreferences", "mnuPreferences"},
                                                      {"frmReadWriteRadio", "mnuRead"}};
  for (const auto& [dialog, entry] : rows) {
    SCOPED_TRACE(dialog);
    RunningDesktop desktop;
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
  RunningDesktop desktop;
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
  RunningDesktop desktop({"sim:conventional,fault=silent@caret"});
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

TEST(Preferences, ChangePortsAndLanguageAtOnce) {
  RunningDesktop desktop({"sim:conventional", "sim:trunked"});
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
  RunningDesktop desktop({"sim:conventional"});
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
    RunningDesktop desktop({"sim:torvik,unpaced"}, "Torvik", language);
    desktop.Click("cmdReadRadio");
    EXPECT_EQ(desktop.Text("lblSerialNumber"), "10000125");
    desktop.Choose(desktop.folder.Path("day.ops"));
    desktop.Menu("mnuRead");
    desktop.Choose(desktop.folder.Path("day.ops"));
    desktop.Menu("mnuProgram");
    desktop.Open("Upgrade");
    desktop.Click("cmdUpgrade");
    desktop.Open("Download");
    desktop.Choose(desktop.folder.Path("model11-a1-1mbit.bin"));
    desktop.Click("cmdBrowseBinary");
    desktop.Find<wxCheckBox>("chkAutoSaveRadioData")->SetValue(true);
    const simulator::SimulatedRadio& radio = desktop.Radio("sim:torvik,unpaced");
    const std::size_t written = radio.Counts().records_written;
    desktop.Click("cmdDownload");
    EXPECT_NE(desktop.Text("txtResult"), "");
    EXPECT_GT(radio.Counts().records_written, written) << "the data that was saved before";
    desktop.Open("Specifications");
    desktop.Click("cmdReadRadio");
    EXPECT_EQ(desktop.Text("lblSoftwareVersion"), "0126");
    EXPECT_NE(desktop.Boxes(), "");
  }
}

}  // namespace
}  // namespace zep::testing
