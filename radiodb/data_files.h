// The files of radio data around a transfer: how they are named, chosen and begun when a radio is
// read, and checked against the radio before they are programmed into it.
//
//   *.ops   data file: personality database of a radio with one network
//   *.omn   multi-network data file
//   *.ocs   calibration database
#pragma once

#include <string>
#include <vector>

#include "radiodb/data_file.h"
#include "radiodb/radio_db.h"

namespace zep::radiodb {

// Folders for default-named files (settings MainDBLocation and CalibrationDBLocation), with a
// trailing separator.
std::string DatabaseFolder(const services::Session& session);
std::string CalibrationFolder(const services::Session& session);

// The folder last used for data files (setting DefaultDataFilePath), with a trailing separator.
std::string DefaultDataFilePath(const services::Session& session);
// Keeps the folder of a file that the user has chosen.
void SaveDefaultDataFilePath(services::Session& session, const std::string& file);

// Extension of the data files of a radio with so many networks.
const std::string& DatabaseExtension(const services::Session& session, int networks);

// Default names, without folder: serial number, "v", version, extension.
std::string DefaultDatabaseName(const services::Session& session, const RadioIdentity& identity);
std::string DefaultCalibrationName(const services::Session& session, const RadioIdentity& identity);

// Header lines, from "***" to "---".
std::vector<std::string> DatabaseHeader(const services::Session& session, int networks);
std::vector<std::string> CalibrationHeader(const services::Session& session);

// A file that a read makes: begun before the first item, written as a whole at the end.
struct FileToMake {
  DataFile data;
  platform::NewFile out;

  // Does nothing where there is no file.
  void Add(std::string_view line) {
    if (out.IsOpen()) data.Add(line);
  }
  // Behind the identity record.
  int Items() const { return data.Records() - 1; }
};

// The files that a read makes; those that its kind does not ask for stay closed.
struct ReadFiles {
  FileToMake database;
  FileToMake calibration;
  int calibration_network = 0;  // the network that gave the calibration item; 0: none yet
};

// Chooses the files of db.transfer_kind with the user and begins them, with header and identity
// record. False when the user said No or gave up, or a file cannot be made; CancelRequested is set
// then. What files of these names hold is as before.
bool OpenReadFiles(RadioDb& db, ReadFiles& files);

// Ends the files of a read and leaves what they hold in db. False when one of them could not be
// stored, of which the user is told, or the read was not complete; then the user is told which
// files are not, and where what they held before is kept.
bool EndReadFiles(RadioDb& db, ReadFiles& files, bool complete);

// The checks before programming, in their order; the first that fails is shown. False, with
// session.failure set, when the file must not be programmed.
bool CheckFileAgainstRadio(const RadioDb& db, const DataFile& file);

// Tells the user where the data of a radio is that could not be written back, and what further
// says.
void TellOfSavedFile(services::Session& session, const std::string& file,
                     std::string_view further = {});

}  // namespace zep::radiodb
