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

// Reads who the radio is, then the file unless it is given.
bool ProgramFile(RadioDb& db, ReadWriteView& view, const std::string& path, const DataFile* file) {
  if (!ReadIdentityForTransfer(db)) return false;
  tl::expected<DataFile, services::Problem> own_file;
  if (file == nullptr) {
    own_file = ReadDataFile(path);
    if (!own_file) return Refuse(db.job, own_file.error());
    file = &*own_file;
  }
  return CheckFileAgainstRadio(db, *file) && WriteItems(db, view, *file);
}

// The file is given, or read from its path.
Outcome Program(RadioDb& db, ReadWriteView& view, const std::string& path, const DataFile* file) {
  link::Job& job = db.job;
  job.TransferMode = link::Transfer::kProgram;
  view.SetCaption(NLSFmt(job.session, "Programming Radio"));
  db.data_file = path;
  db.writing_begun = false;
  const bool complete = ProgramFile(db, view, path, file);
  CloseRadio(db.job, view);
  if (!complete && db.writing_begun) {
    NLSMsgBox(
        job.session,
        NLSFmt(job.session,
               "The radio may hold only part of the data now. Please program %0:s again.", {path}),
        {.icon = services::Icon::kCritical});
  }
  return job.PartEnded(complete);
}

}  // namespace

Outcome ReadRadio(RadioDb& db, ReadWriteView& view) {
  link::Job& job = db.job;
  job.TransferMode = link::Transfer::kRead;
  view.SetCaption(NLSFmt(job.session, "Reading Radio"));
  db.data_file.clear();
  db.calibration_file.clear();
  db.data = {};
  db.calibration = {};
  ReadFiles files;
  const bool begun = ReadIdentityForTransfer(db) && OpenReadFiles(db, files);
  const bool complete = begun && ReadAllItems(db, view, files);
  CloseRadio(db.job, view);
  return job.PartEnded(begun && EndReadFiles(db, files, complete));
}

Outcome ProgramRadio(RadioDb& db, ReadWriteView& view, const std::string& file) {
  return Program(db, view, file, nullptr);
}

Outcome ProgramRadio(RadioDb& db, ReadWriteView& view, const DataFile& file) {
  return Program(db, view, file.Path(), &file);
}

std::string SavedText(const RadioDb& db, const std::string& file) {
  return NLSFmt(db.job.session, "The data of radio %0:s is saved in %1:s.",
                {RadioName(db.identity), file});
}

std::string ProgrammedText(const RadioDb& db, const std::string& file) {
  return NLSFmt(db.job.session, "Radio %0:s is programmed with %1:s.",
                {RadioName(db.identity), file});
}

TransferKind TransferKindOf(const DataFile& file) {
  return file.IsCalibration() ? TransferKind::kCalibration : TransferKind::kChosenFile;
}

Outcome ReadSpecification(RadioDb& db) {
  db.job.TransferMode = link::Transfer::kRead;
  const bool complete = ReadRadioIdentity(db.job, IdentityUse::kView, db.identity);
  CloseRadio(db.job);
  return db.job.PartEnded(complete);
}

}  // namespace zep::radiodb
