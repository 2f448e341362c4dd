// The preferences: for each of the four ports whether it is used, its serial device with what is
// known of the adapter, its state and a test; and the interface language.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/dialog.h>

#include "link/port_set.h"
#include "platform/serial_list.h"
#include "services/window_kit_ui.h"

namespace zep::link {

// What the window needs of the computer.
struct PreferencesSources {
  std::function<std::vector<platform::SerialDeviceInfo>()> list_devices;
  // Opens and closes a port on the device; number 0 when that works.
  std::function<platform::SystemError(const std::string& device)> try_device;
};

struct PreferencesOutcome {
  bool accepted = false;                                 // OK; else nothing was changed
  std::map<int, std::string> changed_devices;            // by port
  std::array<std::optional<bool>, kPortCount> ticked{};  // for ApplyPreferences
  int language = 1;                                      // as in the setting UILanguage
};

class frmPreferences : public wxDialog {
 public:
  // Shows these states.
  frmPreferences(wxWindow* parent, services::WindowContext& window_context, Link& shown_link,
                 const PortStates& states, PreferencesSources window_sources);

  // Shows the window until OK or Cancel. On OK devices and language are saved as settings, and the
  // user is told when they cannot be; what follows from them, until the program ends at least, is
  // the caller's.
  PreferencesOutcome Run();

 private:
  // A port in the window.
  struct Row {
    int port = 0;
    std::string device;              // the one that state and problem are of
    std::optional<PortState> state;  // nothing for a device that was typed and not tested yet
    platform::SystemError problem;   // of the last test

    wxCheckBox* chkSelectCommPort = nullptr;
    wxComboBox* cboDevice = nullptr;
    wxStaticText* lblState = nullptr;
    wxButton* cmdTest = nullptr;
  };

  wxSizer* MakeRows();
  void MakeRow(Row& row, wxSizer* grid);
  wxSizer* MakeLanguageRow();
  std::string DeviceOf(const Row& row) const;
  int WidestState() const;

  void ShowState(Row& row);
  void ShowNotes();
  void Try(Row& row);
  void OnDeviceTyped(Row& row);
  void OnTest(Row& row);

  void OnOk();
  bool HasDevicesOfTheirOwn();
  // False, and the user has been told, when a ticked device that was typed cannot be opened.
  bool TypedDevicesWork();
  void Save();

  void RestorePlacement();
  void SavePlacement();

  services::WindowContext& context_;
  Link& link_;
  const PortStates& states_;
  PreferencesSources sources_;
  std::vector<platform::SerialDeviceInfo> devices_;  // offered in each row
  PreferencesOutcome outcome_;

  std::array<Row, kPortCount> rows_{};
  wxChoice* cboLanguage = nullptr;
  wxTextCtrl* txtNotes = nullptr;
};

}  // namespace zep::link
