// The program zepdlca.
#include <cstdlib>
#include <memory>

#include <wx/app.h>
#include <wx/image.h>
#include <wx/timer.h>

#include "platform/processes.h"
#include "platform/serial_list.h"
#include "platform/single_instance.h"
#include "platform/terminal.h"
#include "shell/application.h"
#include "shell/frmMDI.h"
#include "shell/start_up.h"
#include "shell/toolkit.h"
#include "simulator/simulated_port.h"

namespace zep::shell {
namespace {

// How often another copy's wish is looked for that this one come to the front, in ms.
constexpr int kShowRequestInterval = 1000;

std::string Environment(const char* name) {
  wxString value;
  return wxGetEnv(name, &value) ? services::FromWx(value) : std::string();
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts(1);
  for (const char character : text) {
    if (character == separator) {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  return parts;
}

class Zepdlca final : public wxApp {
 public:
  bool OnInit() override;
  int OnExit() override;

 private:
  void BringToFront();

  platform::SystemClock clock_;
  platform::SingleInstance instance_{"zepdlca"};
  std::unique_ptr<platform::SettingsHive> user_hive_ = platform::OpenUserHive();
  std::unique_ptr<platform::SettingsHive> machine_hive_ = platform::OpenMachineHive();
  std::unique_ptr<Surroundings> surroundings_;
  std::unique_ptr<Application> application_;
  frmMDI* frame_ = nullptr;
  wxTimer show_timer_;
};

bool Zepdlca::OnInit() {
  SetAppName("zepdlca");
  wxImage::AddHandler(new wxPNGHandler);
  surroundings_ = std::make_unique<Surroundings>(Surroundings{
      .clock = clock_,
      .user_hive = *user_hive_,
      .machine_hive = *machine_hive_,
      .make_port =
          [this](const std::string& device) { return simulator::MakePort(device, clock_); },
      .list_devices = [] { return platform::ListSerialDevices(); },
      .system_version = platform::GetSystemVersion,
      .acquire_instance =
          [this] {
            if (instance_.TryAcquire()) return true;
            instance_.RequestShow();
            return false;
          },
      .start_program =
          [](const std::string& program) { return platform::StartProgram(program, {}); },
      .open_address = platform::OpenWebAddress});
  application_ = std::make_unique<Application>(
      *surroundings_, StartChoices{.application_folder = Environment("ZEPDLCA_APPLICATION_FOLDER"),
                                   .string_table = Environment("ZEPDLCA_STRING_TABLE"),
                                   .ports = Split(Environment("ZEPDLCA_PORTS"), ';')});
  std::string command_line;
  for (int index = 1; index < argc; ++index)
    command_line += (index > 1 ? " " : "") + services::FromWx(argv[index]);
  frame_ = Main(*application_, command_line);
  if (frame_ == nullptr) return false;
  instance_.TakeShowRequest();  // one that an earlier copy has left
  show_timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { BringToFront(); });
  show_timer_.Start(kShowRequestInterval);
  return true;
}

void Zepdlca::BringToFront() {
  if (!instance_.TakeShowRequest() || GetTopWindow() != frame_) return;
  frame_->Iconize(false);
  frame_->Raise();
  frame_->RequestUserAttention();
}

int Zepdlca::OnExit() {
  show_timer_.Stop();
  application_.reset();
  return wxApp::OnExit();
}

}  // namespace
}  // namespace zep::shell

#ifdef _WIN32
wxIMPLEMENT_APP(zep::shell::Zepdlca);
#else
wxIMPLEMENT_APP_NO_MAIN(zep::shell::Zepdlca);

int main(int argc, char** argv) {
  zep::shell::PrepareToolkit();
  return wxEntry(argc, argv);
}
#endif
