#include "shell/frmAbout.h"

#include <utility>
#include <vector>

#include <wx/statbmp.h>
#include <wx/versioninfo.h>

#include "services/messages.h"
#include "services/resource_ids.h"
#include "shell/icons.h"

namespace zep::shell {
namespace {

using services::Gap;
using services::MakeButton;
using services::MakeLabel;
using services::NLSFmt;
using services::Session;
using services::ToWx;

constexpr int kIconSize = 64;
constexpr const char* kHelpPage = "about.htm";

// "Linux 6.1.0 (x86_64)"; on Windows with the name of its family behind it.
std::string SystemText(const Application& application) {
  std::string text = application.system.description;
  if (!application.operating_system_name.empty()) {
    if (!text.empty()) text += ", ";
    text += application.operating_system_name;
  }
  return text;
}

}  // namespace

std::string OptionLetters(const Session& session) {
  std::string letters;
  if (session.high_speed) letters = "H";
  if (session.in_house) letters = "I" + letters;
  if (session.upload) letters = "U" + letters;
  return letters.empty() ? NLSFmt(session, "None") : letters;
}

frmAbout::frmAbout(wxWindow* parent, Application& application)
    : wxDialog(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxDEFAULT_DIALOG_STYLE,
               "frmAbout"),
      application_(application) {
  const Session& session = application.session;
  SetTitle(ToWx(NLSFmt(session, session.strings.Get(services::kResWindowAbout))));
  services::SetHelpPage(this, application.context, kHelpPage);

  auto* top = new wxBoxSizer(wxHORIZONTAL);
  const wxSize icon_size = FromDIP(wxSize(kIconSize, kIconSize));
  const wxIcon icon = ApplicationIcons(session.paths).GetIcon(icon_size);
  if (icon.IsOk()) {
    auto* picture = new wxStaticBitmap(this, wxID_ANY, wxBitmap(icon));
    top->Add(picture, wxSizerFlags().Border(wxRIGHT, 2 * Gap(this)));
  }
  top->Add(MakeFacts(), wxSizerFlags(1));

  wxButton* copy = MakeButton(this, NLSFmt(session, "&Copy"), "cmdCopy", [this] { Copy(); });
  wxButton* ok = MakeButton(
      this, NLSFmt(session, "&OK"), "cmdOk", [this] { EndModal(wxID_OK); }, wxID_OK);
  auto* contents = new wxBoxSizer(wxVERTICAL);
  contents->Add(top, wxSizerFlags(1).Expand().Border(wxBOTTOM, 2 * Gap(this)));
  contents->Add(services::ButtonRow(this, {copy, ok}), wxSizerFlags().Expand());
  services::SetContents(this, contents);
  ok->SetDefault();
  ok->SetFocus();
  SetEscapeId(wxID_OK);
  services::FitToScreen(this);
}

wxSizer* frmAbout::MakeFacts() {
  const Session& session = application_.session;
  const std::string title = NLSFmt(session, session.strings.Get(services::kResApplicationTitle));
  const std::string version = session.strings.Get(services::kResVersion);
  const std::vector<std::pair<std::string, std::string>> facts = {
      {NLSFmt(session, "Operating system:"), SystemText(application_)},
      {NLSFmt(session, "Options:"), OptionLetters(session)},
      {NLSFmt(session, "String table:"), session.strings.Get(services::kResIdentity)},
      {NLSFmt(session, "Window toolkit:"),
       services::FromWx(wxGetLibraryVersionInfo().GetVersionString())}};

  auto* rows = new wxBoxSizer(wxVERTICAL);
  wxStaticText* heading = MakeLabel(this, title, "lblTitle");
  heading->SetFont(heading->GetFont().Bold().Larger());
  rows->Add(heading);
  rows->Add(MakeLabel(this, version, "lblVersion"),
            wxSizerFlags().Border(wxTOP | wxBOTTOM, Gap(this)));
  wxFlexGridSizer* grid = services::LabelGrid(this);
  text_ = title + "\n" + version + "\n";
  for (const auto& [label, value] : facts) {
    grid->Add(MakeLabel(this, label));
    grid->Add(MakeLabel(this, value));
    text_ += label + " " + value + "\n";
  }
  rows->Add(grid);
  return rows;
}

void frmAbout::Copy() { services::CopyText(text_); }

}  // namespace zep::shell
