#include "firmware/download.h"

#include <algorithm>
#include <optional>

#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "platform/files.h"
#include "radiodb/data_files.h"
#include "services/messages.h"
#include "services/paths.h"
#include "services/resource_ids.h"

namespace zep::firmware {
namespace {

using link::Link;
using radiodb::RadioDb;
using radiodb::TransferKind;
using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;
using services::Session;
using services::Transfer;

// Tells a trunked radio that its firmware is new. It does not answer.
constexpr std::string_view kTrunkedRecord = "\rw4F80010000\r";

bool DownloadFirmware(Firmware& firmware, DownloadWindows& windows) {
  firmware.link.session.TransferMode = Transfer::kProgram;
  windows.TransferFirmware(firmware);
  return firmware.link.session.DownloadSucceeded && !firmware.link.session.Stopped();
}

// Saves the radio's data under its default name. Its full name; nothing when it is not saved.
std::optional<std::string> SaveData(Firmware& firmware, RadioDb& db, DownloadWindows& windows) {
  firmware.link.session.TransferMode = Transfer::kRead;
  db.transfer_kind = TransferKind::kAutoSave;
  if (!windows.ReadRadioData(db) || firmware.link.session.Stopped()) return std::nullopt;
  return db.data_file;
}

bool WriteDataBack(Firmware& firmware, RadioDb& db, const std::string& saved,
                   DownloadWindows& windows) {
  Session& session = firmware.link.session;
  AskToTurnOn(session, firmware.image);
  session.TransferMode = Transfer::kProgram;
  return windows.ProgramRadioData(db, saved);
}

bool WriteTrunkedRecord(Link& link) {
  Session& session = link.session;
  if (!InitialiseComms(link)) return false;
  SelectBaudRate(link, 9600);
  session.ReportRadioErrors = services::ReportErrors::kSilent;
  PutActiveCommsInProgMode(link);
  session.ReportRadioErrors = services::ReportErrors::kShow;
  if (session.Stopped()) return false;
  for (const int port : link::kAllPorts) SendStringToSpecificComms(link, kTrunkedRecord, port);
  SendCaretToActiveComms(link);
  DrainOutput(link);
  return true;
}

// What a trunked radio needs to know of its new firmware.
bool RecordDownload(Firmware& firmware) {
  return firmware.image.FirmwareRadioType != "Trunked" || WriteTrunkedRecord(firmware.link);
}

// Whether the flash loader ran in a radio, so that its firmware may not be what it was.
bool HasReachedRadio(const Firmware& firmware) {
  return std::ranges::any_of(firmware.labels,
                             [](const SlotLabels& labels) { return !labels.micro.empty(); });
}

// The download with the radio's data saved before and written back after it.
bool DownloadAroundData(Firmware& firmware, RadioDb& db, DownloadWindows& windows) {
  Session& session = firmware.link.session;
  const std::optional<std::string> saved = SaveData(firmware, db, windows);
  if (!saved) return false;
  if (!IsForModel(session, firmware.image, db.identity.tier)) {
    session.KeepCause(Failure::kRefused);
    return false;
  }
  const bool downloaded = DownloadFirmware(firmware, windows);
  const bool written_back = downloaded && WriteDataBack(firmware, db, *saved, windows);
  if (!written_back && HasReachedRadio(firmware)) radiodb::TellOfSavedFile(session, *saved);
  // Data that the new firmware refuses is no reason to leave the radio without its record.
  return downloaded && !session.Stopped() && RecordDownload(firmware) && written_back;
}

bool ProgramDataFile(RadioDb& db, const DownloadChoices& choices, DownloadWindows& windows) {
  Session& session = db.link.session;
  const std::string file = services::PathOf(choices.DataFilePath, choices.DataFileName);
  const services::Answer answer =
      NLSMsgBox(session, NLSFmt(session, "Program default data file: ") + file,
                {.icon = Icon::kQuestion, .buttons = services::Buttons::kYesNo});
  if (answer != services::Answer::kYes) return true;
  session.TransferMode = Transfer::kProgram;
  db.transfer_kind = TransferKind::kChosenFile;
  return windows.ProgramRadioData(db, file) && !session.Stopped();
}

std::string ReadText(const Session& session, std::string_view name,
                     const std::string& default_value) {
  return session.settings.AppGetUserSetting(session.settings.OwnType(), name, default_value);
}

}  // namespace

DownloadChoices LoadDownloadChoices(const Session& session) {
  const std::string folder = services::AppMakePath(session.paths.application_folder, "Data Files");
  DownloadChoices choices;
  choices.BinaryFileName = ReadText(session, "BinaryFileName", "");
  choices.BinaryFilePath = services::WithSeparator(ReadText(session, "BinaryFilePath", folder));
  choices.DataFileName = ReadText(session, "DataFileName", "");
  choices.DataFilePath = services::WithSeparator(ReadText(session, "DataFilePath", folder));
  return choices;
}

void SaveDownloadChoices(Session& session, const DownloadChoices& choices) {
  const auto save = [&session](std::string_view name, const std::string& value) {
    session.settings.AppSaveUserSetting(session.settings.OwnType(), name, value);
  };
  save("BinaryFileName", choices.BinaryFileName);
  save("BinaryFilePath", services::WithSeparator(choices.BinaryFilePath));
  save("DataFileName", choices.DataFileName);
  save("DataFilePath", services::WithSeparator(choices.DataFilePath));
}

bool CheckChosenImage(Firmware& firmware, const DownloadChoices& choices) {
  Session& session = firmware.link.session;
  ImageFile& image = firmware.image;
  if (choices.BinaryFileName.empty()) {
    image.BinaryFileName.clear();
    return Refuse(session, NLSText("Please select a valid file to down load."), Failure::kFile);
  }
  ChooseImageFile(image, services::PathOf(choices.BinaryFilePath, choices.BinaryFileName));
  if (CheckForValidFile(session, image)) return true;
  std::string text = NLSFmt(session, "The selected file is not valid. Please select another file.");
  // The reason, unless the user was told of it just now.
  const ImageInspection inspection = InspectImage(image.FullName());
  if (!inspection.error && inspection.problem != ImageProblem::kWrongSize)
    text += "\n" + ImageProblemText(session, inspection);
  return Refuse(session, text, Failure::kFile);
}

bool BrowseBinary(Firmware& firmware, DownloadChoices& choices) {
  Session& session = firmware.link.session;
  const std::optional<std::string> file = session.user.AskOpenFile(
      {.title = NLSFmt(session, "Select Firmware File to Download"),
       .filter = NLSFmt(session, session.strings.Get(services::kResFirmwareFileFilter)),
       .folder = choices.BinaryFilePath,
       .name = choices.BinaryFileName});
  if (!file) return false;
  choices.BinaryFileName = services::FileTitleOf(*file);
  choices.BinaryFilePath = services::FolderOf(*file);
  SaveDownloadChoices(session, choices);
  CheckChosenImage(firmware, choices);
  return true;
}

bool OffersAutoSave(Link& link) { return CountActivePorts(link) == 1; }

bool DownloadFirmwareAndData(Firmware& firmware, RadioDb& db, const DownloadChoices& choices,
                             DownloadWindows& windows) {
  Link& link = firmware.link;
  const link::Job job(link);
  if (!InitialiseComms(link)) return false;
  ClearInputBuffers(link);
  if (!CheckChosenImage(firmware, choices)) return false;
  if (choices.auto_save) return DownloadAroundData(firmware, db, windows);
  if (!DownloadFirmware(firmware, windows) || !RecordDownload(firmware)) return false;
  return choices.DataFileName.empty() || ProgramDataFile(db, choices, windows);
}

bool UploadFirmware(Firmware& firmware, const std::string& file, DownloadWindows& windows) {
  const link::Job job(firmware.link);
  ChooseImageFile(firmware.image, file);
  firmware.link.session.TransferMode = Transfer::kRead;
  windows.TransferFirmware(firmware);
  return firmware.link.session.DownloadSucceeded;
}

}  // namespace zep::firmware
