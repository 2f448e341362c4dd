// The program zepdlca.
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>

#include <wx/app.h>
#include <wx/image.h>
#include <wx/timer.h>

#include "platform/interrupt.h"
#include "platform/processes.h"
#include "platform/single_instance.h"
#include "platform/terminal.h"
#include "programs/this_computer.h"
#include "shell/application.h"
#include "shell/frmMDI.h"
#include "shell/start_up.h"
#include "shell/toolkit.h"

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

// The words behind the program's name, with a blank between them.
template <typename Arguments>
std::string Words(int count, const Arguments& arguments) {
  wxString words;
  for (int index = 1; index < count; ++index)
    words += (index > 1 ? " " : "") + wxString(arguments[index]);
  return services::FromWx(words);
}

class Zepdlca final : public wxApp {
 public:
  Zepdlca() = default;
  // The words behind the program's name, before the toolkit has taken its own out of them.
  explicit Zepdlca(std::string command_line) : command_line_(std::move(command_line)) {}

  bool OnInit() override;
  int OnExit() override;

 private:
  void LookForRequests();

  std::optional<std::string> command_line_;
  programs::ThisComputer this_computer_;
  std::optional<platform::Interrupts> interrupts_;  // from the main window on
  platform::SingleInstance instance_{"zepdlca"};
  std::unique_ptr<DesktopComputer> computer_;
  std::unique_ptr<Application> application_;
  frmMDI* frame_ = nullptr;
  wxTimer request_timer_;
};

bool Zepdlca::OnInit() {
  SetAppName("zepdlca");
  wxImage::AddHandler(new wxPNGHandler);
  computer_ = std::make_unique<DesktopComputer>(DesktopComputer{
      this_computer_.Get(), platform::GetSystemVersion, [this] { return instance_.TryAcquire(); },
      [this] { instance_.RequestShow(); }, platform::OpenWebAddress});
  application_ = std::make_unique<Application>(
      *computer_, StartChoices{.application_folder = Environment("ZEPDLCA_APPLICATION_FOLDER"),
                               .string_table = Environment("ZEPDLCA_STRING_TABLE"),
                               .ports = Split(Environment("ZEPDLCA_PORTS"), ';')});
  frame_ = Main(*application_, command_line_ ? *command_line_ : Words(argc, argv));
  if (frame_ == nullptr) return false;
  interrupts_.emplace();
  instance_.TakeShowRequest();  // one that an earlier copy has left
  request_timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { LookForRequests(); });
  request_timer_.Start(kRequestInterval);
  return true;
}

void Zepdlca::LookForRequests() {
  if (GetTopWindow() != frame_) return;
  if (interrupts_->Take() > 0) {
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
int main(int argc, char** argv) {
  zep::shell::PrepareToolkit();
  wxApp::SetInstance(new zep::shell::Zepdlca(zep::shell::Words(argc, argv)));
  int only_the_name = 1;
  return wxEntry(only_the_name, argv);
}
#endif
