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
using services::Session;

void CloseRadio(link::Link& link) {
  ReleaseFromProgMode(link);
  CloseAllComms(link);
}

void CloseRadio(link::Link& link, ReadWriteView& view) {
  view.ShowStatus(NLSFmt(link.session, "Closing communication ports..."));
  CloseRadio(link);
}

// A radio whose item 0 cannot be read has no identity record, without which a file could never be
// programmed.
bool ReadIdentityForTransfer(RadioDb& db) {
  Session& session = db.link.session;
  if (!ReadRadioIdentity(db.link, IdentityUse::kTransfer, db.identity)) return false;
  db.number_of_networks = std::max(1, db.identity.networks);
  db.current_network = 1;
  db.common_dynamic_item_skipped = false;
  if (!db.identity.database_record.empty()) return true;
  return Refuse(session,
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
  const tl::expected<DataFile, services::Problem> file = ReadDataFile(path);
  if (!file) return Refuse(db.link.session, file.error());
  if (!CheckFileAgainstRadio(db, *file)) return false;
  return WriteItems(db, view, *file);
}

}  // namespace

bool ReadRadio(RadioDb& db, ReadWriteView& view) {
  Session& session = db.link.session;
  session.TransferMode = services::Transfer::kRead;
  view.SetCaption(NLSFmt(session, "Reading Radio"));
  db.data_file.clear();
  db.calibration_file.clear();
  ReadFiles files(session);
  const bool complete =
      ReadIdentityForTransfer(db) && OpenReadFiles(db, files) && ReadAllItems(db, view, files);
  CloseRadio(db.link, view);
  db.database_records = files.database_records;
  db.calibration_records = files.calibration_records;
  return EndFiles(session, files, complete);
}

bool ProgramRadio(RadioDb& db, ReadWriteView& view, const std::string& file) {
  Session& session = db.link.session;
  session.TransferMode = services::Transfer::kProgram;
  view.SetCaption(NLSFmt(session, "Programming Radio"));
  db.data_file = file;
  db.writing_begun = false;
  const bool complete = ProgramFile(db, view, file);
  CloseRadio(db.link, view);
  if (!complete && db.writing_begun) {
    NLSMsgBox(
        session,
        NLSFmt(session, "The radio may hold only part of the data now. Please program %0:s again.",
               {file}),
        {.icon = services::Icon::kCritical});
  }
  return complete;
}

std::string SavedText(const RadioDb& db, const std::string& file) {
  return NLSFmt(db.link.session, "The data of radio %0:s is saved in %1:s.",
                {RadioName(db.identity), file});
}

std::string ProgrammedText(const RadioDb& db, const std::string& file) {
  return NLSFmt(db.link.session, "Radio %0:s is programmed with %1:s.",
                {RadioName(db.identity), file});
}

std::optional<TransferKind> TransferKindOf(Session& session, const std::string& file) {
  const tl::expected<DataFile, services::Problem> contents = ReadDataFile(file);
  if (!contents) {
    Refuse(session, contents.error());
    return std::nullopt;
  }
  return contents->IsCalibration() ? TransferKind::kCalibration : TransferKind::kChosenFile;
}

bool ReadSpecification(RadioDb& db) {
  db.link.session.TransferMode = services::Transfer::kRead;
  const bool complete = ReadRadioIdentity(db.link, IdentityUse::kView, db.identity);
  CloseRadio(db.link);
  return complete;
}

}  // namespace zep::radiodb
