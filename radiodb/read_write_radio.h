// Reading and programming a radio's database: what the read/write window and the identity view
// do, and zepctl's read, program and identify.
//
// All work on one radio; the user chooses the port when there are several Active ones. They open
// it, and at the end, whatever happened, release the radio from programming mode and close the
// ports. What stopped them is in session.failure. The user's action makes the link::Job around
// them.
#pragma once

#include <string>

#include "radiodb/radio_db.h"
#include "radiodb/read_write_view.h"

namespace zep::radiodb {

// Reads the radio into the files of db.transfer_kind: identity, then the names of the files, then
// the items. True when all was read and written; the files are in db then. Each is written once, at
// the end of the read.
bool ReadRadio(RadioDb& db, ReadWriteView& view);

// Programs a data file into the radio: identity, then the checks of the file, then its records of
// db.transfer_kind.
bool ProgramRadio(RadioDb& db, ReadWriteView& view, const std::string& file);
// The same with a file that has been read already.
bool ProgramRadio(RadioDb& db, ReadWriteView& view, const DataFile& file);

// What the user is told of a file that ReadRadio has written, and after ProgramRadio.
std::string SavedText(const RadioDb& db, const std::string& file);
std::string ProgrammedText(const RadioDb& db, const std::string& file);

// What programming this file takes: a calibration file is calibration only.
TransferKind TransferKindOf(const DataFile& file);

// Reads db.identity only.
bool ReadSpecification(RadioDb& db);

}  // namespace zep::radiodb
