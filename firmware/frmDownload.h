// The download window: which firmware image, and perhaps which data file, goes into the radios. It
// starts the download, and the upload where that is switched on; at the end it shows what became of
// each radio.
#pragma once

#include <string>

#include <wx/checkbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/timer.h>

#include "firmware/download.h"
#include "services/window_kit_ui.h"

namespace zep::firmware {

class frmDownload : public services::TaskWindow {
 public:
  frmDownload(wxWindow* parent, services::WindowContext& window_context, link::Link& program_link,
              Firmware& program_firmware, radiodb::LastRadio& last_radio);
  // Stores the choices.
  ~frmDownload() override;

  // Offers to save the radio's data when that is possible now. For when ports may have changed;
  // does nothing while a job runs.
  void UpdateOffers();

 private:
  // The name and the folder of a file, and the button to browse for it.
  struct FileBoxes {
    wxTextCtrl* name = nullptr;
    wxTextCtrl* path = nullptr;
    wxButton* browse = nullptr;
  };

  wxSizer* MakeBinaryFrame();
  wxSizer* MakeDataFrame();
  wxSizer* MakeFileRows(wxStaticBox* frame, const FileBoxes& boxes);
  wxSizer* MakeButtons();

  void ShowChoices(const DownloadChoices& choices);
  void ShowNames(const DownloadChoices& choices);
  // What the boxes say; a full path in a Name is taken as folder and name.
  DownloadChoices Choices() const;
  // What was typed is complete: keeps it, shows it as it is taken, and inspects a typed image.
  void TakeInput();
  void OnLeave(wxFocusEvent& event);
  void ShowImageFacts();
  bool HasImage() const { return image_ != nullptr && image_->IsUsable(); }
  void BrowseBinary();
  void BrowseData();
  void Download();
  void Upload();
  // The inputs wait while a job runs, all but Cancel.
  void EnableInputs(bool enabled);
  void HideResult();
  void ShowResult(const std::string& text);

  link::Link& link_;
  Firmware& firmware_;
  radiodb::LastRadio& radio_;
  wxTimer timInspect;  // runs while an image is being typed, which is inspected in a pause
  SharedImage image_;  // what was inspected last; null when no file is named

  wxTextCtrl* txtBinaryFileName = nullptr;
  wxTextCtrl* txtBinaryFilePath = nullptr;
  wxButton* cmdBrowseBinary = nullptr;
  wxStaticText* lblImageFacts = nullptr;
  wxTextCtrl* txtDataFileName = nullptr;
  wxTextCtrl* txtDataFilePath = nullptr;
  wxButton* cmdBrowseData = nullptr;
  wxCheckBox* chkAutoSaveRadioData = nullptr;
  wxStaticText* lblAutoSaveRadioData = nullptr;
  wxTextCtrl* txtResult = nullptr;
  wxButton* cmdDownload = nullptr;
  wxButton* cmdUpload = nullptr;
  wxButton* cmdCancel = nullptr;
};

// Reads the flash of one radio into a file that the user chooses. What became of it, for the user;
// empty when nothing was begun. Does nothing while a job runs.
std::string UploadFirmwareToChosenFile(wxWindow* parent, services::WindowContext& context,
                                       link::Link& link, Firmware& firmware);

}  // namespace zep::firmware
