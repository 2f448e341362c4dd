// Firmware through the windows: downloads, the reading of a flash, upgrades.
#include <gmock/gmock.h>

#include "tests/gui_testing.h"

namespace zep::testing {
namespace {

using ::testing::ContainsRegex;
using ::testing::HasSubstr;

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
  RunningDesktop desktop;
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

TEST(InHouse, ReadsTheFlashOfOneRadioIntoAFile) {
  Desktop desktop({"sim:conventional,unpaced"});
  ASSERT_TRUE(desktop.Start("INHOUSE"));
  desktop.Choose(desktop.folder.Path("flash.bin"));
  desktop.Menu("mnuReadFirmware");
  EXPECT_THAT(desktop.Boxes(),
              ::testing::MatchesRegex(
                  "\\[Select Upload File Name\\]\nPlease put radio in Bootstrap mode.\n"
                  "Completed uploading firmware from radio on communication port 1\n"
                  "Port 1 \\(sim:conventional,unpaced\\): done, E1, SST29EE020 2MBit\n"
                  "183552 bytes per radio in [0-9.]+ seconds.\n"
                  "The flash memory is saved in FOLDER/flash.bin \\(262144 bytes\\).\n"));
  EXPECT_EQ(desktop.folder.Read("flash.bin").value_or("").size(), 262144U);
}

TEST(AutomaticUpgrade, UpgradesAndTellsWhenThereIsNothingToDo) {
  RunningDesktop desktop({"sim:torvik,unpaced"}, "Torvik");
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
  RunningDesktop desktop({"sim:torvik,unpaced"}, "Torvik");
  desktop.Open("Upgrade");
  desktop.AtTurn(400, [&] { desktop.Click("cmdCancel"); });
  desktop.Click("cmdUpgrade");
  EXPECT_THAT(desktop.Boxes(), HasSubstr("The upgrade process was aborted\n"));
  EXPECT_THAT(desktop.folder.Read("upgrade.log").value_or(""),
              HasSubstr("The upgrade process was aborted"));
  EXPECT_FALSE(desktop.application->session.jobs.IsRunning());
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
              ContainsRegex("Port 1 .*: done, .*\nPort 2 .*: failed, .*\n[^\n]*\n"
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

}  // namespace
}  // namespace zep::testing
