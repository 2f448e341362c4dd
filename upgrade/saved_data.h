// The files into which a radio's data is saved before its firmware is replaced. From then on they
// are the only copy: they are checked before, and a note in the folder "upgrade" tells where they
// are until the radio has its data back, so that a run that was killed does not lose them.
#pragma once

#include <string>
#include <vector>

#include "radiodb/radio_db.h"
#include "services/session.h"
#include "upgrade/upgrade_log.h"

namespace zep::upgrade {

// The saved files of one radio, by their full names, the file that they were converted to, and the
// note about all of them; empty where there is none.
struct SavedData {
  std::string data_file;
  std::string calibration_file;
  std::string converted_file = {};
  std::string note = {};
};

// The folder "upgrade" of the application folder, with its separator.
std::string UpgradeFolder(const services::Session& session);

// Makes sure of the files that the last read of db has written: that they are on the disk and not
// only on the way there, sound in every record, of this radio, hold as many records as it has sent,
// and lack no item that it has when it is asked once more. Then makes the note. False, after a
// message, when the files cannot be relied on; without one when the user has cancelled.
bool SecureSavedData(const radiodb::RadioDb& db, SavedData& saved);

// Before anything was sent to the flash: these files are not the only copy, and need no note.
void DropNote(const SavedData& saved);

// Adds the file that the saved data was converted to, which is the one that the new firmware takes.
// False, after a message, when the note cannot be written.
bool NoteConvertedFile(services::Session& session, SavedData& saved, const std::string& file);

// When the radio has its data back: removes the note, and the notes of earlier runs that speak of
// the same data.
void EndNotes(const services::Session& session, const SavedData& saved);

// Tells the user of every note that an unfinished run has left behind, and logs it. A note is
// removed when the files that it names are gone for good, but not when they or it cannot be reached
// now.
void TellOfUnfinishedUpgrades(services::Session& session, UpgradeLog& log);

// Before a radio is read, with the folders of db set: makes sure that the files to be made are not
// where the converted ones go, and copies the files that notes speak of to "NAME.unfinished", or
// "NAME.unfinished2" and so on when there is another copy, so that they are not written over; the
// radio may no longer hold what is in them. The notes then speak of the copies, and the user is
// told. False, after a message, when the radio must not be
// read; session.failure is set.
bool PrepareToSave(const radiodb::RadioDb& db, UpgradeLog& log);

// After a run that failed once the download had begun: tells the user where the data is, and logs
// it.
void TellOfSavedData(services::Session& session, UpgradeLog& log, const SavedData& saved);

// Whether the saved data may go into the radio that came back: both have the same serial number,
// one of them has none, or the user says so. When not, session.failure is set.
bool MayBeSameRadio(services::Session& session, const std::string& saved_serial_number,
                    const std::string& serial_number);

}  // namespace zep::upgrade
