#include "link/frmSelectCommPort.h"

#include <string>

#include "link/byte_exchange.h"
#include "link/port_texts.h"
#include "services/messages.h"
#include "services/resource_ids.h"

namespace zep::link {
namespace {

using services::Gap;
using services::NLSFmt;
using services::Session;
using services::ToWx;

constexpr const char* kHelpPage = "select_port.htm";

// "Port 2 (/dev/ttyUSB0)", with the mnemonic.
std::string PortText(const Session& session, int port, const std::string& device) {
  const std::string number = std::to_string(port);
  if (device.empty()) return NLSFmt(session, "Port &%0:s", {number});
  const std::string shown = services::FromWx(wxControl::EscapeMnemonics(ToWx(device)));
  return NLSFmt(session, "Port &%0:s (%1:s)", {number, shown});
}

}  // namespace

frmSelectCommPort::frmSelectCommPort(wxWindow* parent, services::WindowContext& window_context,
                                     Job& the_job, const PortSelectionOptions& options)
    : wxDialog(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE,
               "frmSelectCommPort"),
      context_(window_context),
      job_(the_job) {
  const Session& session = context_.session;
  SetTitle(ToWx(NLSFmt(session, session.strings.Get(services::kResWindowSelectPort))));
  services::SetHelpPage(this, context_, kHelpPage);

  auto* contents = new wxBoxSizer(wxVERTICAL);
  contents->Add(MakeChoices(options), wxSizerFlags(1).Expand().Border(wxBOTTOM, Gap(this)));
  contents->Add(services::OkCancelHelpRow(this, context_, kHelpPage, [this] { EndModal(wxID_OK); }),
                wxSizerFlags().Expand());
  services::SetContents(this, contents);
}

wxSizer* frmSelectCommPort::MakeChoices(const PortSelectionOptions& options) {
  const Session& session = context_.session;
  auto* rows =
      new wxStaticBoxSizer(wxVERTICAL, this, ToWx(SelectPortTitle(session, job_.TransferMode)));
  fraSelect = rows->GetStaticBox();
  services::NameControl(fraSelect, "fraSelect");
  for (const int port : kAllPorts) {
    const PortState state = job_.State(port);
    AddChoice(port, PortText(session, port, job_.Port(port).Device()),
              state == PortState::kActive || state == PortState::kAvailable, rows);
  }
  AddChoice(kAllPortsChoice, AllPortsText(session, job_.TransferMode), options.takes_all_ports,
            rows);
  return rows;
}

void frmSelectCommPort::AddChoice(int number, const std::string& label, bool enabled,
                                  wxSizer* rows) {
  auto* choice = new wxRadioButton(fraSelect, wxID_ANY, ToWx(label), wxDefaultPosition,
                                   wxDefaultSize, number == 1 ? wxRB_GROUP : 0);
  services::NameControl(choice, ("optCommSelect" + std::to_string(number)).c_str());
  choice->Enable(enabled);
  choice->Bind(wxEVT_RADIOBUTTON, [this, number](wxCommandEvent&) { Choose(number); });
  optCommSelect[Link::Index(number)] = choice;
  rows->Add(choice, wxSizerFlags().Border(wxALL, Gap(this)));
}

void frmSelectCommPort::Choose(int number) {
  if (number == kAllPortsChoice) {
    RestoreCommStates(job_);
  } else {
    SelectPort(job_, number);
  }
}

void frmSelectCommPort::Run() {
  const auto states_before = job_.CommStates;
  // The first Active port is chosen until the user chooses another.
  if (const int first = FirstActivePort(job_.CommStates); first != 0) {
    optCommSelect[Link::Index(first)]->SetValue(true);
    optCommSelect[Link::Index(first)]->SetFocus();
    Choose(first);
  }
  services::FitToScreen(this);
  if (ShowModal() == wxID_OK) return;
  job_.CommStates = states_before;
  job_.RequestCancel();
}

}  // namespace zep::link
