#include "radiodb/frmSpecification.h"

#include <array>

#include "radiodb/read_write_radio.h"
#include "services/messages.h"

namespace zep::radiodb {
namespace {

using services::NLSFmt;
using services::NLSText;
using services::ToWx;

// The labels of the values, in the order of IdentityRows; a trunked radio has them all.
constexpr std::array kValueLabels = {
    "lblModel",           "lblModelString",        "lblType",
    "lblSerialNumber",    "lblSoftwareVersion",    "lblHardwareVersion",
    "lblDatabaseVersion", "lblCalibrationVersion", "lblBand",
    "lblBandwidth",       "lblComplianceCode",     "lblNetworks"};

constexpr const char* kNothing = "-";
constexpr int kStatusWidth = 480;

constexpr std::string_view kNotRead = NLSText(
    "No radio has been read yet. Please connect a radio, switch it on and press Read Radio.");
constexpr std::string_view kFailed = NLSText(
    "The radio was not read. Please check that it is connected and switched on, then press Read "
    "Radio again.");

}  // namespace

frmSpecification::frmSpecification(wxWindow* parent, services::WindowContext& window_context,
                                   link::Link& program_link, LastRadio& last_radio)
    : TaskWindow(parent, window_context, "frmSpecification", "specification.htm"),
      link_(program_link),
      radio_(last_radio),
      grid_(services::LabelGrid(this)) {
  const services::Session& session = context.session;
  for (const char* name : kValueLabels) {
    wxStaticText* label = services::MakeLabel(this, "");
    wxStaticText* value = services::MakeLabel(this, kNothing, name);
    value->SetFont(value->GetFont().Bold());
    grid_->Add(label);
    grid_->Add(value, wxSizerFlags().Expand());
    lines_.push_back({label, value});
  }
  lblStatus = services::MakeLabel(this, "", "lblStatus");

  cmdReadRadio = services::MakeButton(this, NLSFmt(session, "&Read Radio"), "cmdReadRadio",
                                      [this] { ReadTheRadio(); });
  cmdCopy = services::MakeButton(this, NLSFmt(session, "C&opy"), "cmdCopy", [this] { Copy(); });
  cmdCancel = MakeCancelButton();
  wxButton* help = services::MakeHelpButton(this, context, "specification.htm");
  cmdReadRadio->SetDefault();

  const wxSizerFlags below = wxSizerFlags().Expand().Border(wxTOP, 2 * services::Gap(this));
  auto* rows = new wxBoxSizer(wxVERTICAL);
  rows->Add(grid_, wxSizerFlags().Expand());
  rows->Add(lblStatus, below);
  rows->Add(services::ButtonRow(this, {cmdReadRadio, cmdCopy, cmdCancel, help}), below);
  SetContents(rows);
  FillInTheData();
  ShowStatus(IsRead() ? "" : kNotRead);
}

void frmSpecification::FillInTheData() {
  const std::vector<IdentityRow> rows = IdentityRows(context.session, radio_.identity);
  for (std::size_t at = 0; at < lines_.size(); ++at) {
    const bool has_row = at < rows.size();
    lines_[at].name->Show(has_row);
    lines_[at].value->Show(has_row);
    if (!has_row) continue;
    const bool has_value = IsRead() && !rows[at].value.empty();
    lines_[at].name->SetLabelText(ToWx(rows[at].name));
    lines_[at].value->SetLabelText(has_value ? ToWx(rows[at].value) : wxString(kNothing));
  }
  cmdCopy->Enable(IsRead());
  Layout();
  FitInside();
}

void frmSpecification::ReadTheRadio() {
  if (context.session.jobs.IsRunning()) return;
  // Whatever comes, what was known is not of the radio that is connected now.
  radio_.identity = {};
  FillInTheData();
  ShowStatus(NLSText("Reading Radio"));
  cmdCancel->SetFocus();
  cmdReadRadio->Disable();
  services::Outcome outcome;
  {
    link::Job job(link_);
    RadioDb db(job, radio_);
    outcome = ReadSpecification(db);
  }
  if (!outcome.Done()) radio_.identity = {};
  cmdReadRadio->Enable();
  cmdReadRadio->SetFocus();
  FillInTheData();
  ShowStatus(outcome.Done() ? "" : outcome.WasCancelled() ? kNotRead : kFailed);
}

void frmSpecification::Copy() {
  std::string text;
  for (const IdentityRow& row : IdentityRows(context.session, radio_.identity))
    text += row.name + ": " + row.value + "\n";
  if (!services::CopyText(text)) ShowStatus(NLSText("The clipboard cannot be used."));
}

void frmSpecification::ShowStatus(std::string_view text) {
  lblStatus->SetLabelText(ToWx(NLSFmt(context.session, text)));
  lblStatus->Wrap(FromDIP(kStatusWidth));
  Layout();
  FitInside();
}

}  // namespace zep::radiodb
