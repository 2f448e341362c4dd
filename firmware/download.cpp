#include "firmware/download.h"

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
using link::Transfer;
using radiodb::RadioDb;
using radiodb::TransferKind;
using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;
using services::Session;

// Tells a trunked radio that its firmware is new. It does not answer.
constexpr std::string_view kTrunkedRecord = "\rw4F80010000\r";

// One press of the Download button.
struct DownloadRun {
  DownloadRun(const DownloadWork& the_work, const DownloadChoices& the_choices)
      : work(the_work), choices(the_choices) {}

  const DownloadWork& work;
  const DownloadChoices& choices;
  link::Job job{work.link};
  RadioDb db{job, work.radio};
  TransferResult transfer;

  Session& session = job.session;
};

bool DownloadFirmware(DownloadRun& run) {
  run.transfer = run.work.windows.TransferFirmware(run.job, run.work.firmware, Transfer::kProgram);
  return run.transfer.succeeded && !run.job.Stopped();
}

// Saves the radio's data under its default name. Its full name; nothing when it is not saved.
std::optional<std::string> SaveData(DownloadRun& run) {
  run.db.transfer_kind = TransferKind::kAutoSave;
  if (!run.work.windows.ReadRadioData(run.db).Done()) return std::nullopt;
  return run.db.data_file;
}

bool WriteDataBack(DownloadRun& run, const std::string& saved) {
  AskToTurnOn(run.session, run.work.firmware.image);
  return run.work.windows.ProgramRadioData(run.db, saved).Done();
}

bool WriteTrunkedRecord(link::Job& job) {
  if (!InitialiseComms(job)) return false;
  SelectBaudRate(job, 9600);
  job.ReportRadioErrors = link::ReportErrors::kSilent;
  PutActiveCommsInProgMode(job);
  job.ReportRadioErrors = link::ReportErrors::kShow;
  if (job.Stopped()) return false;
  for (const int port : link::kAllPorts) SendStringToSpecificComms(job, kTrunkedRecord, port);
  SendCaretToActiveComms(job);
  DrainOutput(job);
  return true;
}

// What a trunked radio needs to know of its new firmware.
bool RecordDownload(DownloadRun& run) {
  return run.work.firmware.image.FirmwareRadioType != "Trunked" || WriteTrunkedRecord(run.job);
}

// The download with the radio's data saved before and written back after it.
bool DownloadAroundData(DownloadRun& run) {
  const std::optional<std::string> saved = SaveData(run);
  if (!saved) return false;
  if (!IsForModel(run.session, run.work.firmware.image, run.db.identity.tier)) {
    run.job.KeepCause(Failure::kRefused);
    return false;
  }
  const bool downloaded = DownloadFirmware(run);
  const bool written_back = downloaded && WriteDataBack(run, *saved);
  if (!written_back && run.transfer.HasReachedRadio())
    radiodb::TellOfSavedFile(run.session, *saved);
  // Data that the new firmware refuses is no reason to leave the radio without its record.
  return downloaded && !run.job.Stopped() && RecordDownload(run) && written_back;
}

bool ProgramDataFile(DownloadRun& run) {
  const std::string file = services::PathOf(run.choices.DataFilePath, run.choices.DataFileName);
  const services::Answer answer =
      NLSMsgBox(run.session, NLSFmt(run.session, "Program default data file: ") + file,
                {.icon = Icon::kQuestion, .buttons = services::Buttons::kYesNo});
  if (answer != services::Answer::kYes) return true;
  run.db.transfer_kind = TransferKind::kChosenFile;
  return run.work.windows.ProgramRadioData(run.db, file).Done();
}

bool DownloadAll(DownloadRun& run) {
  if (!InitialiseComms(run.job)) return false;
  ClearInputBuffers(run.work.link);
  if (!CheckChosenImage(run.session, run.work.firmware.image, run.choices)) {
    run.job.KeepCause(Failure::kFile);
    return false;
  }
  if (run.choices.auto_save) return DownloadAroundData(run);
  if (!DownloadFirmware(run) || !RecordDownload(run)) return false;
  return run.choices.DataFileName.empty() || ProgramDataFile(run);
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

bool CheckChosenImage(Session& session, ChosenImage& image, const DownloadChoices& choices) {
  const auto refuse = [&session](const std::string& text) {
    NLSMsgBox(session, text, {.icon = Icon::kCritical});
    return false;
  };
  if (choices.BinaryFileName.empty()) {
    image.BinaryFileName.clear();
    return refuse(NLSFmt(session, "Please select a valid file to down load."));
  }
  ChooseImageFile(image, services::PathOf(choices.BinaryFilePath, choices.BinaryFileName));
  const SharedImage contents =
      choices.image != nullptr ? choices.image : ReadFirmwareImage(image.FullName());
  if (CheckForValidFile(session, image, contents)) return true;
  std::string text = NLSFmt(session, "The selected file is not valid. Please select another file.");
  // The reason, unless the user was told of it just now.
  if (!contents->error && contents->problem != ImageProblem::kWrongSize)
    text += "\n" + ImageProblemText(session, *contents);
  return refuse(text);
}

bool BrowseBinary(Session& session, ChosenImage& image, DownloadChoices& choices) {
  const std::optional<std::string> file = session.user.AskOpenFile(
      {.title = NLSFmt(session, "Select Firmware File to Download"),
       .filter = NLSFmt(session, session.strings.Get(services::kResFirmwareFileFilter)),
       .folder = choices.BinaryFilePath,
       .name = choices.BinaryFileName});
  if (!file) return false;
  choices.BinaryFileName = services::FileTitleOf(*file);
  choices.BinaryFilePath = services::FolderOf(*file);
  SaveDownloadChoices(session, choices);
  choices.image = ReadFirmwareImage(*file);
  CheckChosenImage(session, image, choices);
  return true;
}

bool OffersAutoSave(Link& link) {
  link::CheckCommPorts(link, false);
  return link::ActivePorts(link.CommStates) == 1;
}

services::Outcome DownloadFirmwareAndData(const DownloadWork& work,
                                          const DownloadChoices& choices) {
  DownloadRun run(work, choices);
  const bool done = DownloadAll(run);
  return run.job.Ended(done);
}

services::Outcome UploadFirmware(const DownloadWork& work, const std::string& file) {
  link::Job job(work.link);
  ChooseImageFile(work.firmware.image, file);
  return work.windows.TransferFirmware(job, work.firmware, Transfer::kRead).outcome;
}

}  // namespace zep::firmware
