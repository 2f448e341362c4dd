// The files into which a radio's data is saved before its firmware is replaced. From then on they
// are the only copy, so they are checked before.
#pragma once

#include <string>

#include "radiodb/radio_db.h"
#include "services/session.h"
#include "upgrade/upgrade_notes.h"

namespace zep::upgrade {

// Makes sure of the files that the last read of db has written: read back from the disk they are
// what the radio has sent, sound in every record and of this radio, and they lack no item that it
// has when it is asked once more. Then makes the note. False, after a
// message, when the files cannot be relied on; without one when the user has cancelled.
bool SecureSavedData(const radiodb::RadioDb& db, SavedData& saved);

// Whether the saved data may go into the radio that came back: both have the same serial number,
// one of them has none, or the user says so. When not, session.failure is set.
bool MayBeSameRadio(services::Session& session, const std::string& saved_serial_number,
                    const std::string& serial_number);

}  // namespace zep::upgrade
