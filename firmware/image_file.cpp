#include "firmware/image_file.h"

#include <utility>
#include <vector>

#include "firmware/firmware.h"
#include "platform/advice.h"
#include "platform/files.h"
#include "radiodb/radio_models.h"
#include "services/messages.h"
#include "services/paths.h"

namespace zep::firmware {
namespace {

using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;
using services::Session;

constexpr std::string_view kMarker = "ZEP-xx";
constexpr std::size_t kIdentityLength = 9;  // marker, model code, a spare byte
constexpr std::size_t kSearchStart = 0x7FFF;
constexpr std::size_t kMicroAreaStart = 0xFF;
constexpr std::size_t kMicroAreaLength = 128;

constexpr std::int32_t kMicroA1 = 1;
constexpr std::int32_t kMicroE1 = 2;

// Models from this tier on were never made with an A1 micro.
constexpr std::int32_t kFirstModelWithE1 = 4;

// The usual numbers and words of run-time errors.
constexpr int kSubscriptOutOfRange = 9;
constexpr int kInputPastEndOfFile = 62;

platform::SystemError ContentsError(std::string_view advice, std::vector<std::string> arguments) {
  platform::SystemError error;
  error.advice = advice;
  error.advice_arguments = std::move(arguments);
  return error;
}

platform::SystemError WrongSize(const std::string& file, std::uint64_t size) {
  if (size == 0)
    return ContentsError(NLSText("The file %0:s is empty. Please choose another file."), {file});
  return ContentsError(NLSText("The file %0:s has %1:s bytes, but a firmware file has 131072 or "
                               "262144. Please choose another file."),
                       {file, std::to_string(size)});
}

platform::SystemError NoMarker(const std::string& file) {
  return ContentsError(NLSText("The file %0:s does not say which radio it is for (there is no "
                               "\"ZEP-xx\" in it), so it is no firmware file. Please choose "
                               "another file."),
                       {file});
}

platform::SystemError SubscriptOutOfRange(const std::string& file) {
  platform::SystemError error = NoMarker(file);
  error.number = kSubscriptOutOfRange;
  error.description = "Subscript out of range";
  return error;
}

platform::SystemError Unreadable(platform::SystemError error, const std::string& file) {
  if (!error.advice.empty()) return error;
  error.advice = NLSText("The file %0:s cannot be read. Please choose another file.");
  error.advice_arguments = {file};
  return error;
}

std::int32_t FlashSizeOf(std::size_t file_size) {
  if (file_size == 131072) return kFlash1Mbit;
  if (file_size == 262144) return kFlash2Mbit;
  return 0;
}

std::int32_t MicroTypeOf(std::string_view contents) {
  const std::string_view area = contents.substr(kMicroAreaStart, kMicroAreaLength);
  const bool all_ff = area.find_first_not_of('\xFF') == std::string_view::npos;
  return all_ff ? kMicroE1 : kMicroA1;
}

ImageInspection Unusable(ImageInspection inspection, ImageProblem problem,
                         platform::SystemError error) {
  inspection.problem = problem;
  inspection.error = std::move(error);
  return inspection;
}

ImageInspection InspectContents(std::string_view contents, const std::string& file) {
  ImageInspection inspection;
  const std::uint64_t size = inspection.size = contents.size();
  if (size < kSearchStart + kSearchWindow)
    return Unusable(inspection, ImageProblem::kTooShort, InputPastEndOfFile(file, size));
  inspection.micro_type = MicroTypeOf(contents);
  inspection.flash_size = FlashSizeOf(size);

  const std::optional<std::int32_t> position = FindMarkerInBuffer(
      std::span<const char, kSearchWindow>(contents.data() + kSearchStart, kSearchWindow), kMarker);
  if (!position) return Unusable(inspection, ImageProblem::kCutMarker, SubscriptOutOfRange(file));
  if (*position == 0) return Unusable(inspection, ImageProblem::kNoMarker, NoMarker(file));

  const std::string_view identity =
      contents.substr(kSearchStart + static_cast<std::size_t>(*position) - 1, kIdentityLength);
  if (identity.size() < kIdentityLength)
    return Unusable(inspection, ImageProblem::kTooShort, InputPastEndOfFile(file, size));
  inspection.model_code = identity.substr(kMarker.size(), 2);
  const auto model = radiodb::FindRadioModel(inspection.model_code);
  inspection.radio_model = model ? model->tier : 0;
  inspection.radio_type = radiodb::ReturnTypeStringFromEnum(inspection.model_code[1] - '0');
  if (inspection.flash_size == 0)
    return Unusable(inspection, ImageProblem::kWrongSize, WrongSize(file, size));
  return inspection;
}

void RefuseImage(Session& session, std::string_view text) {
  NLSMsgBox(session, text, {.icon = Icon::kCritical});
  session.SetDownloadError(Failure::kRefused);
}

}  // namespace

platform::SystemError InputPastEndOfFile(const std::string& file, std::uint64_t size) {
  platform::SystemError error = WrongSize(file, size);
  error.number = kInputPastEndOfFile;
  error.description = "Input past end of file";
  return error;
}

void ChooseImageFile(ImageFile& image, std::string_view file) {
  image.BinaryFilePath = services::FolderOf(file);
  image.BinaryFileName = services::FileTitleOf(file);
}

ImageInspection InspectImage(const std::string& file) {
  using platform::Advice;
  if (platform::IsFolder(file))
    return Unusable({}, ImageProblem::kFolder, WithAdvice({}, Advice::kIsFolder, {file}));
  if (!platform::FileExists(file))
    return Unusable({}, ImageProblem::kMissing, WithAdvice({}, Advice::kFileMissing, {file}));
  platform::FileContents contents = platform::ReadWholeFile(file);
  if (contents.error)
    return Unusable({}, ImageProblem::kUnreadable, Unreadable(std::move(contents.error), file));
  return InspectContents(contents.bytes, file);
}

std::string ImageProblemText(const Session& session, const ImageInspection& inspection) {
  return NLSFmt(session, inspection.error.advice, inspection.error.advice_arguments);
}

bool IsForModel(Session& session, const ImageFile& image, int tier) {
  if (radiodb::FirstGeneration(image.FirmwareRadioModel) == radiodb::FirstGeneration(tier)) {
    return true;
  }
  const std::string question =
      NLSFmt(session,
             "The firmware file %0:s is for a %1:s, but the radio is a %2:s. Download it "
             "nevertheless?",
             {image.FullName(), radiodb::AppGetRadioModel(session, image.FirmwareRadioModel),
              radiodb::AppGetRadioModel(session, tier)});
  return NLSMsgBox(
             session, question,
             {.icon = Icon::kQuestion, .buttons = services::Buttons::kYesNo, .cautious = true}) ==
         services::Answer::kYes;
}

void AskToTurnOn(Session& session, const ImageFile& image) {
  if (!radiodb::SwitchesOffAfterDownload(image.FirmwareRadioModel)) return;
  NLSMsgBox(session, "Please turn radio on so data may be programmed.",
            {.notice = services::Notice::kAwaitsAction});
}

bool CheckForValidFile(Session& session, ImageFile& image) {
  const ImageInspection inspection = InspectImage(image.FullName());
  if (inspection.error) {
    ReportError(session, inspection.error, "CheckForValidFile");
    return false;
  }
  if (!inspection.model_code.empty()) {
    if (inspection.radio_model == 0) radiodb::LookUpRadioModel(session, inspection.model_code);
    image.FirmwareRadioModel = inspection.radio_model;
    image.FirmwareRadioType = inspection.radio_type;
  }
  if (inspection.problem == ImageProblem::kWrongSize) {
    NLSMsgBox(session,
              NLSFmt(session, "File size: %0:s incorrect", {std::to_string(inspection.size)}));
    return false;
  }
  // Nothing is left to read of a file that ends with the search window.
  const bool at_its_end = inspection.size == kSearchStart + kSearchWindow;
  if (inspection.micro_type != 0 && !at_its_end) image.FirmwareMicroType = inspection.micro_type;
  if (inspection.problem != ImageProblem::kNone) return false;
  image.FirmwareFlashSize = inspection.flash_size;
  return true;
}

std::optional<std::int32_t> FindMarkerInBuffer(std::span<const char, kSearchWindow> buffer,
                                               std::string_view pattern) {
  for (std::size_t start = 0; start < buffer.size(); ++start) {
    std::size_t matched = 0;
    while (matched < pattern.size()) {
      if (start + matched == buffer.size()) return std::nullopt;
      if (buffer[start + matched] != pattern[matched]) break;
      ++matched;
    }
    if (matched == pattern.size()) return static_cast<std::int32_t>(start) + 1;
  }
  return 0;
}

void VerifyFlashFile(Firmware& firmware) {
  Session& session = firmware.link.session;
  const ImageFile& image = firmware.image;
  bool unknown_flash = false;
  for (const int slot : link::kAllPorts) {
    const std::string& micro = firmware.Labels(slot).micro;
    const std::int32_t flash = firmware.Flash(slot).Size;
    if (image.FirmwareMicroType == kMicroA1 && micro == "E1")
      RefuseImage(session, NLSText("You cannot program an A1 file into a E1 radio."));
    if (flash == kFlash1Mbit && image.FirmwareFlashSize == kFlash2Mbit)
      RefuseImage(session, NLSText("You cannot load a 2 megabit file into a 1 megabit flash."));
    if (flash == kFlashUnknown) unknown_flash = true;
    if (!session.in_house && image.FirmwareRadioModel >= kFirstModelWithE1 && micro == "A1") {
      RefuseImage(
          session,
          NLSText("The version of firmware you have selected to download is incompatible with "
                  "the radio "
                  "hardware - the firmware will not run on this radio's microprocessor."));
    }
  }
  if (!session.DownloadError && unknown_flash)
    RefuseImage(session, NLSText("A flash device is not recognised."));
}

}  // namespace zep::firmware
