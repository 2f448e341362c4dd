#include "radiodb/read_write_radio.h"

#include <algorithm>

#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "radiodb/data_files.h"
#include "radiodb/identity_text.h"
#include "radiodb/item_records.h"
#include "services/messages.h"

namespace zep::radiodb {
namespace {

using services::Failure;
using services::NLSFmt;
using services::NLSText;
using services::Outcome;
using services::Session;

void CloseRadio(link::Job& job) {
  ReleaseFromProgMode(job);
  CloseAllComms(job.link);
}

void CloseRadio(link::Job& job, ReadWriteView& view) {
  view.ShowStatus(NLSFmt(job.session, "Closing communication ports..."));
  CloseRadio(job);
}

// A radio whose item 0 cannot be read has no identity record, without which a file could never be
// programmed.
bool ReadIdentityForTransfer(RadioDb& db) {
  if (!ReadRadioIdentity(db.job, IdentityUse::kTransfer, db.identity)) return false;
  db.number_of_networks = std::max(1, db.identity.networks);
  db.current_network = 1;
  db.common_dynamic_item_skipped = false;
  if (!db.identity.database_record.empty()) return true;
  return Refuse(db.job,
                NLSText("The identity of this radio (item 00) has an unknown format, so its data "
                        "can neither be saved nor programmed. Please use another version of this "
                        "application."),
                Failure::kRefused);
}

// Ends the files of a read; tells the user of those that are not complete.
bool EndFiles(Session& session, ReadFiles& files, bool complete) {
  if (complete) {
    const bool database = files.database.Finish();
    const bool calibration = files.calibration.Finish();
    if (database && calibration) return true;
  }
  std::string text = files.database.Abandon();
  const std::string calibration = files.calibration.Abandon();
  if (!text.empty() && !calibration.empty()) text += "\n";
  text += calibration;
  if (!text.empty()) NLSMsgBox(session, text, {.icon = services::Icon::kCritical});
  return false;
}

bool ProgramFile(RadioDb& db, ReadWriteView& view, const std::string& path) {
  if (!ReadIdentityForTransfer(db)) return false;
  const std::optional<DataFile> file = ReadDataFile(db.job.session, path);
  if (!file || !CheckFileAgainstRadio(db, *file)) return false;
  return WriteItems(db, view, *file);
}

}  // namespace

Outcome ReadRadio(RadioDb& db, ReadWriteView& view) {
  link::Job& job = db.job;
  job.TransferMode = link::Transfer::kRead;
  view.SetCaption(NLSFmt(job.session, "Reading Radio"));
  db.data_file.clear();
  db.calibration_file.clear();
  ReadFiles files(job);
  const bool complete =
      ReadIdentityForTransfer(db) && OpenReadFiles(db, files) && ReadAllItems(db, view, files);
  CloseRadio(job, view);
  db.database_records = files.database_records;
  db.calibration_records = files.calibration_records;
  return job.Ended(EndFiles(job.session, files, complete));
}

Outcome ProgramRadio(RadioDb& db, ReadWriteView& view, const std::string& file) {
  link::Job& job = db.job;
  job.TransferMode = link::Transfer::kProgram;
  view.SetCaption(NLSFmt(job.session, "Programming Radio"));
  db.data_file = file;
  db.writing_begun = false;
  const bool complete = ProgramFile(db, view, file);
  CloseRadio(job, view);
  if (!complete && db.writing_begun) {
    NLSMsgBox(
        job.session,
        NLSFmt(job.session,
               "The radio may hold only part of the data now. Please program %0:s again.", {file}),
        {.icon = services::Icon::kCritical});
  }
  return job.Ended(complete);
}

std::string SavedText(const RadioDb& db, const std::string& file) {
  return NLSFmt(db.job.session, "The data of radio %0:s is saved in %1:s.",
                {RadioName(db.identity), file});
}

std::string ProgrammedText(const RadioDb& db, const std::string& file) {
  return NLSFmt(db.job.session, "Radio %0:s is programmed with %1:s.",
                {RadioName(db.identity), file});
}

std::optional<TransferKind> TransferKindOf(Session& session, const std::string& file) {
  const std::optional<DataFile> contents = ReadDataFile(session, file);
  if (!contents) return std::nullopt;
  const std::optional<FileIdentity> identity = FindFileIdentity(*contents);
  return identity && identity->is_calibration ? TransferKind::kCalibration
                                              : TransferKind::kChosenFile;
}

Outcome ReadSpecification(RadioDb& db) {
  db.job.TransferMode = link::Transfer::kRead;
  const bool complete = ReadRadioIdentity(db.job, IdentityUse::kView, db.identity);
  CloseRadio(db.job);
  return db.job.Ended(complete);
}

}  // namespace zep::radiodb
