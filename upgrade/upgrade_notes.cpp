#include "upgrade/upgrade_notes.h"

#include <algorithm>

#include "platform/files.h"
#include "radiodb/data_files.h"
#include "services/messages.h"
#include "services/paths.h"
#include "services/text_lines.h"

namespace zep::upgrade {
namespace {

using services::NLSFmt;
using services::NLSMsgBox;
using services::Session;

// Notes and copies are called after what they are about: "NAME.unfinished", "NAME.unfinished2".
// Copies of converted files are in the folder of the notes, so they are called otherwise.
constexpr std::string_view kUnfinished = ".unfinished";
constexpr std::string_view kConverted = ".converted";

bool IsCalled(std::string_view name, std::string_view extension) {
  name = name.substr(0, name.find_last_not_of("0123456789") + 1);
  return name.ends_with(extension);
}

// The names that a note may have, one after the other.
std::string UnfinishedName(const std::string& path, int number) {
  return path + std::string(kUnfinished) + (number > 1 ? std::to_string(number) : std::string());
}

// The file after which the note is called: the only one, or the data file.
const std::string& MainFile(const SavedData& saved) {
  return saved.data_file.empty() ? saved.calibration_file : saved.data_file;
}

// What an unfinished run has left behind.
struct Note {
  bool is_running = false;      // the run that made it goes on
  platform::SystemError error;  // why it cannot be read
  SavedData saved;
};

std::string LockOf(const std::string& note) { return note + ".lock"; }

// Whether the run that has made the note goes on, in this program or another.
bool IsRunning(const std::string& note) {
  platform::LockFile lock;
  return platform::FileExists(LockOf(note)) &&
         lock.TryAcquire(LockOf(note)) == platform::LockState::kHeldByAnother;
}

Note ReadNote(const std::string& path) {
  const platform::FileContents contents = platform::ReadWholeFile(path);
  Note note{
      IsRunning(path), contents.error, {.data_file = {}, .calibration_file = {}, .note = path}};
  services::ForEachLine(contents.bytes, [&note](std::string_view line, int number) {
    if (number == 1) note.saved.data_file = line;
    if (number == 2) note.saved.calibration_file = line;
    if (number == 3) note.saved.converted_file = line;
    if (number == 4) note.saved.converted_calibration = line;
  });
  return note;
}

enum class Run { kEnded, kGoesOn };

// The notes that runs in this state have made.
std::vector<Note> FindNotes(const Session& session, Run run) {
  std::vector<Note> notes;
  const std::string folder = UpgradeFolder(session);
  for (const std::string& name : platform::ListFolder(folder)) {
    if (!IsCalled(name, kUnfinished)) continue;
    Note note = ReadNote(folder + name);
    if (note.is_running == (run == Run::kGoesOn)) notes.push_back(std::move(note));
  }
  return notes;
}

// Whether the note has nothing to tell any more. What cannot be reached may well come back.
bool IsOver(const Note& note) {
  const auto is_gone = [](const std::string& file) {
    return file.empty() || platform::IsGone(file);
  };
  return !note.error && is_gone(note.saved.data_file) && is_gone(note.saved.calibration_file);
}

platform::SystemError WriteNote(const SavedData& saved) {
  std::string text;
  for (const std::string& path : {saved.data_file, saved.calibration_file, saved.converted_file,
                                  saved.converted_calibration}) {
    text += platform::AbsolutePath(path) + "\n";
  }
  return platform::WriteWholeFile(saved.note, text);
}

// Copies the file, unless there is such a copy already; path is the copy's then.
bool KeepCopy(link::Job& job, UpgradeLog& log, std::string_view extension, std::string& path) {
  if (IsCalled(path, extension)) return true;
  const platform::FileCopy copy = platform::KeepCopy(path, path + std::string(extension));
  if (!copy.error) {
    log.Log("The data of the unfinished upgrade is kept in " + copy.path);
    path = copy.path;
    return true;
  }
  services::ReportError(job.session, copy.error, "PrepareToSave");
  log.Log("The data of the unfinished upgrade could not be copied: " + path);
  return Refuse(job,
                NLSFmt(job.session,
                       "The data of an unfinished upgrade in %0:s could not be copied to "
                       "%1:s, so the radio was not read. Please check the disk, or move "
                       "the file to a safe place yourself.",
                       {path, copy.path}),
                services::Failure::kFile);
}

bool AreSameFiles(const SavedData& a, const SavedData& b) {
  return a.data_file == b.data_file && a.calibration_file == b.calibration_file &&
         a.converted_file == b.converted_file && a.converted_calibration == b.converted_calibration;
}

// Puts the data that a note speaks of where nothing replaces it.
bool PutAside(link::Job& job, UpgradeLog& log, const SavedData& saved) {
  Session& session = job.session;
  SavedData kept = saved;
  std::string copies;
  for (std::string SavedData::*file :
       {&SavedData::data_file, &SavedData::calibration_file, &SavedData::converted_file,
        &SavedData::converted_calibration}) {
    if (!platform::FileExists(kept.*file)) continue;
    const bool is_converted =
        file == &SavedData::converted_file || file == &SavedData::converted_calibration;
    if (!KeepCopy(job, log, is_converted ? kConverted : kUnfinished, kept.*file)) return false;
    if (kept.*file != saved.*file) copies += "\n" + kept.*file;
  }
  if (copies.empty()) return true;
  if (WriteNote(kept)) {
    // Another user's: there is to be one about the copies in its place, or beside it.
    const std::vector<Note> notes = FindNotes(session, Run::kEnded);
    if (std::ranges::any_of(notes,
                            [&](const Note& note) { return AreSameFiles(note.saved, kept); }))
      return true;
    if (!MakeNote(job, kept)) return false;
    LeaveNote(kept);
    platform::RemoveFile(saved.note);
  }
  NLSMsgBox(session, NLSFmt(session,
                            "The data of the unfinished upgrade was copied, so that this upgrade "
                            "does not replace it. Please keep the copies:%0:s",
                            {copies}));
  return true;
}

// A further sentence about data that was converted already, also for the log.
std::string WhatToProgram(const Session& session, UpgradeLog& log, const SavedData& saved) {
  std::string files;
  for (const std::string& file : {saved.converted_file, saved.converted_calibration}) {
    if (!file.empty() && platform::FileExists(file)) files += (files.empty() ? "" : ", ") + file;
  }
  if (files.empty()) return {};
  log.Log("The data converted for its new firmware is in " + files);
  return "\n" + NLSFmt(session,
                       "When the radio has its new firmware, please program the data converted for "
                       "it: %0:s.",
                       {files});
}

}  // namespace

std::string UpgradeFolder(const Session& session) {
  return services::WithSeparator(
      services::AppMakePath(session.paths.application_folder, "upgrade"));
}

bool MakeNote(link::Job& job, SavedData& saved) {
  const Session& session = job.session;
  const std::string path = UpgradeFolder(session) + services::FileTitleOf(MainFile(saved));
  platform::SystemError error = platform::MakeFolders(UpgradeFolder(session));
  saved.running = std::make_shared<platform::LockFile>();
  for (int number = 1; !error; ++number) {
    saved.note = UnfinishedName(path, number);
    if (!platform::IsTaken(saved.note) &&
        saved.running->TryAcquire(LockOf(saved.note)) != platform::LockState::kHeldByAnother) {
      break;
    }
  }
  if (!error) error = WriteNote(saved);
  if (!error) return true;
  LeaveNote(saved);
  saved.note.clear();
  return Refuse(job, services::Problem{.error = error, .procedure = "SecureSavedData"});
}

void NoteConvertedFiles(UpgradeLog& log, const SavedData& saved) {
  if (const platform::SystemError error = WriteNote(saved)) {
    log.Log("The note of this upgrade stays as it was: " + error.description);
  }
}

void LeaveNote(SavedData& saved) {
  if (!saved.running) return;
  saved.running.reset();
  platform::RemoveFile(LockOf(saved.note));
}

void DropNote(SavedData& saved) {
  if (saved.note.empty()) return;
  // First the note, so that nobody takes it for one of an unfinished run.
  platform::RemoveFile(saved.note);
  saved.running.reset();
  platform::RemoveFile(LockOf(saved.note));
}

void EndNotes(const Session& session, SavedData& saved) {
  // A data file's name begins with the radio's serial number, a copy's with that of the file. A
  // file that is not a copy was read anew by this run.
  const auto is_back = [](const std::string& noted, const std::string& file) {
    return noted.empty() ||
           (!platform::IsSameFile(noted, file) &&
            services::FileTitleOf(noted).starts_with(services::FileTitleOf(file)) &&
            platform::HaveSameContents(noted, file));
  };
  DropNote(saved);
  for (Note& note : FindNotes(session, Run::kEnded)) {
    if (!note.error && is_back(note.saved.data_file, saved.data_file) &&
        is_back(note.saved.calibration_file, saved.calibration_file)) {
      DropNote(note.saved);
    }
  }
}

void TellOfUnfinishedUpgrades(Session& session, UpgradeLog& log) {
  for (Note& note : FindNotes(session, Run::kEnded)) {
    const std::string& data_file = note.saved.data_file;
    const std::string& calibration_file = note.saved.calibration_file;
    const std::string& path = note.saved.note;
    if (note.error) {
      log.Log("The note of an unfinished upgrade cannot be read: " + path);
      services::ReportError(session, note.error, "TellOfUnfinishedUpgrades");
    } else if (IsOver(note)) {
      DropNote(note.saved);
      const bool removed = !platform::FileExists(path);
      log.Log("The data of an unfinished upgrade is gone" +
              std::string(removed ? ", and its note is removed: " : ": ") + path);
    } else if (data_file.empty() || calibration_file.empty()) {
      const std::string& file = MainFile(note.saved);
      log.Log("An earlier upgrade did not finish. Its data is in " + file);
      NLSMsgBox(session,
                NLSFmt(session,
                       "An earlier upgrade did not finish. The data of that radio is in %0:s. "
                       "Please keep this file until the radio has its data back, then delete "
                       "%1:s.",
                       {file, path}) +
                    WhatToProgram(session, log, note.saved));
    } else {
      log.Log("An earlier upgrade did not finish. Its data is in " + data_file + " and " +
              calibration_file);
      NLSMsgBox(session,
                NLSFmt(session,
                       "An earlier upgrade did not finish. The data of that radio is in %0:s and "
                       "%1:s. Please keep these files until the radio has its data back, then "
                       "delete %2:s.",
                       {data_file, calibration_file, path}) +
                    WhatToProgram(session, log, note.saved));
    }
  }
}

bool PrepareToSave(radiodb::RadioDb& db, UpgradeLog& log) {
  Session& session = db.job.session;
  const std::string upgrade_folder = UpgradeFolder(session);
  for (const std::string& folder : {db.database_folder, db.calibration_folder}) {
    if (!platform::IsSameFile(folder, upgrade_folder)) continue;
    log.Log("The saved data would be in the folder of the converted data: " + upgrade_folder);
    return Refuse(db.job,
                  NLSFmt(session,
                         "The radio's data cannot be saved in %0:s: the converted data, "
                         "which goes there, would replace it. Please choose another "
                         "folder for data files and calibration files.",
                         {upgrade_folder}),
                  services::Failure::kFile);
  }
  for (const Note& note : FindNotes(session, Run::kEnded)) {
    if (!note.error && !PutAside(db.job, log, note.saved)) return false;
  }
  db.files_in_use.clear();
  for (const Note& note : FindNotes(session, Run::kGoesOn)) {
    for (const std::string& file : {note.saved.data_file, note.saved.calibration_file}) {
      if (!file.empty()) db.files_in_use.push_back(file);
    }
  }
  return true;
}

void TellOfSavedData(Session& session, UpgradeLog& log, const SavedData& saved) {
  if (saved.data_file.empty() || saved.calibration_file.empty()) {
    log.Log("The radio's data is in " + MainFile(saved));
    return radiodb::TellOfSavedFile(session, MainFile(saved), WhatToProgram(session, log, saved));
  }
  log.Log("The radio's data is in " + saved.data_file + " and " + saved.calibration_file);
  NLSMsgBox(session, NLSFmt(session,
                            "The data of this radio is in %0:s and %1:s. Please keep these files "
                            "until the radio has its data back.",
                            {saved.data_file, saved.calibration_file}) +
                         WhatToProgram(session, log, saved));
}

}  // namespace zep::upgrade
