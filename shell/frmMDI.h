// The application's frame: menus, the task tree on the left, the task window beside it, and the
// status bar.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <wx/aui/aui.h>
#include <wx/timer.h>

#include "shell/application.h"
#include "shell/frmMain.h"
#include "shell/help_book.h"

namespace zep::shell {

class frmTranscript;

class frmMDI : public wxAuiMDIParentFrame {
 public:
  // Loads everything and opens the first task.
  explicit frmMDI(Application& application);
  ~frmMDI() override;

  // The menu entry of that name ("mnuRead"); null while it is not offered.
  wxMenuItem* Entry(const std::string& name) const;
  // The place of a heading ("mnuRadio") in the menu bar.
  std::size_t Heading(const std::string& name) const;
  // The computer or the user's session ends, or somebody has told the program to: a running job is
  // stopped first, dialogs are closed, and then, without a question, the program ends.
  void EndWithoutAsking();

  frmMain& MainWindow() { return *main_; }

 private:
  struct MenuEntry;
  struct MenuHeading;

  void MDIForm_Load();
  void BuildMenus();
  void AddEntry(wxMenu& menu, const MenuEntry& entry);
  MenuHeading FileMenu();
  MenuHeading RadioMenu();
  MenuHeading ToolsMenu();
  MenuHeading InternetMenu();
  MenuHeading HelpMenu();
  void ShowModeAndLanguage();
  void ShowLanguage();

  void Preferences();
  void Read();
  void Program();
  void ChangeMode();
  void ReadFirmware();
  void ShowTranscript();
  void Exit();

  void OnJob(bool running);
  void OnClose(wxCloseEvent& event);
  void OnQueryEndSession(wxCloseEvent& event);
  void OnEndSession(wxCloseEvent& event);
  void OnKey(wxKeyEvent& event);

  Application& application_;
  HelpBook help_;
  wxAuiManager layout_;
  frmMain* main_ = nullptr;
  frmTranscript* transcript_ = nullptr;
  std::map<std::string, wxMenuItem*> entries_;
  std::map<std::string, std::size_t> headings_;
  std::vector<wxMenuItem*> idle_entries_;  // cannot be chosen while a job runs
  bool close_after_job_ = false;
  bool is_ending_ = false;  // without asking
  wxTimer timEnd;           // tries again when something still stood above the frame
  bool language_changed_ = false;
};

}  // namespace zep::shell
