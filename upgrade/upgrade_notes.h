// Notes of upgrades in the folder "upgrade": each tells where a radio's data is until the radio has
// it back, so that a run that failed or was killed does not lose it.
#pragma once

#include <memory>
#include <string>

#include "platform/lock_file.h"
#include "radiodb/radio_db.h"
#include "services/session.h"
#include "upgrade/upgrade_log.h"

namespace zep::upgrade {

// The saved files of one radio, by their full names, what they were converted to, and the note
// about all of them; empty where there is none.
struct SavedData {
  std::string data_file;
  std::string calibration_file;
  std::string converted_file = {};
  std::string converted_calibration = {};
  std::string note = {};
  // While the run that has made the note lasts: nobody else takes it for unfinished then.
  std::shared_ptr<platform::LockFile> running = {};
};

// The folder "upgrade" of the application folder, with its separator.
std::string UpgradeFolder(const services::Session& session);

// Makes the note about the files, under a name of its own: those of earlier runs stay. False, after
// a message, when it cannot be written.
bool MakeNote(link::Job& job, SavedData& saved);

// When both are converted: the note tells of the converted files, too, which are those that the new
// firmware takes. A note that cannot be written stays as it was.
void NoteConvertedFiles(UpgradeLog& log, const SavedData& saved);

// The end of a run, in one of three ways. The note stays when the radio does not have its data
// back.
void LeaveNote(SavedData& saved);
// Nothing was sent to the flash: the files are not the only copy and need no note.
void DropNote(SavedData& saved);
// The radio has its data back: removes the note, and the notes of earlier runs about the same data
// of the same radio.
void EndNotes(const services::Session& session, SavedData& saved);

// Tells the user of every note that an unfinished run has left behind, and logs it; runs that go on
// in other programs are left alone. A note is removed when the files that it names are gone for
// good, but not when they or it cannot be reached now.
void TellOfUnfinishedUpgrades(services::Session& session, UpgradeLog& log);

// Before a radio is read, with the folders of db set: makes sure that the files to be made are not
// where the converted ones go, and copies the files that notes speak of to "NAME.unfinished", or
// "NAME.unfinished2" and so on when there is another copy ("NAME.converted" for converted ones), so
// that they are not written over; the radio may no longer hold what is in them. The notes then
// speak of the copies, and the user is told. Files of runs that go on are kept in db from being
// written over. False, after a message, when the radio must not be read.
bool PrepareToSave(radiodb::RadioDb& db, UpgradeLog& log);

// After a run that failed once the download had begun: tells the user where the data is, and logs
// it.
void TellOfSavedData(services::Session& session, UpgradeLog& log, const SavedData& saved);

}  // namespace zep::upgrade
