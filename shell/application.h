// The desktop application as one object: the session, the link over the four ports, the radio and
// firmware work, and what the windows are given. The windows themselves are made by Main and
// frmMDI.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "firmware/firmware.h"
#include "link/port_set.h"
#include "link/wire_trace.h"
#include "platform/computer.h"
#include "platform/io_ports.h"
#include "platform/system_version.h"
#include "radiodb/radio_db.h"
#include "services/foundation.h"
#include "services/window_kit_ui.h"
#include "shell/window_user.h"
#include "shell/wire_log.h"

namespace zep::shell {

// What a desktop program needs of the computer beyond that; a test has its own. All of it outlives
// the application.
struct DesktopComputer : platform::Computer {
  std::function<platform::SystemVersion()> system_version;
  // Becomes the only copy of the program; false when there is one. And asks that one to show
  // itself.
  std::function<bool()> acquire_instance;
  std::function<void()> show_other_instance;
  std::function<platform::SystemError(const std::string& address)> open_address;
};

// What the environment says, for trying things out; each may be empty.
struct StartChoices {
  std::string application_folder;  // ZEPDLCA_APPLICATION_FOLDER
  std::string string_table;        // ZEPDLCA_STRING_TABLE; "ZEP" when empty
  std::vector<std::string> ports;  // ZEPDLCA_PORTS: devices of the ports, from the first on
};

// Which task window is open.
enum class Task { kNone = 0, kDownload = 1, kSpecification = 5, kUpgrade = 6 };

class Application final : public link::LinkWindows {
 public:
  Application(const DesktopComputer& the_computer, const StartChoices& choices);
  ~Application() override;

  const DesktopComputer& computer;
  WindowUser user;

 private:
  services::Foundation foundation_;

 public:
  services::Session session;
  WireLog wire_log;

 private:
  std::uint64_t byte_count_ = 0;
  std::unique_ptr<link::WireTrace> trace_;
  std::unique_ptr<platform::IoPorts> io_ports_;
  // By port; empty where the settings decide. Given at the start, or chosen since then, also when
  // that could not be stored.
  std::vector<std::string> given_ports_;

 public:
  link::Link link;
  firmware::Firmware firmware;
  radiodb::LastRadio radio;
  services::WindowContext context;

  // Facts of the start-up, for the About window.
  platform::SystemVersion system;
  std::string operating_system_name;  // "Windows NT"; empty where it is none of the Windows names
  int UILanguage = 1;                 // as the setting has it, also when it is no language

  // Whether the task "Download" is offered, and the task whose window is open.
  bool ShowAdvanced = true;
  Task current_task = Task::kNone;

  // Gives the ports the devices that the settings name now. Ports whose device has not changed stay
  // as they are. Not while a job runs.
  void UseChosenDevices();

  // Told after the interface language has changed.
  std::function<void()> on_language;
  // Reads the texts for the language of the settings, or for that of the number. Tells the user why
  // there are none, in which case they are English.
  void UseLanguage();
  void UseLanguage(int number);

  void ShowPreferences(link::Link& link, link::PortStates& states) override;
  void ShowPortSelection(link::Job& job) override;

 private:
  std::unique_ptr<platform::SerialPort> MakePort(const std::string& device);
  std::array<std::string, link::kPortCount> DevicesOfPorts() const;
  link::Ports MakePorts();
};

}  // namespace zep::shell
