// Which firmware image a radio needs: decided by the family of the application, the radio's model
// and its firmware version; then found on the disk and checked.
#pragma once

#include <string>
#include <string_view>

#include "firmware/image_file.h"
#include "radiodb/radio_db.h"
#include "services/session.h"
#include "upgrade/upgrade_log.h"
#include "upgrade/upgrade_view.h"

namespace zep::upgrade {

// Stand in place of a file name.
inline constexpr std::string_view kUnsupportedMark = "%UNSUPPORTED%";
inline constexpr std::string_view kUpToDateMark = "%UPTODATE%";

// The image's file name or one of the two marks. family is the application's identity, compared
// exactly, and only "Vorn PMR II" and "Torvik" have images; model is the model tier; version is the
// firmware version as the radio reports it ("0303"), compared exactly.
std::string SelectFirmware(std::string_view family, int model, std::string_view version);

enum class LocateResult {
  kFailed = 0,    // radio not read, not supported, file not located or corrupt
  kUpToDate = 1,  // nothing to be done
  kSelected = 2,  // the image is chosen and valid
};

// What was selected last, and the folder in which the file is looked for first.
struct FirmwareSelection {
  std::string file;    // or one of the marks
  std::string folder;  // of the application, with its separator
  // A file to take in place of the selected one, by its full name; empty: none.
  std::string given_file;
};

// Reads who the radio is, selects its firmware and finds the file, which becomes the chosen image.
// Every outcome has its line in the log; session.failure tells why it failed.
LocateResult LocateFirmwareFile(radiodb::RadioDb& db, UpgradeLog& log, UpgradeView& view,
                                FirmwareSelection& selection, firmware::ImageFile& image);

}  // namespace zep::upgrade
