// What the download dialog's buttons do: choosing an image and a data file, then firmware and data
// into the radio in the right order.
#pragma once

#include <string>

#include "firmware/firmware.h"
#include "firmware/transfer_engine.h"
#include "radiodb/radio_db.h"

namespace zep::firmware {

// The dialog's fields. Folders end with their separator.
struct DownloadChoices {
  std::string BinaryFileName;
  std::string BinaryFilePath;
  std::string DataFileName;
  std::string DataFilePath;
  // chkAutoSaveRadioData: save the radio's data before its firmware is replaced and write it back.
  bool auto_save = false;
  // The firmware file as it was read already; null: it is read now.
  SharedImage image = nullptr;
};

// The choices of the last time, kept as settings; folders that were never chosen are the "Data
// Files" folder of the application.
DownloadChoices LoadDownloadChoices(const services::Session& session);
void SaveDownloadChoices(services::Session& session, const DownloadChoices& choices);

// Makes the image of the choices the chosen one and checks it. False, after a word to the user,
// when there is none or it is not valid.
bool CheckChosenImage(services::Session& session, ChosenImage& image,
                      const DownloadChoices& choices);

// The Browse button of a firmware file: has the user choose one, keeps the choice and checks the
// file, which stays chosen when it is not valid. False when the user gave up.
bool BrowseBinary(services::Session& session, ChosenImage& image, DownloadChoices& choices);

// Whether the radio's data can be saved automatically: one port is Active. Tries the ports.
bool OffersAutoSave(link::Link& link);

// The windows that a download opens one after the other. Each returns when its work is over.
class DownloadWindows {
 public:
  virtual ~DownloadWindows() = default;

  // The read/write window: radiodb's ReadRadio, and its ProgramRadio.
  virtual services::Outcome ReadRadioData(radiodb::RadioDb& db) = 0;
  virtual services::Outcome ProgramRadioData(radiodb::RadioDb& db, const std::string& file) = 0;
  // The engine's window: RunTransfer.
  virtual TransferResult TransferFirmware(link::Job& job, Firmware& firmware,
                                          link::Transfer direction) = 0;
};

// What a download works on.
struct DownloadWork {
  link::Link& link;
  Firmware& firmware;
  radiodb::LastRadio& radio;
  DownloadWindows& windows;
};

// The Download button: firmware, and data before and after it as chosen. Done when everything that
// was asked for is done.
services::Outcome DownloadFirmwareAndData(const DownloadWork& work, const DownloadChoices& choices);

// The Upload button: reads the flash of one radio into the file.
services::Outcome UploadFirmware(const DownloadWork& work, const std::string& file);

}  // namespace zep::firmware
