#include "shell/start_up.h"

#include <utility>

#include "link/port_set.h"
#include "services/messages.h"
#include "shell/frmAppSplash.h"
#include "shell/frmMDI.h"
#include "upgrade/upgrade_notes.h"

namespace zep::shell {
namespace {

using platform::SystemFamily;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;

constexpr std::string_view kWindows95 = "Windows 95";

std::string_view NameOf(SystemFamily family) {
  switch (family) {
    case SystemFamily::kWindows32s:
      return "Windows 32s";
    case SystemFamily::kWindows95:
      return kWindows95;
    case SystemFamily::kWindowsNt:
      return "Windows NT";
    case SystemFamily::kOther:
      break;
  }
  return {};
}

// False for a word that is no option.
bool TakeOption(Application& application, std::string_view word) {
  services::Session& session = application.session;
  if (word == "HIGHSPEED") {
    session.high_speed = application.operating_system_name == kWindows95;
    if (!session.high_speed) {
      NLSMsgBox(session,
                "Highspeed mode will only run under Windows 95, application will start in normal "
                "mode.");
    }
  } else if (word == "UPLOAD") {
    session.upload = true;
  } else if (word == "INHOUSE") {
    session.in_house = true;
  } else {
    return false;
  }
  return true;
}

// The language, with a word on what could not be read of texts and settings; the program does
// without it.
void ReadTexts(Application& application) {
  services::Session& session = application.session;
  application.UseLanguage();
  for (const platform::SystemError& error :
       {application.computer.user_hive.Problem(), application.computer.machine_hive.Problem()}) {
    if (error) NLSMsgBox(session, ErrorNote(session, error));
  }
  if (const std::string note = StringTableNote(session); !note.empty()) NLSMsgBox(session, note);
}

// Of upgrades that did not finish, once the main window is painted, which the box is to stand
// above, and the program runs: behind the box it hears of another copy and of its own end.
void RemindWhenShown(frmMDI& frame, services::Session& session) {
  frame.MainWindow().Bind(wxEVT_PAINT, [&, is_first = true](wxPaintEvent& event) mutable {
    event.Skip();
    if (!std::exchange(is_first, false)) return;
    frame.CallAfter([&session] {
      upgrade::UpgradeLog log(session, upgrade::UpgradeLogFile(session));
      TellOfUnfinishedUpgrades(session, log);
    });
  });
}

}  // namespace

std::optional<int> DetectCpu(Application& application) {
  application.system = application.computer.system_version();
  services::Session& session = application.session;
  if (application.system.error) {
    NLSMsgBox(session, NLSFmt(session, "Error getting operating system version information"));
    return std::nullopt;
  }
  application.operating_system_name = NameOf(application.system.family);
  const int type = application.system.processor_type;
  session.fast_processor = type != 386 && type != 486;
  return session.fast_processor ? type : 0;
}

bool CheckCommandLine(Application& application, std::string_view command_line) {
  if (!DetectCpu(application)) return false;
  bool more = !command_line.empty();
  while (more) {
    const std::size_t end = command_line.find(' ');
    more = end != std::string_view::npos;
    if (!TakeOption(application, command_line.substr(0, end))) {
      NLSMsgBox(application.session, "Command line not valid.");
      return false;
    }
    if (more) command_line.remove_prefix(end + 1);
  }
  return true;
}

bool AppInitialise(Application& application, bool silent) {
  if (application.computer.acquire_instance()) return true;
  if (!silent) NLSMsgBox(application.session, "The Application is already running.");
  // Not before: it would come to the front above the box.
  application.computer.show_other_instance();
  return false;
}

frmMDI* Main(Application& application, std::string_view command_line) {
  services::Session& session = application.session;
  if (!CheckCommandLine(application, command_line)) return nullptr;
  if (!AppInitialise(application, false)) return nullptr;
  ReadTexts(application);
  // Kept: these two modes are switched off in this build, whatever the command line says.
  session.high_speed = false;
  session.upload = false;
  AppShowSplash(application);
  if (link::CheckCommPorts(application.link, true) == 0) {
    NLSMsgBox(session, "There are no communications ports available. The application will now exit",
              {.icon = Icon::kCritical});
    return nullptr;
  }
  session.factory_mode = true;
  auto* frame = new frmMDI(application);
  RemindWhenShown(*frame, session);
  frame->Show();
  return frame;
}

}  // namespace zep::shell
