// The program zepdlca.
#include <cstdlib>
#include <memory>

#include <wx/app.h>
#include <wx/image.h>
#include <wx/timer.h>

#include "platform/interrupt.h"
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

// How often it is looked whether another copy wants this one to come to the front, and whether the
// system wants the program to end, in ms.
constexpr int kRequestInterval = 250;

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
  void LookForRequests();

  platform::SystemClock clock_;
  platform::Interrupts interrupts_;
  platform::SingleInstance instance_{"zepdlca"};
  std::unique_ptr<platform::SettingsHive> user_hive_ = platform::OpenUserHive();
  std::unique_ptr<platform::SettingsHive> machine_hive_ = platform::OpenMachineHive();
  std::unique_ptr<Surroundings> surroundings_;
  std::unique_ptr<Application> application_;
  frmMDI* frame_ = nullptr;
  bool is_ending_ = false;  // somebody has told the program to
  wxTimer request_timer_;
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
      .acquire_instance = [this] { return instance_.TryAcquire(); },
      .show_other_instance = [this] { instance_.RequestShow(); },
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
  request_timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { LookForRequests(); });
  request_timer_.Start(kRequestInterval);
  return true;
}

void Zepdlca::LookForRequests() {
  if (GetTopWindow() != frame_) return;
  is_ending_ = is_ending_ || interrupts_.Take() > 0;
  if (is_ending_) {
    frame_->EndWithoutAsking();
    return;
  }
  if (!instance_.TakeShowRequest()) return;
  frame_->Iconize(false);
  frame_->Raise();
  frame_->RequestUserAttention();
}

int Zepdlca::OnExit() {
  request_timer_.Stop();
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
