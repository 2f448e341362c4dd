#include "shell/application.h"

#include <algorithm>
#include <utility>

#include <wx/translation.h>

#include "link/frmPreferences.h"
#include "link/frmSelectCommPort.h"
#include "link/port_devices.h"
#include "services/messages.h"

namespace zep::shell {
namespace {

// The toolkit's own texts, in the help window and in file dialogs; English where it has none.
void UseToolkitLanguage(services::Language language) {
  const std::string_view code = LanguageCode(language);
  auto* texts = new wxTranslations;
  texts->SetLanguage(services::ToWx(code == "zh" ? "zh_CN" : code));
  if (language != services::Language::kEnglish) texts->AddStdCatalog();
  wxTranslations::Set(texts);
}

}  // namespace

Application::Application(const DesktopComputer& the_computer, const StartChoices& choices)
    : computer(the_computer),
      foundation_(choices.application_folder,
                  choices.string_table.empty() ? "ZEP" : choices.string_table, computer),
      session(foundation_.SeamsFor(computer, user), foundation_.paths),
      trace_(std::make_unique<link::WireTrace>(
          computer.clock, [this](std::string_view piece) { wire_log.Add(piece); })),
      io_ports_(std::make_unique<platform::NoIoPorts>()),
      given_ports_(choices.ports),
      link(session, MakePorts(), *this, *io_ports_),
      context{.session = session, .bytes_on_the_wire = byte_count_} {
  user.Attach(session);
  given_ports_.resize(link::kPortCount);
}

Application::~Application() = default;

std::unique_ptr<platform::SerialPort> Application::MakePort(const std::string& device) {
  return std::make_unique<link::WatchedPort>(computer.make_port(device), byte_count_, trace_.get());
}

// A device given at the start takes the place of the one that the settings name.
std::array<std::string, link::kPortCount> Application::DevicesOfPorts() const {
  std::array<std::string, link::kPortCount> devices = link::DevicesOfPorts(session.settings);
  const std::size_t given = std::min(given_ports_.size(), devices.size());
  for (std::size_t index = 0; index < given; ++index) {
    if (!given_ports_[index].empty()) devices[index] = given_ports_[index];
  }
  return devices;
}

link::Ports Application::MakePorts() {
  link::Ports ports;
  const auto devices = DevicesOfPorts();
  for (std::size_t index = 0; index < ports.size(); ++index)
    ports[index] = MakePort(devices[index]);
  return ports;
}

void Application::UseChosenDevices() {
  const auto devices = DevicesOfPorts();
  for (const int port : link::kAllPorts) {
    const std::size_t index = link::Link::Index(port);
    if (link.ports[index]->Device() != devices[index])
      link.ReplacePort(port, MakePort(devices[index]));
  }
}

void Application::UseLanguage() {
  UseLanguage(session.settings.AppGetUserNumber(services::AppType::kRoot, "UILanguage", 1));
}

void Application::UseLanguage(int number) {
  UILanguage = number;
  const bool is_language = number >= 1 && number <= services::kLanguageCount;
  const platform::SystemError error =
      services::LoadTexts(session, is_language ? static_cast<services::Language>(number)
                                               : services::Language::kEnglish);
  UseToolkitLanguage(session.translation.GetLanguage());
  if (on_language) on_language();
  if (error) NLSMsgBox(session, ErrorNote(session, error));
  if (const std::string& problem = session.translation.Problem(); !problem.empty()) {
    NLSMsgBox(session, NLSFmt(session,
                              "The dictionary is damaged (%0:s), so some texts are in English. "
                              "Please reinstall this application.",
                              {problem}));
  }
}

void Application::ShowPreferences(link::Link& shown_link, link::PortStates& states) {
  TryPorts(shown_link, states);  // devices come and go
  link::frmPreferences preferences(
      services::DialogParent(), context, shown_link, states,
      {.list_devices = computer.list_devices, .try_device = [this](const std::string& device) {
         return computer.make_port(device)->Open();
       }});
  const link::PreferencesOutcome outcome = preferences.Run();
  if (!outcome.accepted) return;
  for (const auto& [port, device] : outcome.changed_devices)
    given_ports_[link::Link::Index(port)] = device;
  UseChosenDevices();
  ApplyPreferences(shown_link, states, outcome.ticked);
  TryPorts(shown_link, states);
  if (outcome.language != UILanguage) UseLanguage(outcome.language);
}

void Application::ShowPortSelection(link::Job& job) {
  link::frmSelectCommPort selection(services::DialogParent(), context, job,
                                    {.takes_all_ports = false});
  selection.Run();
}

}  // namespace zep::shell
