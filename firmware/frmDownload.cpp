#include "firmware/frmDownload.h"

#include <optional>

#include <wx/statbox.h>

#include "firmware/frmWriteSWToRadio.h"
#include "firmware/image_text.h"
#include "firmware/transfer_report.h"
#include "platform/files.h"
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

// The windows of a download, and what is to be told of it when it is over.
class JobWindows final : public DownloadWindows {
 public:
  JobWindows(wxWindow* parent, services::WindowContext& context)
      : parent_(parent), context_(context) {}

  bool ReadRadioData(radiodb::RadioDb& db) override {
    radiodb::frmReadWriteRadio window(parent_, context_);
    const bool done =
        window.Run([&db](radiodb::ReadWriteView& view) { return ReadRadio(db, view); });
    if (done) report_ += SavedText(db, db.data_file) + "\n";
    return done;
  }

  bool ProgramRadioData(radiodb::RadioDb& db, const std::string& file) override {
    radiodb::frmReadWriteRadio window(parent_, context_);
    const bool done =
        window.Run([&](radiodb::ReadWriteView& view) { return ProgramRadio(db, view, file); });
    if (done) report_ += ProgrammedText(db, file) + "\n";
    return done;
  }

  void TransferFirmware(Firmware& firmware) override {
    frmWriteSWToRadio window(parent_, context_, firmware);
    report_ += TransferReportText(firmware, window.Run());
  }

  // Lines, in the order of the steps.
  const std::string& Report() const { return report_; }

 private:
  wxWindow* parent_;
  services::WindowContext& context_;
  std::string report_;
};

}  // namespace

frmDownload::frmDownload(wxWindow* parent, services::WindowContext& window_context,
                         Firmware& program_firmware, radiodb::RadioDb& radio_db)
    : TaskWindow(parent, window_context, "frmDownload", "download.htm"),
      firmware_(program_firmware),
      db_(radio_db) {
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

  ShowChoices();
  UpdateOffers();
  SetContents(rows);
  for (wxTextCtrl* box : {txtBinaryFileName, txtBinaryFilePath, txtDataFileName, txtDataFilePath})
    box->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { StoreChoices(); });
}

frmDownload::~frmDownload() { StoreChoices(); }

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
  wxButton* help = services::MakeHelpButton(this, context, "download.htm");
  cmdCancel = services::MakeButton(this, NLSFmt(session, "&Cancel"), "cmdCancel",
                                   [this] { CancelOrClose(); });
  cmdDownload->SetDefault();
  return services::ButtonRow(this, {cmdDownload, cmdUpload, help, cmdCancel});
}

void frmDownload::UpdateOffers() {
  if (context.job.IsRunning()) return;
  const bool offers = OffersAutoSave(firmware_.link);
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

void frmDownload::ShowChoices() {
  const DownloadChoices choices = LoadDownloadChoices(context.session);
  txtBinaryFileName->ChangeValue(ToWx(choices.BinaryFileName));
  txtBinaryFilePath->ChangeValue(ToWx(choices.BinaryFilePath));
  txtDataFileName->ChangeValue(ToWx(choices.DataFileName));
  txtDataFilePath->ChangeValue(ToWx(choices.DataFilePath));
  ShowImageFacts();
}

DownloadChoices frmDownload::Choices() const {
  return {.BinaryFileName = FromWx(txtBinaryFileName->GetValue()),
          .BinaryFilePath = FromWx(txtBinaryFilePath->GetValue()),
          .DataFileName = FromWx(txtDataFileName->GetValue()),
          .DataFilePath = FromWx(txtDataFilePath->GetValue()),
          .auto_save = chkAutoSaveRadioData->GetValue()};
}

void frmDownload::StoreChoices() {
  SaveDownloadChoices(context.session, Choices());
  ShowImageFacts();
}

void frmDownload::ShowImageFacts() {
  const DownloadChoices choices = Choices();
  std::string facts;
  if (!choices.BinaryFileName.empty()) {
    facts = ImageFacts(context.session, InspectImage(services::AppMakePath(
                                            choices.BinaryFilePath, choices.BinaryFileName)));
  }
  lblImageFacts->SetLabelText(ToWx(facts));
}

void frmDownload::BrowseBinary() {
  DownloadChoices choices = Choices();
  if (firmware::BrowseBinary(firmware_, choices)) ShowChoices();
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
  ShowChoices();
}

void frmDownload::Download() {
  if (context.job.IsRunning()) return;
  StoreChoices();
  HideResult();
  cmdCancel->SetFocus();
  EnableInputs(false);
  JobWindows windows(this, context);
  {
    const services::JobControl::Scope scope(context.job,
                                            [this] { context.session.RequestCancel(); });
    DownloadFirmwareAndData(firmware_, db_, Choices(), windows);
  }
  EnableInputs(true);
  cmdDownload->SetFocus();
  UpdateOffers();  // the user may have chosen other ports meanwhile
  ShowResult(windows.Report());
}

void frmDownload::Upload() {
  if (context.job.IsRunning()) return;
  HideResult();
  cmdCancel->SetFocus();
  EnableInputs(false);
  const std::string report = UploadFirmwareToChosenFile(this, context, firmware_);
  EnableInputs(true);
  cmdUpload->SetFocus();
  ShowChoices();
  ShowResult(report);
}

void frmDownload::CancelOrClose() {
  if (context.job.IsRunning()) {
    context.job.Cancel();
  } else {
    services::WindowContext::Call(context.close_task);
  }
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
                                       Firmware& firmware) {
  if (context.job.IsRunning()) return {};
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
  if (!UploadFirmware(firmware, *file, windows)) return windows.Report();
  return windows.Report() + SavedFlashText(session, *file);
}

}  // namespace zep::firmware
