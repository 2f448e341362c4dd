// Takes a picture of every window in every language, for a person to look through:
//
//   gui_screenshots FOLDER       (scripts/screenshots.sh does it under a screen of its own)
#include <cstdlib>

#include <wx/image.h>
#include <wx/init.h>
#include <wx/treectrl.h>

#include "link/frmSelectCommPort.h"
#include "tests/gui_testing.h"

namespace zep::testing {
namespace {

class Album {
 public:
  Album(std::string folder, services::Language language)
      : folder_(std::move(folder)), code_(LanguageCode(language)), language_(language) {}

  void TakeAll();

 private:
  void Take(wxWindow& window, const std::string& name) {
    // Longer than a pause in typing.
    for (int turn = 0; turn < 40; ++turn) {
      wxTheApp->Yield();
      wxMilliSleep(10);
    }
    const wxRect place = window.GetScreenRect();
    // The toolkit's own copy of the screen does not follow what is drawn later.
    const std::string command = "import -window root -crop " + std::to_string(place.width) + "x" +
                                std::to_string(place.height) + "+" + std::to_string(place.x) + "+" +
                                std::to_string(place.y) + " +repage '" + folder_ + "/" + name +
                                "-" + code_ + ".png'";
    EXPECT_EQ(std::system(command.c_str()), 0);
  }
  // The picture of a dialog that the next step opens; it is closed then.
  void TakeDialog(Desktop& desktop, const std::string& name, int end = wxID_CANCEL) {
    desktop.dialogs.WhenShown(name, [this, name, end](wxDialog& dialog) {
      Take(dialog, name);
      dialog.EndModal(end);
    });
  }
  // The picture of a dialog in the given turn of the job that it shows.
  void TakeInTurn(Desktop& desktop, const std::string& name, int turn) {
    desktop.AtTurn(turn, [this, name] {
      if (wxWindow* window = wxWindow::FindWindowByName(name)) Take(*window, name);
    });
  }

  void TasksAndDialogs();
  void Jobs();
  void Upgrades();

  std::string folder_;
  std::string code_;
  services::Language language_;
};

void Album::TasksAndDialogs() {
  Desktop desktop({"sim:conventional", "sim:trunked", "sim:torvik", "sim:model31"}, "Torvik",
                  static_cast<int>(language_));
  desktop.devices = {{.device = "/dev/ttyUSB0",
                      .description = "FTDI FT232R USB UART",
                      .usb_id = "0403:6001",
                      .serial_number = "A1",
                      .state = platform::SerialDeviceState::kFree,
                      .busy_with = {}}};
  if (!desktop.Start("INHOUSE")) return;
  Take(*desktop.frame, "frmSpecification-empty");
  for (const char* slot : {"2", "3", "4"})
    desktop.user_hive.Write(Desktop::kKey, std::string("CommPort") + slot + "State", "2");
  CheckCommPorts(desktop.application->link, true);
  desktop.Click("cmdReadRadio");
  Take(*desktop.frame, "frmSpecification");
  desktop.Open("Download");
  desktop.Type("txtBinaryFileName", "model51-e1-2mbit.bin");
  Take(*desktop.frame, "frmDownload");
  desktop.Open("Upgrade");
  Take(*desktop.frame, "frmAutomaticUpgrade");
  TakeDialog(desktop, "frmPreferences");
  desktop.Menu("mnuPreferences");
  TakeDialog(desktop, "frmAbout", wxID_OK);
  desktop.Menu("mnuAbout");
  {
    link::Job job(desktop.application->link);
    TakeDialog(desktop, "frmSelectCommPort");
    desktop.application->ShowPortSelection(job);
  }
  desktop.Menu("mnuTranscript");
  if (wxWindow* transcript = wxWindow::FindWindowByName("frmTranscript")) {
    Take(*transcript, "frmTranscript");
    transcript->Close();
  }
  desktop.Menu("mnuContents");
  for (wxWindow* window : wxTopLevelWindows) {
    if (window != desktop.frame && window->IsShown()) Take(*window, "help");
  }
}

void Album::Jobs() {
  Desktop desktop({"sim:torvik,serial=10000101", "sim:torvik,serial=10000102,fault=silent@block:30",
                   "sim:torvik,serial=10000103", "sim:torvik,serial=10000104"},
                  "ZEP", static_cast<int>(language_));
  if (!desktop.Start("INHOUSE")) return;
  desktop.Open("Upgrade");
  Take(*desktop.frame, "frmUpgrade");
  desktop.Open("Download");
  desktop.Type("txtBinaryFilePath", desktop.folder.Path());
  desktop.Type("txtBinaryFileName", "model11-a1-1mbit.bin");
  TakeInTurn(desktop, "frmWriteSWToRadio", 20000);
  desktop.Click("cmdDownload");
  Take(*desktop.frame, "frmDownload-result");

  Desktop reading({"sim:trunked"}, "ZEP", static_cast<int>(language_));
  if (!reading.Start()) return;
  TakeInTurn(reading, "frmReadWriteRadio", 4000);
  reading.Choose(reading.folder.Path("read.omn"));
  reading.Menu("mnuRead");
}

void Album::Upgrades() {
  Desktop desktop({"sim:torvik"}, "Torvik", static_cast<int>(language_));
  if (!desktop.Start()) return;
  desktop.Open("Upgrade");
  desktop.AtTurn(25000, [this, &desktop] { Take(*desktop.frame, "frmAutomaticUpgrade-running"); });
  desktop.Click("cmdUpgrade");
  Take(*desktop.frame, "frmAutomaticUpgrade-done");
}

void Album::TakeAll() {
  TasksAndDialogs();
  Jobs();
  Upgrades();
}

}  // namespace
}  // namespace zep::testing

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string folder = argv[1];
  wxApp::SetInstance(new wxApp);
  if (!wxEntryStart(argc, argv)) return 1;
  wxTheApp->SetExitOnFrameDelete(false);
  wxImage::AddHandler(new wxPNGHandler);
  for (int number = 1; number <= zep::services::kLanguageCount; ++number)
    zep::testing::Album(folder, static_cast<zep::services::Language>(number)).TakeAll();
  wxEntryCleanup();
  return 0;
}
