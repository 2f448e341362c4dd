// What all windows have in common: what they are given, text for the toolkit, sizes and rows, and
// help.
//
// Sizes are in device-independent pixels, so that windows look alike at any scaling. A control has
// its name in the program ("cmdDownload") as its window name; a test finds it by that.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/scrolwin.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/string.h>
#include <wx/textctrl.h>
#include <wx/toplevel.h>

#include "services/session.h"

namespace zep::services {

wxString ToWx(std::string_view utf8);
std::string FromWx(const wxString& text);

// What every window is given. It outlives all windows.
struct WindowContext {
  Session& session;
  const std::uint64_t& bytes_on_the_wire;

  // The main window's part; each may be empty in a program without one.
  std::function<void(const std::string& page)> show_help{};      // "download.htm"
  std::function<void(const std::string& status)> show_status{};  // in its status bar
  std::function<void()> show_transcript{};                       // what went over the wires
  std::function<void()> close_task{};  // closes the task window, after the running handler
  std::set<wxChar> menu_letters{};     // with Alt they open the menus; upper case

  // The given function when there is one.
  template <typename Function, typename... Arguments>
  static void Call(const Function& function, const Arguments&... arguments) {
    if (function) function(arguments...);
  }
};

// The distance between controls, in pixels of the window.
int Gap(const wxWindow* window);

// Names a control for the program and, in the user's language, for screen readers. Buttons and
// boxes with a label of their own need no spoken name.
void NameControl(wxWindow* control, const char* name, std::string_view spoken_name = {});

// A push button with a translated label. on_click runs the button's job.
wxButton* MakeButton(wxWindow* parent, std::string_view label, const char* name,
                     std::function<void()> on_click, wxWindowID id = wxID_ANY);
wxCheckBox* MakeCheckBox(wxWindow* parent, std::string_view label, const char* name);
wxStaticText* MakeLabel(wxWindow* parent, std::string_view label, const char* name = "");
// A text box whose spoken name is that of the label in front of it.
wxTextCtrl* MakeTextBox(wxWindow* parent, const char* name, std::string_view spoken_name,
                        long style = 0);

// Buttons at the right end of a row, in the given order.
wxSizer* ButtonRow(wxWindow* parent, std::initializer_list<wxButton*> buttons);

// Two columns, labels and what they stand for; the second takes the room that is left.
wxFlexGridSizer* LabelGrid(wxWindow* parent, int columns = 2, int growing_column = 1);

// F1 anywhere in the window shows this page of the help book.
void SetHelpPage(wxWindow* window, const WindowContext& context, const std::string& page);
// The Help button, with the same page.
wxButton* MakeHelpButton(wxWindow* parent, const WindowContext& context, const std::string& page);

// OK, Cancel and Help at the lower edge of a dialog: the order of all windows, what the window does
// first. Enter presses OK, whose on_ok ends the dialog when it may; Escape cancels.
wxSizer* OkCancelHelpRow(wxDialog* dialog, const WindowContext& context, const std::string& page,
                         std::function<void()> on_ok);

// The letter that follows "&" in the label, in upper case; 0 when there is none.
wxChar MnemonicOf(const wxString& label);

// Gives every control in the window with a mnemonic one that is not taken, which adds it to those.
// A label in which no letter is free loses its mnemonic.
void SpreadMnemonics(wxWindow* window, std::set<wxChar>& taken);

// Lays out a window's contents with a margin around them.
void SetContents(wxWindow* window, wxSizer* contents);

// Gives a dialog the size of its contents, at most that of the screen, and centres it.
void FitToScreen(wxTopLevelWindow* window);

// Puts the text on the clipboard; false when the clipboard cannot be had.
bool CopyText(std::string_view text);

// Lets a frame be used and closed while a modal dialog is open, as the window of a job is.
void StandBesideDialogs(wxTopLevelWindow* frame);

// Whether a modal dialog, a message box or a file dialog is open.
bool HasModalDialog(const Session& session);

// Closes the topmost modal dialog or message box, never with a Yes; the window of a job stops its
// job without asking. Whoever has shown it goes on in a later turn. False when none is open.
bool CloseModalDialog();

// Where a dialog belongs: above the topmost dialog, else above the program's main window.
wxWindow* DialogParent();

// The page of one task beside the task tree. It scrolls when the frame is smaller than its
// contents. frmMain makes and destroys it.
class TaskWindow : public wxScrolledWindow {
 public:
  TaskWindow(wxWindow* parent, WindowContext& window_context, const char* name,
             const std::string& help_page);

  // Whether it may be closed now; a running job is not left behind.
  bool MayClose() const { return !context.session.jobs.IsRunning(); }

  // The keyboard goes where the work in this window begins.
  void FocusFirst();

 protected:
  // The Cancel button: cancels the job that is running, else closes the window.
  wxButton* MakeCancelButton();
  // Lays out the contents with a margin around them.
  void SetContents(wxSizer* contents);

  WindowContext& context;
  wxWindow* first_focus =
      nullptr;  // for FocusFirst; else the first control that takes the keyboard
};

}  // namespace zep::services
