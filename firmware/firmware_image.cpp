#include "firmware/firmware_image.h"

#include <utility>
#include <vector>

#include "firmware/firmware.h"
#include "firmware/transfer_engine.h"
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

FlashSize FlashSizeOf(std::size_t file_size) {
  if (file_size == 131072) return FlashSize::k1Mbit;
  if (file_size == 262144) return FlashSize::k2Mbit;
  return FlashSize::kNone;
}

MicroType MicroTypeOf(std::string_view contents) {
  const std::string_view area = contents.substr(kMicroAreaStart, kMicroAreaLength);
  const bool all_ff = area.find_first_not_of('\xFF') == std::string_view::npos;
  return all_ff ? MicroType::kE1 : MicroType::kA1;
}

void Refuse(FirmwareImage& image, ImageProblem problem, platform::SystemError error) {
  image.problem = problem;
  image.error = std::move(error);
}

// The error of reading more than an image file of this size holds.
platform::SystemError InputPastEndOfFile(const std::string& file, std::uint64_t size) {
  platform::SystemError error = WrongSize(file, size);
  error.number = kInputPastEndOfFile;
  error.description = "Input past end of file";
  return error;
}

void ReadContents(FirmwareImage& image) {
  using platform::Advice;
  const std::string& file = image.file;
  if (platform::IsFolder(file))
    return Refuse(image, ImageProblem::kFolder, WithAdvice({}, Advice::kIsFolder, {file}));
  if (!platform::FileExists(file))
    return Refuse(image, ImageProblem::kMissing, WithAdvice({}, Advice::kFileMissing, {file}));
  platform::FileContents contents = platform::ReadWholeFile(file);
  if (contents.error) {
    return Refuse(image, ImageProblem::kUnreadable, Unreadable(std::move(contents.error), file));
  }
  image.bytes = std::move(contents.bytes);
}

// What the two digits behind the marker say.
void TakeModelCode(FirmwareImage& image, std::string_view code) {
  image.model_code = code;
  const auto model = radiodb::FindRadioModel(code);
  image.radio_model = model ? model->tier : 0;
  image.radio_type = radiodb::ReturnTypeStringFromEnum(code[1] - '0');
}

void Inspect(FirmwareImage& image) {
  const std::string_view contents = image.bytes;
  const std::uint64_t size = contents.size();
  if (size < kSearchStart + kSearchWindow)
    return Refuse(image, ImageProblem::kTooShort, InputPastEndOfFile(image.file, size));
  image.micro_type = MicroTypeOf(contents);
  image.flash_size = FlashSizeOf(size);

  const std::optional<std::int32_t> position = FindMarkerInBuffer(
      std::span<const char, kSearchWindow>(contents.data() + kSearchStart, kSearchWindow), kMarker);
  if (!position) return Refuse(image, ImageProblem::kCutMarker, SubscriptOutOfRange(image.file));
  if (*position == 0) return Refuse(image, ImageProblem::kNoMarker, NoMarker(image.file));

  const std::string_view identity =
      contents.substr(kSearchStart + static_cast<std::size_t>(*position) - 1, kIdentityLength);
  if (identity.size() < kIdentityLength)
    return Refuse(image, ImageProblem::kTooShort, InputPastEndOfFile(image.file, size));
  TakeModelCode(image, identity.substr(kMarker.size(), 2));
  if (image.flash_size == FlashSize::kNone)
    Refuse(image, ImageProblem::kWrongSize, WrongSize(image.file, size));
}

void RefuseRadio(link::Job& job, std::string_view text) {
  NLSMsgBox(job.session, text, {.icon = Icon::kCritical});
  job.SetDownloadError(Failure::kRefused);
}

}  // namespace

SharedImage ReadFirmwareImage(const std::string& file) {
  auto image = std::make_shared<FirmwareImage>();
  image->file = file;
  ReadContents(*image);
  if (image->IsUsable()) Inspect(*image);
  return image;
}

std::string ImageProblemText(const Session& session, const FirmwareImage& image) {
  return NLSFmt(session, image.error.advice, image.error.advice_arguments);
}

void ChooseImageFile(ChosenImage& image, std::string_view file) {
  image.BinaryFilePath = services::FolderOf(file);
  image.BinaryFileName = services::FileTitleOf(file);
}

bool IsForModel(Session& session, const ChosenImage& image, int tier) {
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

void AskToTurnOn(Session& session, const ChosenImage& image) {
  if (!radiodb::SwitchesOffAfterDownload(image.FirmwareRadioModel)) return;
  NLSMsgBox(session, "Please turn radio on so data may be programmed.",
            {.notice = services::Notice::kAwaitsAction});
}

bool CheckForValidFile(Session& session, ChosenImage& image) {
  return CheckForValidFile(session, image, ReadFirmwareImage(image.FullName()));
}

bool CheckForValidFile(Session& session, ChosenImage& image, SharedImage contents) {
  image.contents = std::move(contents);
  const FirmwareImage& file = *image.contents;
  if (file.error) {
    ReportError(session, file.error, "CheckForValidFile");
    return false;
  }
  if (!file.model_code.empty()) {
    if (file.radio_model == 0) radiodb::LookUpRadioModel(session, file.model_code);
    image.FirmwareRadioModel = file.radio_model;
    image.FirmwareRadioType = file.radio_type;
  }
  if (file.problem == ImageProblem::kWrongSize) {
    NLSMsgBox(session,
              NLSFmt(session, "File size: %0:s incorrect", {std::to_string(file.bytes.size())}));
    return false;
  }
  // Nothing is left to read of a file that ends with the search window.
  const bool at_its_end = file.bytes.size() == kSearchStart + kSearchWindow;
  if (file.micro_type != MicroType::kUnknown && !at_its_end)
    image.FirmwareMicroType = file.micro_type;
  if (!file.IsUsable()) return false;
  image.FirmwareFlashSize = file.flash_size;
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

void VerifyFlashFile(TransferRun& run) {
  link::Job& job = run.job;
  const ChosenImage& image = run.firmware.image;
  bool unknown_flash = false;
  for (const int port : link::kAllPorts) {
    const PortFacts& radio = run.Facts(port);
    if (image.FirmwareMicroType == MicroType::kA1 && radio.micro == MicroType::kE1)
      RefuseRadio(job, NLSText("You cannot program an A1 file into a E1 radio."));
    if (radio.flash.Size == FlashSize::k1Mbit && image.FirmwareFlashSize == FlashSize::k2Mbit)
      RefuseRadio(job, NLSText("You cannot load a 2 megabit file into a 1 megabit flash."));
    if (radio.flash.Size == FlashSize::kUnknown) unknown_flash = true;
    if (!job.session.in_house && image.FirmwareRadioModel >= kFirstModelWithE1 &&
        radio.micro == MicroType::kA1) {
      RefuseRadio(
          job, NLSText("The version of firmware you have selected to download is incompatible with "
                       "the radio "
                       "hardware - the firmware will not run on this radio's microprocessor."));
    }
  }
  if (!job.DownloadError && unknown_flash)
    RefuseRadio(job, NLSText("A flash device is not recognised."));
}

}  // namespace zep::firmware
