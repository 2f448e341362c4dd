// The desktop application in a test: the real windows on a virtual clock, over simulated radios,
// with an application folder and settings of its own and a scripted user in front of it.
//
//   Desktop desktop({"sim:trunked"});
//   desktop.Start();
//   desktop.Answer(wxID_YES);                    // the next question
//   desktop.Choose(desktop.folder.Path("a.ops"));  // the next file dialog
//   desktop.Menu("mnuRead");
//   EXPECT_EQ(desktop.Boxes(), ...);
//
// Message boxes with a single button need no script. A question or a file dialog without one fails
// the test and is answered with No or Cancel. The program's own dialogs really run; WhenShown()
// acts in them.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/modalhook.h>
#include <wx/msgdlg.h>
#include <wx/textctrl.h>

#include "shell/application.h"
#include "shell/frmAbout.h"
#include "shell/frmMDI.h"
#include "shell/start_up.h"
#include "simulator/samples.h"
#include "tests/lent_port.h"
#include "tests/testing.h"

namespace zep::testing {

// Sees every modal dialog before it is shown.
class ScriptedDialogs final : public wxModalDialogHook {
 public:
  ScriptedDialogs() { Register(); }
  ~ScriptedDialogs() override { EXPECT_TRUE(answers_.empty() && files_.empty()) << "not asked"; }

  void Answer(int button) { answers_.push_back(button); }
  void Choose(std::string file) { files_.push_back(std::move(file)); }
  void WhenShown(const std::string& name, std::function<void(wxDialog&)> action) {
    actions_[name] = std::move(action);
  }

  // The boxes so far, a line each, and forgets them: "title: text -> Yes".
  std::string Take() { return std::exchange(boxes_, {}); }

 protected:
  int Enter(wxDialog* dialog) override {
    if (auto* box = dynamic_cast<wxMessageDialog*>(dialog)) return AnswerBox(*box);
    if (auto* file = dynamic_cast<wxFileDialog*>(dialog)) return AnswerFile(*file);
    const auto action = actions_.find(std::string(dialog->GetName()));
    if (action != actions_.end())
      dialog->CallAfter([act = action->second, dialog] { act(*dialog); });
    return wxID_NONE;
  }

 private:
  int AnswerBox(wxMessageDialog& box) {
    const bool asks = (box.GetMessageDialogStyle() & (wxNO | wxCANCEL)) != 0;
    int button = wxID_OK;
    std::string text = box.GetMessage().utf8_string();
    text.erase(text.find_last_not_of(' ') + 1);
    if (asks && answers_.empty()) {
      ADD_FAILURE() << "unexpected question: " << text;
      button = wxID_CANCEL;
    } else if (asks) {
      button = answers_.front();
      answers_.pop_front();
    }
    boxes_ += text;
    if (asks) boxes_ += button == wxID_YES || button == wxID_OK ? " -> Yes" : " -> No";
    boxes_ += "\n";
    return button;
  }
  int AnswerFile(wxFileDialog& dialog) {
    boxes_ += "[" + dialog.GetMessage().utf8_string() + "]\n";
    if (files_.empty()) {
      ADD_FAILURE() << "unexpected file dialog: " << dialog.GetMessage();
      return wxID_CANCEL;
    }
    const wxString path = wxString::FromUTF8(files_.front());
    files_.pop_front();
    if (path.empty()) return wxID_CANCEL;
    // The toolkit's dialog takes the path in turns of its own.
    dialog.SetPath(path);
    for (int turn = 0; turn < 1000 && dialog.GetPath() != path; ++turn) {
      wxTheApp->Yield();
      wxMilliSleep(1);
    }
    EXPECT_EQ(dialog.GetPath(), path);
    return wxID_OK;
  }

  std::deque<int> answers_;
  std::deque<std::string> files_;
  std::map<std::string, std::function<void(wxDialog&)>> actions_;
  std::string boxes_;
};

class Desktop {
 public:
  explicit Desktop(const std::vector<std::string>& devices_of_ports = {"sim:conventional"},
                   const std::string& string_table = "ZEP", int language = 1,
                   const std::string& strings = "")
      : machine_(MakeHive(language)),
        computer_{
            {.clock = clock,
             .user_hive = user_hive,
             .machine_hive = *machine_,
             .make_port = [this](const std::string& device) { return ports.Make(device); },
             .list_devices = [this] { return devices; },
             .start_program = [this](const std::string& program) { return NoteStart(program); }},
            [this] { return system; },
            [this] { return is_only_copy; },
            [] {},
            [this](const std::string& address) { return NoteStart(address); }} {
    EXPECT_FALSE(simulator::WriteSamples(folder.Path()));
    if (!strings.empty()) folder.Write(string_table + ".strings", strings);
    user_hive.Write(kKey, "DefaultDataPath", folder.Path());
    for (std::size_t port = 1; port <= devices_of_ports.size(); ++port) {
      user_hive.Write(kKey, "CommPort" + std::to_string(port) + "State", "1");
    }
    application = std::make_unique<shell::Application>(
        computer_, shell::StartChoices{.application_folder = folder.Path(),
                                       .string_table = string_table,
                                       .ports = devices_of_ports});
  }
  ~Desktop() {
    if (frame != nullptr) frame->Close(true);
    Settle();
    application.reset();
  }

  static constexpr const char* kKey = "Software\\Vorn Electronics Ltd\\ZEP\\Download";

  TempFolder folder;
  platform::VirtualClock clock;
  LentPorts ports{clock};
  BreakableHive user_hive;
  std::vector<platform::SerialDeviceInfo> devices;
  platform::SystemVersion system;
  bool is_only_copy = true;
  std::vector<std::string> started;  // programs and web addresses
  ScriptedDialogs dialogs;

 private:
  std::unique_ptr<platform::SettingsHive> machine_;
  shell::DesktopComputer computer_;

 public:
  std::unique_ptr<shell::Application> application;
  shell::frmMDI* frame = nullptr;

  // Whether the main window is shown then.
  bool Start(std::string_view command_line = "") {
    frame = shell::Main(*application, command_line);
    if (frame != nullptr) {
      frame->Bind(wxEVT_DESTROY, [this](wxWindowDestroyEvent& event) {
        if (event.GetWindow() == frame) frame = nullptr;
        event.Skip();
      });
    }
    Settle();
    return frame != nullptr;
  }

  // Lets everything happen that waits for its turn.
  static void Settle() {
    for (int turn = 0; turn < 5; ++turn) {
      wxTheApp->ProcessPendingEvents();
      wxTheApp->Yield();
    }
  }

  void Answer(int button) { dialogs.Answer(button); }
  void Choose(const std::string& file) { dialogs.Choose(file); }
  // The boxes shown since the last call; the application folder is "FOLDER" in them.
  std::string Boxes() { return folder.Renamed(dialogs.Take(), "FOLDER"); }

  void Menu(const std::string& name) {
    wxMenuItem* entry = frame->Entry(name);
    ASSERT_NE(entry, nullptr) << name;
    entry->GetMenu()->SendEvent(entry->GetId());
    Settle();
  }
  void Open(const std::string& task) {
    frame->MainWindow().OpenForm(task);
    Settle();
  }
  // A control of the open task window, by its name.
  template <typename Control>
  Control* Find(const std::string& name, wxWindow* where = nullptr) {
    if (where == nullptr) where = frame->MainWindow().TaskForm();
    auto* control = dynamic_cast<Control*>(wxWindow::FindWindowByName(name, where));
    if (control == nullptr) ADD_FAILURE() << "no control " << name;
    return control;
  }
  // Presses a button that can be pressed; returns when its job is over.
  void Click(const std::string& name, wxWindow* where = nullptr) {
    auto* button = Find<wxButton>(name, where);
    if (button == nullptr) return;
    EXPECT_TRUE(button->IsEnabled()) << name;
    wxCommandEvent event(wxEVT_BUTTON, button->GetId());
    event.SetEventObject(button);
    button->ProcessWindowEvent(event);
    Settle();
  }
  void Type(const std::string& name, const std::string& text) {
    Find<wxTextCtrl>(name)->SetValue(wxString::FromUTF8(text));
  }
  std::string Text(const std::string& name) {
    auto* control = Find<wxWindow>(name);
    if (auto* box = dynamic_cast<wxTextCtrl*>(control)) return box->GetValue().utf8_string();
    return control != nullptr ? control->GetLabel().utf8_string() : "";
  }

  // Does something in the given turn of the job that comes next.
  void AtTurn(int turn, std::function<void()> action) {
    services::Session& session = application->session;
    session.on_turn = [inner = session.on_turn, act = std::move(action), left = turn]() mutable {
      if (--left == 0) act();
      if (inner) inner();
    };
  }

  simulator::SimulatedRadio& Radio(const std::string& device) { return ports.Radio(device); }

 private:
  static std::unique_ptr<platform::SettingsHive> MakeHive(int language) {
    auto hive = std::make_unique<platform::MemoryHive>();
    hive->Write("Software\\Vorn Electronics Ltd\\ZEP", "UILanguage", std::to_string(language));
    return hive;
  }
  platform::SystemError NoteStart(const std::string& what) {
    started.push_back(what);
    return {};
  }
};

// One whose main window is shown.
struct RunningDesktop : Desktop {
  using Desktop::Desktop;
  const bool is_running = Start() ? true : throw std::runtime_error("it does not start");
};

inline constexpr const char* kCancelQuestion =
    "This action will leave the radio in an undefined state. Cancel?";

// The names of the frames that are still shown besides the main window.
inline std::string OpenDialogs() {
  std::string names;
  for (const wxWindow* window : wxTopLevelWindows) {
    const auto* dialog = dynamic_cast<const wxDialog*>(window);
    if (dialog != nullptr && dialog->IsShown()) names += dialog->GetName().utf8_string() + " ";
  }
  return names;
}

}  // namespace zep::testing
