// The menus of the frame.
#include <set>

#include <wx/menu.h>

#include "services/messages.h"
#include "services/resource_ids.h"
#include "shell/companions.h"
#include "shell/frmAbout.h"
#include "shell/frmMDI.h"

namespace zep::shell {

using services::AppType;
using services::NLSFmt;
using services::NLSText;
using services::ToWx;

struct frmMDI::MenuEntry {
  const char* name;         // "mnuRead"
  int resource = 0;         // the caption in the string table, or the text
  std::string_view text{};  // empty for both: a separator
  const char* key = "";     // "\tCtrl+R"
  std::function<void()> action{};
  bool offered = true;
  bool during_jobs = false;  // may be chosen while a job runs
};

struct frmMDI::MenuHeading {
  const char* name;  // "mnuFile"
  int resource;
  std::vector<MenuEntry> entries;
};

frmMDI::MenuHeading frmMDI::FileMenu() {
  return {"mnuFile",
          services::kResCaptionFile,
          {{.name = "mnuPreferences",
            .resource = services::kResCaptionPreferences,
            .key = "\tCtrl+,",
            .action = [this] { Preferences(); }},
           {.name = "mnuBar1"},
           {.name = "mnuExit",
            .resource = services::kResCaptionExit,
            .key = "\tCtrl+Q",
            .action = [this] { Exit(); }}}};
}

frmMDI::MenuHeading frmMDI::RadioMenu() {
  return {"mnuRadio",
          services::kResCaptionRadio,
          {{.name = "mnuRead",
            .resource = services::kResCaptionRead,
            .key = "\tCtrl+R",
            .action = [this] { Read(); }},
           {.name = "mnuProgram",
            .resource = services::kResCaptionProgram,
            .key = "\tCtrl+P",
            .action = [this] { Program(); }}}};
}

frmMDI::MenuHeading frmMDI::ToolsMenu() {
  const services::Session& session = application_.session;
  const auto launch = [this](AppType type) {
    return [this, type] { LaunchApplication(application_, type); };
  };
  const std::string_view mode = session.factory_mode ? NLSText("Change to Customer &Mode")
                                                     : NLSText("Change to Factory &Mode");
  return {"mnuTools",
          services::kResCaptionTools,
          {{.name = "mnuMode", .text = mode, .action = [this] { ChangeMode(); }},
           {.name = "mnuTranscript",
            .text = NLSText("&Wire Transcript..."),
            .key = "\tCtrl+T",
            .action = [this] { ShowTranscript(); },
            .offered = session.factory_mode,
            .during_jobs = true},
           {.name = "mnuBar2"},
           {.name = "mnuLaunchConventional",
            .resource = services::kResCaptionLaunchConventional,
            .action = launch(AppType::kConventional)},
           {.name = "mnuLaunchTrunked",
            .resource = services::kResCaptionLaunchTrunked,
            .action = launch(AppType::kTrunked)},
           {.name = "mnuLaunchCalibration",
            .resource = services::kResCaptionLaunchCalibration,
            .action = launch(AppType::kCalibration)},
           {.name = "mnuInHouseBar", .offered = session.in_house},
           {.name = "mnuUpgrade",
            .text = NLSText("Firmware &Upgrade..."),
            .action = [this] { main_->OpenForm("Upgrade"); },
            .offered = session.in_house},
           {.name = "mnuReadFirmware",
            .text = NLSText("Read &Firmware..."),
            .action = [this] { ReadFirmware(); },
            .offered = session.in_house}}};
}

frmMDI::MenuHeading frmMDI::InternetMenu() {
  const auto browse = [this](std::string_view setting, int resource) {
    return [this, setting, resource] { OpenWebPage(application_, setting, resource); };
  };
  return {"mnuInternet",
          services::kResCaptionInternet,
          {{.name = "mnuVornWorld",
            .resource = services::kResCaptionWorld,
            .action = browse("WWWHomePage", services::kResHomePage)},
           {.name = "mnuVornSupport",
            .resource = services::kResCaptionSupport,
            .action = browse("WWWSupport", services::kResSupport)},
           {.name = "mnuInternetBar1"},
           {.name = "mnuVornUpdate",
            .resource = services::kResCaptionUpdate,
            .action = browse("WWWApplicationUpgrade", services::kResApplicationUpgrade)}}};
}

frmMDI::MenuHeading frmMDI::HelpMenu() {
  return {"mnuHelp",
          services::kResCaptionHelp,
          {{.name = "mnuContents",
            .resource = services::kResCaptionContents,
            .action = [this] { help_.ShowContents(); }},
           {.name = "mnuSearch",
            .resource = services::kResCaptionSearch,
            .action = [this] { help_.ShowSearch(); }},
           {.name = "mnuHelpBar1"},
           {.name = "mnuAbout", .resource = services::kResCaptionAbout, .action = [this] {
              frmAbout(this, application_).ShowModal();
            }}}};
}

void frmMDI::BuildMenus() {
  entries_.clear();
  idle_entries_.clear();
  auto* bar = new wxMenuBar;
  std::set<wxChar>& letters = application_.context.menu_letters;
  letters.clear();
  for (const MenuHeading& heading :
       {FileMenu(), RadioMenu(), ToolsMenu(), InternetMenu(), HelpMenu()}) {
    auto* menu = new wxMenu;
    for (const MenuEntry& entry : heading.entries) {
      if (entry.offered) AddEntry(*menu, entry);
    }
    const services::Session& session = application_.session;
    const wxString caption = ToWx(NLSFmt(session, session.strings.Get(heading.resource)));
    letters.insert(services::MnemonicOf(caption));
    headings_[heading.name] = bar->GetMenuCount();
    bar->Append(menu, caption);
  }
  wxMenuBar* old = GetMenuBar();
  SetMenuBar(bar);
  delete old;
}

void frmMDI::AddEntry(wxMenu& menu, const MenuEntry& entry) {
  const services::Session& session = application_.session;
  const std::string_view text =
      entry.resource != 0 ? std::string_view(session.strings.Get(entry.resource)) : entry.text;
  if (text.empty()) {
    menu.AppendSeparator();
    return;
  }
  wxMenuItem* item = menu.Append(wxID_ANY, ToWx(NLSFmt(session, text)) + entry.key);
  // Menus close first: what an entry opens must not find them open.
  menu.Bind(
      wxEVT_MENU,
      [this, action = entry.action, during_jobs = entry.during_jobs](wxCommandEvent&) {
        if (during_jobs || !application_.session.jobs.IsRunning()) action();
      },
      item->GetId());
  entries_[entry.name] = item;
  if (!entry.during_jobs) idle_entries_.push_back(item);
}

wxMenuItem* frmMDI::Entry(const std::string& name) const {
  const auto found = entries_.find(name);
  return found == entries_.end() ? nullptr : found->second;
}

std::size_t frmMDI::Heading(const std::string& name) const { return headings_.at(name); }

}  // namespace zep::shell
