#include "link/frmPreferences.h"

#include <algorithm>
#include <utility>

#include <wx/display.h>

#include "link/port_devices.h"
#include "link/port_texts.h"
#include "services/messages.h"
#include "services/resource_ids.h"

namespace zep::link {
namespace {

using services::Gap;
using services::MakeButton;
using services::MakeCheckBox;
using services::MakeLabel;
using services::NameControl;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;
using services::ReportError;
using services::Session;
using services::Settings;
using services::ToWx;

constexpr int kDeviceWidth = 380;
constexpr int kNotesHeight = 110;
constexpr const char* kHelpPage = "preferences.htm";

bool CanBeTicked(std::optional<PortState> state) { return state != PortState::kNotAvailable; }

std::string_view StateText(std::optional<PortState> state) {
  return state ? PortStateText(*state) : NLSText("Not tested");
}

int NumberOf(const Settings& settings, const char* name) {
  return settings.AppGetUserNumber(settings.OwnType(), name, -1);
}

}  // namespace

frmPreferences::frmPreferences(wxWindow* parent, services::WindowContext& window_context,
                               Link& shown_link, const PortStates& states,
                               PreferencesSources window_sources)
    : wxDialog(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "frmPreferences"),
      context_(window_context),
      link_(shown_link),
      states_(states),
      sources_(std::move(window_sources)),
      devices_(sources_.list_devices()) {
  const Session& session = context_.session;
  SetTitle(ToWx(NLSFmt(session, session.strings.Get(services::kResWindowPreferences))));
  services::SetHelpPage(this, context_, kHelpPage);
  for (platform::SerialDeviceInfo& radio : SimulatedRadios(session))
    devices_.push_back(std::move(radio));

  auto* contents = new wxBoxSizer(wxVERTICAL);
  const wxSizerFlags row = wxSizerFlags().Expand().Border(wxBOTTOM, Gap(this));
  contents->Add(MakeRows(), row);
  const std::string notes = NLSFmt(session, "Notes");
  contents->Add(MakeLabel(this, notes), row);
  txtNotes = services::MakeTextBox(this, "txtNotes", notes, wxTE_MULTILINE | wxTE_READONLY);
  txtNotes->SetMinSize(FromDIP(wxSize(-1, kNotesHeight)));
  contents->Add(txtNotes, wxSizerFlags(row).Proportion(1));
  contents->Add(MakeLanguageRow(), row);
  contents->Add(services::OkCancelHelpRow(this, context_, kHelpPage, [this] { OnOk(); }),
                wxSizerFlags().Expand());
  services::SetContents(this, contents);
  ShowNotes();
}

wxSizer* frmPreferences::MakeRows() {
  const Session& session = context_.session;
  constexpr int kColumns = 4;
  wxFlexGridSizer* grid = services::LabelGrid(this, kColumns, 1);
  for (const std::string_view heading :
       {std::string_view(), NLSText("Device"), NLSText("State"), std::string_view()}) {
    grid->Add(MakeLabel(this, heading.empty() ? std::string() : NLSFmt(session, heading)));
  }
  for (const int port : kAllPorts) {
    Row& row = rows_[Link::Index(port)];
    row.port = port;
    MakeRow(row, grid);
  }
  return grid;
}

void frmPreferences::MakeRow(Row& row, wxSizer* grid) {
  const Session& session = context_.session;
  const std::string number = std::to_string(row.port);
  const wxSizerFlags middle = wxSizerFlags().CentreVertical();

  row.chkSelectCommPort = MakeCheckBox(this, NLSFmt(session, "Port &%0:s", {number}),
                                       ("chkSelectCommPort" + number).c_str());
  row.chkSelectCommPort->SetValue(states_[Link::Index(row.port)] == PortState::kActive);
  row.chkSelectCommPort->Bind(wxEVT_CHECKBOX, [this, &row](wxCommandEvent&) { ShowState(row); });
  grid->Add(row.chkSelectCommPort, middle);

  row.device = link_.Port(row.port).Device();
  row.state = states_[Link::Index(row.port)];
  row.cboDevice = new wxComboBox(this, wxID_ANY);
  NameControl(row.cboDevice, ("cboDevice" + number).c_str(),
              NLSFmt(session, "Device of port %0:s", {number}));
  wxString shown = ToWx(row.device);
  for (const platform::SerialDeviceInfo& device : devices_) {
    row.cboDevice->Append(ToWx(DeviceLabel(device)));
    if (device.device == row.device) shown = ToWx(DeviceLabel(device));
  }
  row.cboDevice->ChangeValue(shown);
  row.cboDevice->SetMinSize(FromDIP(wxSize(kDeviceWidth, -1)));
  row.cboDevice->Bind(wxEVT_TEXT, [this, &row](wxCommandEvent&) { OnDeviceTyped(row); });
  row.cboDevice->Bind(wxEVT_COMBOBOX, [this, &row](wxCommandEvent&) { Try(row); });
  grid->Add(row.cboDevice, wxSizerFlags(middle).Expand());

  row.lblState = MakeLabel(this, "", ("lblState" + number).c_str());
  row.lblState->SetMinSize(wxSize(WidestState(), -1));
  grid->Add(row.lblState, middle);

  row.cmdTest = MakeButton(this, NLSFmt(session, "Test"), ("cmdTest" + number).c_str(),
                           [this, &row] { OnTest(row); });
  NameControl(row.cmdTest, ("cmdTest" + number).c_str(),
              NLSFmt(session, "Test port %0:s", {number}));
  grid->Add(row.cmdTest, middle);
  ShowState(row);
}

wxSizer* frmPreferences::MakeLanguageRow() {
  const Session& session = context_.session;
  const std::string label = NLSFmt(session, "&Language:");
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(MakeLabel(this, label), wxSizerFlags().CentreVertical().Border(wxRIGHT, Gap(this)));
  cboLanguage = new wxChoice(this, wxID_ANY);
  NameControl(cboLanguage, "cboLanguage", label);
  for (const auto& language : services::Languages()) cboLanguage->Append(ToWx(language.own));
  cboLanguage->SetSelection(static_cast<int>(session.translation.GetLanguage()) - 1);
  row->Add(cboLanguage);
  return row;
}

std::string frmPreferences::DeviceOf(const Row& row) const {
  return DeviceOfText(services::FromWx(row.cboDevice->GetValue()), devices_);
}

int frmPreferences::WidestState() const {
  int widest = 0;
  for (const std::optional<PortState> state :
       {std::optional(PortState::kActive), std::optional(PortState::kAvailable),
        std::optional(PortState::kNotAvailable), std::optional(PortState::kErrorDetected),
        std::optional<PortState>()}) {
    const wxString text = ToWx(NLSFmt(context_.session, StateText(state)));
    widest = std::max(widest, GetTextExtent(text).x);
  }
  return widest;
}

void frmPreferences::ShowState(Row& row) {
  row.chkSelectCommPort->Enable(CanBeTicked(row.state));
  if (row.state == PortState::kActive || row.state == PortState::kAvailable) {
    row.state = row.chkSelectCommPort->GetValue() ? PortState::kActive : PortState::kAvailable;
  }
  row.lblState->SetLabelText(ToWx(NLSFmt(context_.session, StateText(row.state))));
}

void frmPreferences::ShowNotes() {
  const Session& session = context_.session;
  std::string notes = NLSFmt(session,
                             "Tick the ports that have a radio; a job waits for each of them. The "
                             "test of a port tells why it is not available.");
  for (const Row& row : rows_) {
    std::string note = NLSFmt(session, row.problem.advice, row.problem.advice_arguments);
    for (const platform::SerialDeviceInfo& device : devices_) {
      if (note.empty() && device.device == row.device)
        note = DeviceNextStep(session, device, sources_.try_device);
    }
    if (!note.empty())
      notes += "\n" + NLSFmt(session, "Port %0:s: %1:s", {std::to_string(row.port), note});
  }
  txtNotes->ChangeValue(ToWx(notes));
}

void frmPreferences::Try(Row& row) {
  row.device = DeviceOf(row);
  const platform::SerialPort& port = link_.Port(row.port);
  // A port that we hold open ourselves works.
  const bool is_ours = port.IsOpen() && port.Device() == row.device;
  row.problem = is_ours ? platform::SystemError() : sources_.try_device(row.device);
  row.state = row.problem ? PortState::kNotAvailable : PortState::kAvailable;
  ShowState(row);
  ShowNotes();
}

void frmPreferences::OnDeviceTyped(Row& row) {
  std::string device = DeviceOf(row);
  if (device == row.device) return;
  row.device = std::move(device);
  row.problem = {};
  row.state.reset();
  ShowState(row);
}

void frmPreferences::OnTest(Row& row) {
  Session& session = context_.session;
  const std::string number = std::to_string(row.port);
  if (DeviceOf(row).empty()) {
    NLSMsgBox(session, NLSFmt(session, "Port %0:s has no device. Please choose one from the list.",
                              {number}));
    row.cboDevice->SetFocus();
    return;
  }
  Try(row);
  if (row.problem) {
    ReportError(session, row.problem, "cmdTest", row.port);
  } else {
    NLSMsgBox(session,
              NLSFmt(session, "Port %0:s works: %1:s can be opened.", {number, row.device}));
  }
}

bool frmPreferences::HasDevicesOfTheirOwn() {
  std::array<std::string, kPortCount> devices;
  for (const Row& row : rows_) devices[Link::Index(row.port)] = DeviceOf(row);
  const auto clash = PortsWithSameDevice(devices);
  if (!clash) return true;
  const auto [one, other] = *clash;
  Session& session = context_.session;
  NLSMsgBox(session,
            NLSFmt(session,
                   "Ports %0:s and %1:s both have the device %2:s. Please choose another device "
                   "for one of them.",
                   {std::to_string(one), std::to_string(other), devices[Link::Index(other)]}),
            {.icon = services::Icon::kCritical});
  rows_[Link::Index(other)].cboDevice->SetFocus();
  return false;
}

void frmPreferences::Save() {
  Session& session = context_.session;
  Settings& settings = session.settings;
  outcome_.language = cboLanguage->GetSelection() + 1;
  bool saved = settings.AppSaveSharedUserSetting("UILanguage", std::to_string(outcome_.language));
  for (const Row& row : rows_) {
    const std::string device = DeviceOf(row);
    if (device == link_.Port(row.port).Device()) continue;
    outcome_.changed_devices[row.port] = device;
    saved = SavePortDevice(settings, row.port, device) && saved;
  }
  if (saved) return;
  const std::string told = NLSFmt(
      session,
      "The settings cannot be saved, so your choice holds only until this application ends.");
  NLSMsgBox(session, told + "\n" + ErrorNote(session, settings.WriteProblem()),
            {.icon = services::Icon::kCritical});
}

bool frmPreferences::TypedDevicesWork() {
  for (Row& row : rows_) {
    if (row.state || !row.chkSelectCommPort->GetValue()) continue;
    Try(row);
    if (!row.problem) continue;
    ReportError(context_.session, row.problem, "frmPreferences", row.port);
    return false;
  }
  return true;
}

void frmPreferences::OnOk() {
  outcome_ = {};
  if (!HasDevicesOfTheirOwn() || !TypedDevicesWork()) return;
  Save();
  for (const Row& row : rows_) {
    if (row.chkSelectCommPort->IsEnabled())
      outcome_.ticked[Link::Index(row.port)] = row.chkSelectCommPort->GetValue();
  }
  outcome_.accepted = true;
  EndModal(wxID_OK);
}

void frmPreferences::RestorePlacement() {
  const Settings& settings = context_.session.settings;
  const wxRect screen = wxDisplay(this).GetClientArea();
  const int height = NumberOf(settings, "Height");
  if (height >= GetMinSize().y && height <= screen.height) SetSize(GetSize().x, height);
  const int top = NumberOf(settings, "Top");
  if (top >= screen.y && top + GetSize().y <= screen.y + screen.height) Move(GetPosition().x, top);
}

void frmPreferences::SavePlacement() {
  Settings& settings = context_.session.settings;
  settings.AppSaveUserSetting(settings.OwnType(), "Top", std::to_string(GetPosition().y));
  settings.AppSaveUserSetting(settings.OwnType(), "Height", std::to_string(GetSize().y));
}

PreferencesOutcome frmPreferences::Run() {
  services::FitToScreen(this);
  RestorePlacement();
  ShowModal();
  SavePlacement();
  return outcome_;
}

}  // namespace zep::link
