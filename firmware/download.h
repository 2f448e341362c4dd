// What the download dialog's buttons do: choosing an image and a data file, then firmware and data
// into the radio in the right order.
#pragma once

#include <string>

#include "firmware/firmware.h"

namespace zep::firmware {

// The dialog's fields. Folders end with their separator.
struct DownloadChoices {
  std::string BinaryFileName;
  std::string BinaryFilePath;
  std::string DataFileName;
  std::string DataFilePath;
  // chkAutoSaveRadioData: save the radio's data before its firmware is replaced and write it back.
  bool auto_save = false;
};

// The choices of the last time, kept as settings; folders that were never chosen are the "Data
// Files" folder of the application.
DownloadChoices LoadDownloadChoices(const services::Session& session);
void SaveDownloadChoices(services::Session& session, const DownloadChoices& choices);

// Whether the radio's data can be saved automatically: one port is Active.
bool OffersAutoSave(link::Link& link);

// The windows that a download opens one after the other. Each returns when its work is over; how it
// went is told by the session's flags.
class DownloadWindows {
 public:
  virtual ~DownloadWindows() = default;

  // Reads the radio's database into a file of the default name and returns its full name.
  virtual std::string SaveRadioData() = 0;
  // Runs the engine, in the direction that TransferMode says.
  virtual void TransferFirmware(Firmware& firmware) = 0;
  // Programs a data file into the radio.
  virtual void ProgramRadioData(const std::string& full_name) = 0;
};

// The Download button. True when everything that was asked for is done.
bool DownloadFirmwareAndData(Firmware& firmware, const DownloadChoices& choices,
                             DownloadWindows& windows);

// The Upload button: reads the flash of one radio into the file. True when that is done.
bool UploadFirmware(Firmware& firmware, const std::string& full_name, DownloadWindows& windows);

}  // namespace zep::firmware
