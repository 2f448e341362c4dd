#include "firmware/frmDownload.h"

#include <optional>

#include <wx/statbox.h>

#include "firmware/frmWriteSWToRadio.h"
#include "firmware/image_text.h"
#include "firmware/transfer_report.h"
#include "radiodb/data_files.h"
#include "radiodb/frmReadWriteRadio.h"
#include "radiodb/read_write_radio.h"
#include "services/messages.h"
#include "services/resource_ids.h"

namespace zep::firmware {
namespace {

using services::FromWx;
using services::NLSFmt;
using services::NLSText;
using services::Session;
using services::ToWx;

constexpr int kNoteWidth = 520;
constexpr int kResultHeight = 100;
constexpr int kTypingPause = 300;  // ms

// The windows of a download, and what is to be told of it when it is over.
class JobWindows final : public DownloadWindows {
 public:
  JobWindows(wxWindow* parent, services::WindowContext& context)
      : parent_(parent), context_(context) {}

  services::Outcome ReadRadioData(radiodb::RadioDb& db) override {
    radiodb::frmReadWriteRadio window(parent_, context_);
    services::Outcome outcome =
        window.Run([&db](radiodb::ReadWriteView& view) { return ReadRadio(db, view); });
    if (outcome.Done()) report_ += SavedText(db, db.data_file) + "\n";
    return outcome;
  }

  services::Outcome ProgramRadioData(radiodb::RadioDb& db, const std::string& file) override {
    radiodb::frmReadWriteRadio window(parent_, context_);
    services::Outcome outcome =
        window.Run([&](radiodb::ReadWriteView& view) { return ProgramRadio(db, view, file); });
    if (outcome.Done()) report_ += ProgrammedText(db, file) + "\n";
    return outcome;
  }

  TransferResult TransferFirmware(link::Job& job, Firmware& firmware,
                                  link::Transfer direction) override {
    frmWriteSWToRadio window(parent_, context_, job.link);
    TransferResult result = window.Run(job, firmware, direction);
    report_ += TransferReportText(job.link, result);
    return result;
  }

  // Lines, in the order of the steps.
  const std::string& Report() const { return report_; }

 private:
  wxWindow* parent_;
  services::WindowContext& context_;
  std::string report_;
};

void DivideFullPath(std::string& name, std::string& folder) {
  if (!services::IsAbsolute(name)) return;
  folder = services::FolderOf(name);
  name = services::FileTitleOf(name);
}

// Leaves the cursor where it is when the text is the same.
void ShowText(wxTextCtrl& box, const std::string& text) {
  if (FromWx(box.GetValue()) != text) box.ChangeValue(ToWx(text));
}

}  // namespace

frmDownload::frmDownload(wxWindow* parent, services::WindowContext& window_context,
                         link::Link& program_link, Firmware& program_firmware,
                         radiodb::LastRadio& last_radio)
    : TaskWindow(parent, window_context, "frmDownload", "download.htm"),
      link_(program_link),
      firmware_(program_firmware),
      radio_(last_radio) {
  const Session& session = context.session;
  const int gap = services::Gap(this);
  const wxSizerFlags below = wxSizerFlags().Expand().Border(wxTOP, gap);
  auto* rows = new wxBoxSizer(wxVERTICAL);
  rows->Add(MakeBinaryFrame(), wxSizerFlags().Expand());
  rows->Add(MakeDataFrame(), below);

  chkAutoSaveRadioData = services::MakeCheckBox(
      this, NLSFmt(session, "&Save the radio's data and write it back"), "chkAutoSaveRadioData");
  lblAutoSaveRadioData = services::MakeLabel(this, "", "lblAutoSaveRadioData");
  rows->Add(chkAutoSaveRadioData, below);
  rows->Add(lblAutoSaveRadioData, wxSizerFlags().Expand().Border(wxLEFT, 3 * gap));

  txtResult = services::MakeTextBox(this, "txtResult", NLSFmt(session, "Result"),
                                    wxTE_MULTILINE | wxTE_READONLY);
  txtResult->SetMinSize({-1, FromDIP(kResultHeight)});
  txtResult->Hide();
  rows->Add(txtResult, wxSizerFlags(1).Expand().Border(wxTOP, gap));
  rows->Add(MakeButtons(), below);

  ShowChoices(LoadDownloadChoices(session));
  UpdateOffers();
  SetContents(rows);
  for (wxTextCtrl* box : {txtBinaryFileName, txtBinaryFilePath})
    box->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { timInspect.StartOnce(kTypingPause); });
  for (wxTextCtrl* box : {txtBinaryFileName, txtBinaryFilePath, txtDataFileName, txtDataFilePath})
    box->Bind(wxEVT_KILL_FOCUS, &frmDownload::OnLeave, this);
  timInspect.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { ShowImageFacts(); });
}

frmDownload::~frmDownload() {
  for (wxTextCtrl* box : {txtBinaryFileName, txtBinaryFilePath, txtDataFileName, txtDataFilePath})
    box->Unbind(wxEVT_KILL_FOCUS, &frmDownload::OnLeave, this);
  SaveDownloadChoices(context.session, Choices());
}

wxSizer* frmDownload::MakeFileRows(wxStaticBox* frame, const FileBoxes& boxes) {
  const Session& session = context.session;
  auto* grid = services::LabelGrid(frame, 3);
  const wxSizerFlags centred = wxSizerFlags().CentreVertical();
  const auto row = [&](std::string_view label, wxTextCtrl* box) {
    auto* cell = new wxBoxSizer(wxHORIZONTAL);  // keeps the box at its own height
    cell->Add(box, wxSizerFlags(1).CentreVertical());
    grid->Add(services::MakeLabel(frame, NLSFmt(session, label)), centred);
    grid->Add(cell, wxSizerFlags().Expand());
  };
  row(NLSText("Name:"), boxes.name);
  grid->Add(boxes.browse, centred);
  row(NLSText("Folder:"), boxes.path);
  grid->AddSpacer(0);
  return grid;
}

wxSizer* frmDownload::MakeBinaryFrame() {
  const Session& session = context.session;
  auto* frame = new wxStaticBoxSizer(wxVERTICAL, this, ToWx(NLSFmt(session, "Firmware file")));
  wxStaticBox* box = frame->GetStaticBox();
  services::NameControl(box, "fraBinaryFile");
  txtBinaryFileName =
      services::MakeTextBox(box, "txtBinaryFileName", NLSFmt(session, "Name of the firmware file"));
  cmdBrowseBinary = services::MakeButton(box, NLSFmt(session, "&Browse..."), "cmdBrowseBinary",
                                         [this] { BrowseBinary(); });
  txtBinaryFilePath = services::MakeTextBox(box, "txtBinaryFilePath",
                                            NLSFmt(session, "Folder of the firmware file"));
  lblImageFacts = services::MakeLabel(box, "", "lblImageFacts");
  const wxSizerFlags row = wxSizerFlags().Expand().Border(wxALL, services::Gap(this) / 2);
  frame->Add(MakeFileRows(box, {txtBinaryFileName, txtBinaryFilePath, cmdBrowseBinary}), row);
  frame->Add(lblImageFacts, row);
  return frame;
}

wxSizer* frmDownload::MakeDataFrame() {
  const Session& session = context.session;
  auto* frame = new wxStaticBoxSizer(wxVERTICAL, this,
                                     ToWx(NLSFmt(session, "Data file to program afterwards")));
  wxStaticBox* box = frame->GetStaticBox();
  services::NameControl(box, "fraDataFile");
  txtDataFileName =
      services::MakeTextBox(box, "txtDataFileName", NLSFmt(session, "Name of the data file"));
  cmdBrowseData = services::MakeButton(box, NLSFmt(session, "Br&owse..."), "cmdBrowseData",
                                       [this] { BrowseData(); });
  txtDataFilePath =
      services::MakeTextBox(box, "txtDataFilePath", NLSFmt(session, "Folder of the data file"));
  frame->Add(MakeFileRows(box, {txtDataFileName, txtDataFilePath, cmdBrowseData}),
             wxSizerFlags().Expand().Border(wxALL, services::Gap(this) / 2));
  return frame;
}

wxSizer* frmDownload::MakeButtons() {
  const Session& session = context.session;
  cmdDownload = services::MakeButton(this, NLSFmt(session, "&Download"), "cmdDownload",
                                     [this] { Download(); });
  cmdUpload =
      services::MakeButton(this, NLSFmt(session, "&Upload..."), "cmdUpload", [this] { Upload(); });
  cmdUpload->Show(session.upload);
  cmdCancel = MakeCancelButton();
  wxButton* help = services::MakeHelpButton(this, context, "download.htm");
  cmdDownload->SetDefault();
  return services::ButtonRow(this, {cmdDownload, cmdUpload, cmdCancel, help});
}

void frmDownload::UpdateOffers() {
  if (context.session.jobs.IsRunning()) return;
  const bool offers = OffersAutoSave(link_);
  if (!offers) chkAutoSaveRadioData->SetValue(false);
  chkAutoSaveRadioData->Show(offers);
  lblAutoSaveRadioData->SetLabelText(ToWx(
      NLSFmt(context.session,
             "The data is saved in %0:s before the firmware is replaced. The file stays there.",
             {radiodb::DatabaseFolder(context.session)})));
  lblAutoSaveRadioData->Wrap(FromDIP(kNoteWidth));
  lblAutoSaveRadioData->Show(offers);
  Layout();
  FitInside();
}

void frmDownload::ShowChoices(const DownloadChoices& choices) {
  ShowNames(choices);
  ShowImageFacts();
}

void frmDownload::ShowNames(const DownloadChoices& choices) {
  ShowText(*txtBinaryFileName, choices.BinaryFileName);
  ShowText(*txtBinaryFilePath, choices.BinaryFilePath);
  ShowText(*txtDataFileName, choices.DataFileName);
  ShowText(*txtDataFilePath, choices.DataFilePath);
}

DownloadChoices frmDownload::Choices() const {
  DownloadChoices choices = {.BinaryFileName = FromWx(txtBinaryFileName->GetValue()),
                             .BinaryFilePath = FromWx(txtBinaryFilePath->GetValue()),
                             .DataFileName = FromWx(txtDataFileName->GetValue()),
                             .DataFilePath = FromWx(txtDataFilePath->GetValue()),
                             .auto_save = chkAutoSaveRadioData->GetValue()};
  DivideFullPath(choices.BinaryFileName, choices.BinaryFilePath);
  DivideFullPath(choices.DataFileName, choices.DataFilePath);
  return choices;
}

void frmDownload::TakeInput() {
  const DownloadChoices choices = Choices();
  SaveDownloadChoices(context.session, choices);
  ShowNames(choices);
  if (timInspect.IsRunning()) ShowImageFacts();
}

void frmDownload::OnLeave(wxFocusEvent& event) {
  event.Skip();
  TakeInput();
}

void frmDownload::ShowImageFacts() {
  timInspect.Stop();
  const Session& session = context.session;
  const DownloadChoices choices = Choices();
  const std::string file = services::PathOf(choices.BinaryFilePath, choices.BinaryFileName);
  std::string facts;
  image_.reset();
  if (!choices.BinaryFileName.empty()) {
    image_ = ReadFirmwareImage(file);
    facts = HasImage() ? ImageFacts(session, *image_) : ImageProblemText(session, *image_);
  }
  lblImageFacts->SetLabelText(ToWx(facts));
  lblImageFacts->Wrap(FromDIP(kNoteWidth));
  Layout();
  FitInside();
}

void frmDownload::BrowseBinary() {
  DownloadChoices choices = Choices();
  if (!firmware::BrowseBinary(context.session, firmware_.image, choices)) return;
  ShowChoices(choices);
  if (!HasImage()) txtBinaryFileName->SetFocus();
}

void frmDownload::BrowseData() {
  Session& session = context.session;
  DownloadChoices choices = Choices();
  const std::optional<std::string> file = session.user.AskOpenFile(
      {.title = NLSFmt(session, "Select Data File to Download"),
       .filter = NLSFmt(session, session.strings.Get(services::kResAnyDataFileFilter)),
       .folder = choices.DataFilePath,
       .name = choices.DataFileName});
  if (!file) return;
  choices.DataFileName = services::FileTitleOf(*file);
  choices.DataFilePath = services::FolderOf(*file);
  SaveDownloadChoices(session, choices);
  ShowChoices(choices);
}

void frmDownload::Download() {
  if (context.session.jobs.IsRunning()) return;
  TakeInput();
  ShowImageFacts();
  HideResult();
  cmdCancel->SetFocus();
  EnableInputs(false);
  JobWindows windows(this, context);
  DownloadChoices choices = Choices();
  choices.image = image_;
  DownloadFirmwareAndData({link_, firmware_, radio_, windows}, choices);
  EnableInputs(true);
  (HasImage() ? static_cast<wxWindow*>(cmdDownload) : txtBinaryFileName)->SetFocus();
  UpdateOffers();  // the user may have chosen other ports meanwhile
  ShowResult(windows.Report());
}

void frmDownload::Upload() {
  if (context.session.jobs.IsRunning()) return;
  HideResult();
  cmdCancel->SetFocus();
  EnableInputs(false);
  const std::string report = UploadFirmwareToChosenFile(this, context, link_, firmware_);
  EnableInputs(true);
  cmdUpload->SetFocus();
  ShowChoices(LoadDownloadChoices(context.session));
  ShowResult(report);
}

void frmDownload::EnableInputs(bool enabled) {
  for (wxWindow* input : std::initializer_list<wxWindow*>{
           txtBinaryFileName, txtBinaryFilePath, cmdBrowseBinary, txtDataFileName, txtDataFilePath,
           cmdBrowseData, chkAutoSaveRadioData, cmdDownload, cmdUpload}) {
    input->Enable(enabled);
  }
}

// What an earlier run has said is not of the one that begins.
void frmDownload::HideResult() {
  txtResult->Clear();
  txtResult->Hide();
}

void frmDownload::ShowResult(const std::string& text) {
  if (text.empty()) return;
  txtResult->ChangeValue(ToWx(text));
  txtResult->Show();
  Layout();
  FitInside();
}

std::string UploadFirmwareToChosenFile(wxWindow* parent, services::WindowContext& context,
                                       link::Link& link, Firmware& firmware) {
  if (context.session.jobs.IsRunning()) return {};
  Session& session = context.session;
  DownloadChoices choices = LoadDownloadChoices(session);
  const std::optional<std::string> file = session.user.AskSaveFile(
      {.title = NLSFmt(session, "Select Upload File Name"),
       .filter = NLSFmt(session, session.strings.Get(services::kResFirmwareFileFilter)),
       .folder = choices.BinaryFilePath,
       .name = choices.BinaryFileName});
  if (!file || !MayWriteFile(session, *file)) return {};
  choices.BinaryFileName = services::FileTitleOf(*file);
  choices.BinaryFilePath = services::FolderOf(*file);
  SaveDownloadChoices(session, choices);
  JobWindows windows(parent, context);
  radiodb::LastRadio nobody;
  if (!UploadFirmware({link, firmware, nobody, windows}, *file).Done()) return windows.Report();
  return windows.Report() + SavedFlashText(session, *file);
}

}  // namespace zep::firmware
