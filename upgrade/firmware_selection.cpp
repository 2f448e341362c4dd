#include "upgrade/firmware_selection.h"

#include <algorithm>
#include <span>

#include "platform/files.h"
#include "radiodb/read_write_radio.h"
#include "services/locate_file.h"
#include "services/messages.h"
#include "services/paths.h"
#include "services/resource_ids.h"

namespace zep::upgrade {
namespace {

using services::Failure;
using services::NLSFmt;
using services::NLSMsgBox;

using Versions = std::span<const std::string_view>;

enum class Model { k1, k2, k3, kOther };

Model ModelOfTier(int tier) {
  switch (radiodb::FirstGeneration(tier)) {
    case 1:
      return Model::k1;
    case 2:
      return Model::k2;
    case 3:
      return Model::k3;
    default:
      return Model::kOther;
  }
}

// Vorn PMR II: images that convert the database, for some versions of some models.
struct ConversionImages {
  Versions versions;
  std::string_view model_3;
  std::string_view model_1;
  std::string_view model_2;
  std::string_view other;
};

constexpr std::string_view kVersions31[] = {"0303", "0304", "0313", "0314", "0315", "0316"};
// Kept: 0334 still needs a conversion here; 0317 and 0335 count as current.
constexpr std::string_view kVersions43[] = {"0323", "0324", "0325", "0326", "0327",
                                            "0328", "0329", "0330", "0333", "0334"};
constexpr std::string_view kCurrent[] = {"0335", "0317"};

constexpr ConversionImages kConversionImages[] = {
    {kVersions31, "QPP31CNV.BIN", kUnsupportedMark, kUnsupportedMark, kUnsupportedMark},
    {kVersions43, kUnsupportedMark, "QOP43CNV.BIN", "QOP63CNV.BIN", kUnsupportedMark},
    {kCurrent, kUpToDateMark, kUpToDateMark, kUpToDateMark, kUpToDateMark},
};

// Torvik: an image for each phase, the product code before its name.
struct PhaseImage {
  Versions versions;
  std::string_view name;
};

constexpr std::string_view kPhaseI[] = {"0107", "0108", "0109", "0116",
                                        "0122", "0123", "0124", "0125"};
constexpr std::string_view kPhaseII[] = {"0303", "0304", "0313", "0314", "0315", "0316"};
// Kept: 0333 and 0335 are in no phase of this family.
constexpr std::string_view kPhaseIII[] = {"0323", "0324", "0325", "0326",
                                          "0327", "0328", "0329", "0330"};
constexpr std::string_view kEndsOfPhases[] = {"0126", "0317", "0334"};

constexpr PhaseImage kPhaseImages[] = {
    {kPhaseI, "PhaseI.bin"},
    {kPhaseII, "PhaseII.bin"},
    {kPhaseIII, "PhaseIII.bin"},
    {kEndsOfPhases, kUpToDateMark},
};

template <typename Row>
const Row* FindRow(std::span<const Row> rows, std::string_view version) {
  const auto row = std::find_if(rows.begin(), rows.end(), [version](const Row& candidate) {
    return std::find(candidate.versions.begin(), candidate.versions.end(), version) !=
           candidate.versions.end();
  });
  return row == rows.end() ? nullptr : &*row;
}

std::string_view SelectConversionImage(Model model, std::string_view version) {
  const auto* row = FindRow(std::span<const ConversionImages>(kConversionImages), version);
  if (row == nullptr) return kUnsupportedMark;
  switch (model) {
    case Model::k1:
      return row->model_1;
    case Model::k2:
      return row->model_2;
    case Model::k3:
      return row->model_3;
    case Model::kOther:
      break;
  }
  return row->other;
}

std::string_view ProductCode(Model model) {
  switch (model) {
    case Model::k1:
      return "PP11";
    case Model::k2:
      return "PP21";
    case Model::k3:
      return "PP31";
    case Model::kOther:
      break;
  }
  return "";
}

std::string SelectPhaseImage(Model model, std::string_view version) {
  const auto* row = FindRow(std::span<const PhaseImage>(kPhaseImages), version);
  if (row == nullptr) return std::string(kUnsupportedMark);
  if (row->name == kUpToDateMark) return std::string(kUpToDateMark);
  return std::string(ProductCode(model)) + std::string(row->name);
}

}  // namespace

std::string SelectFirmware(std::string_view family, int model, std::string_view version) {
  if (family == "Vorn PMR II") {
    return std::string(SelectConversionImage(ModelOfTier(model), version));
  }
  if (family == "Torvik") return SelectPhaseImage(ModelOfTier(model), version);
  return std::string(kUnsupportedMark);
}

LocateResult LocateFirmwareFile(radiodb::RadioDb& db, UpgradeLog& log, UpgradeView& view,
                                FirmwareSelection& selection, firmware::ImageFile& image) {
  services::Session& session = db.link.session;
  const auto fail = [&](std::string_view line, Failure why) {
    log.Log(line);
    session.KeepCause(why);
    return LocateResult::kFailed;
  };
  log.Log("Locating firmware file");
  if (!radiodb::ReadSpecification(db)) {
    return fail("Could not read radio configuration", Failure::kNoAnswer);
  }
  selection.file = SelectFirmware(session.strings.Get(services::kResIdentity), db.identity.tier,
                                  db.identity.software_version);
  if (selection.file == kUnsupportedMark) {
    NLSMsgBox(session, "Unsupported firmware version in radio. Please upgrade manually.");
    return fail("Unsupported firmware version in the radio please upgrade manually",
                Failure::kRefused);
  }
  if (selection.file == kUpToDateMark) {
    NLSMsgBox(session, "Firmware already up-to-date. Upgrade not required.");
    log.Log("Firmware is up-to-date. Upgrade not required");
    return LocateResult::kUpToDate;
  }

  selection.folder = services::WithSeparator(session.paths.application_folder);
  firmware::ChooseImageFile(image, selection.given_file.empty() ? selection.folder + selection.file
                                                                : selection.given_file);
  view.ShowFirmwareFile(image.FullName());
  if (!GetFile(session, image.BinaryFilePath, image.BinaryFileName,
               services::FindTitle(session, image.BinaryFileName))) {
    return fail("Firmware file could not be located", Failure::kFile);
  }
  view.ShowFirmwareFile(image.FullName());
  if (!firmware::CheckForValidFile(session, image)) {
    NLSMsgBox(session, "Corrupt firmware file to download.");
    return fail("Firmware file is corrupt", Failure::kFile);
  }
  if (!firmware::IsForModel(session, image, db.identity.tier)) {
    return fail("The firmware file is for another model", Failure::kRefused);
  }
  log.Log("Firmware file selected: " + image.FullName());
  return LocateResult::kSelected;
}

}  // namespace zep::upgrade
