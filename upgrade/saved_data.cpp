#include "upgrade/saved_data.h"

#include "platform/files.h"
#include "radiodb/data_file_reader.h"
#include "radiodb/data_files.h"
#include "services/messages.h"
#include "services/paths.h"
#include "services/text_lines.h"
#include "upgrade/sound_file.h"

namespace zep::upgrade {
namespace {

using services::NLSFmt;
using services::NLSMsgBox;
using services::Session;

constexpr std::string_view kUnfinished = ".unfinished";  // extension of notes and copies

SavedData ReadNote(const std::string& path) {
  const platform::FileContents contents = platform::ReadWholeFile(path);
  SavedData saved;
  services::ForEachLine(contents.bytes, [&saved](std::string_view line, int number) {
    if (number == 1) saved.data_file = line;
    if (number == 2) saved.calibration_file = line;
  });
  return saved;
}

// What the notes name. A note whose files are gone is removed.
std::vector<SavedData> FindNotes(const Session& session) {
  std::vector<SavedData> all;
  const std::string folder = UpgradeFolder(session);
  for (const std::string& name : platform::ListFolder(folder)) {
    if (!name.ends_with(kUnfinished)) continue;
    SavedData saved = ReadNote(folder + name);
    if (platform::FileExists(saved.data_file) || platform::FileExists(saved.calibration_file)) {
      all.push_back(std::move(saved));
    } else {
      platform::RemoveFile(folder + name);
    }
  }
  return all;
}

// Of a radio, or of the data files that were read from it.
struct Origin {
  std::string model_string;
  std::string database_version;  // not in a calibration file
  std::string serial_number;     // not in a data file
  int networks;                  // likewise 1 in a calibration file
  int records;

  bool operator==(const Origin&) const = default;
};

Origin OriginOf(const radiodb::RadioDb& db, bool is_calibration) {
  const radiodb::RadioIdentity& radio = db.identity;
  if (is_calibration) {
    return {radio.model_string, "", radio.serial_number, 1, db.calibration_records};
  }
  return {radio.model_string, radio.database_version, "", db.number_of_networks,
          db.database_records};
}

Origin OriginOf(const radiodb::DataFileCheck& check) {
  const radiodb::FileIdentity& identity = *check.identity;
  // The identity record is not one of those that the radio was asked for.
  return {identity.model_string, identity.database_version, identity.serial_number, check.networks,
          check.records - 1};
}

bool SecureFile(const radiodb::RadioDb& db, const std::string& path, bool is_calibration) {
  Session& session = db.link.session;
  const platform::FileContents contents = platform::ReadWholeFile(path);
  // Written again in the way that survives a power cut.
  const platform::SystemError error =
      contents.error ? contents.error : platform::WriteWholeFile(path, contents.bytes);
  if (error) {
    services::ReportError(session, error, "SecureSavedData");
    return false;
  }
  const std::optional<radiodb::DataFile> file = ReadSoundFile(session, path);
  if (!file) return false;
  const Origin origin = OriginOf(radiodb::CheckDataFile(session, *file));
  const Origin radio = OriginOf(db, is_calibration);
  if (origin == radio) return true;
  NLSMsgBox(session,
            NLSFmt(session,
                   "The file %0:s does not hold what the radio has sent: %1:s of %2:s records. "
                   "Please check the disk.",
                   {path, std::to_string(origin.records), std::to_string(radio.records)}),
            {.icon = services::Icon::kCritical});
  return false;
}

bool WriteNote(Session& session, const SavedData& saved) {
  platform::SystemError error = platform::MakeFolders(UpgradeFolder(session));
  if (!error) {
    error = platform::WriteWholeFile(NoteFile(session, saved),
                                     saved.data_file + "\n" + saved.calibration_file + "\n");
  }
  if (!error) return true;
  services::ReportError(session, error, "SecureSavedData");
  return false;
}

bool Secure(const radiodb::RadioDb& db, const SavedData& saved) {
  return (saved.data_file.empty() || SecureFile(db, saved.data_file, false)) &&
         (saved.calibration_file.empty() || SecureFile(db, saved.calibration_file, true)) &&
         WriteNote(db.link.session, saved);
}

}  // namespace

std::string UpgradeFolder(const Session& session) {
  return services::WithSeparator(
      services::AppMakePath(session.paths.application_folder, "upgrade"));
}

bool SecureSavedData(const radiodb::RadioDb& db, const SavedData& saved) {
  Session& session = db.link.session;
  if (Secure(db, saved)) return true;
  if (session.failure == services::Failure::kNone) session.failure = services::Failure::kFile;
  NLSMsgBox(session,
            "The radio's data could not be saved safely, so the radio keeps its firmware. Please "
            "try again.",
            {.icon = services::Icon::kCritical});
  return false;
}

std::string NoteFile(const Session& session, const SavedData& saved) {
  const std::string& file = saved.data_file.empty() ? saved.calibration_file : saved.data_file;
  return UpgradeFolder(session) + services::FileTitleOf(file) + std::string(kUnfinished);
}

void RemoveNote(const Session& session, const SavedData& saved) {
  platform::RemoveFile(NoteFile(session, saved));
}

void TellOfUnfinishedUpgrades(Session& session, UpgradeLog& log) {
  for (const SavedData& saved : FindNotes(session)) {
    log.Log("An earlier upgrade did not finish. Its data is in " + saved.data_file + " and " +
            saved.calibration_file);
    NLSMsgBox(session,
              NLSFmt(session,
                     "An earlier upgrade did not finish. The data of that radio is in %0:s and "
                     "%1:s. Please keep these files until the radio has its data back, then delete "
                     "%2:s.",
                     {saved.data_file, saved.calibration_file, NoteFile(session, saved)}));
  }
}

void KeepUnfinishedData(const radiodb::RadioDb& db, UpgradeLog& log) {
  const Session& session = db.link.session;
  const std::string data_name = radiodb::DefaultDatabaseName(session, db.identity);
  const std::string calibration_name = radiodb::DefaultCalibrationName(session, db.identity);
  for (const SavedData& saved : FindNotes(session)) {
    for (const std::string& path : {saved.data_file, saved.calibration_file}) {
      const std::string name = services::FileTitleOf(path);
      if (name != data_name && name != calibration_name) continue;
      const std::string kept = path + std::string(kUnfinished);
      const platform::FileContents contents = platform::ReadWholeFile(path);
      if (contents.error || platform::FileExists(kept)) continue;
      if (!platform::WriteWholeFile(kept, contents.bytes)) {
        log.Log("The data of the unfinished upgrade is kept in " + kept);
      }
    }
  }
}

}  // namespace zep::upgrade
