// Calibration data brought from the layout of one calibration database version to that of another,
// up or down, and between a calibration file and the data file that is programmed into the radio.
// Versions are numbers: 100 to 103.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "radiodb/data_file_reader.h"
#include "radiodb/radio_models.h"
#include "services/session.h"
#include "upgrade/item_differences.h"

namespace zep::upgrade {

// Converts the data, hexadecimal text that ends in its checksum, step by step and renews the
// checksum, which is all that is done when both versions are the same. False, after a message, when
// the length is not that of a version on the way or there is no way; the data is then as the last
// step that succeeded has left it. changes, when given, gets what the steps change.
bool ConvertCalibrationDatabase(services::Session& session, std::string& data, int current,
                                int wanted, std::vector<Change>* changes = nullptr);

inline constexpr int kOldestCalibration = 100;
inline constexpr int kNewestCalibration = 103;

// The calibration version whose data has this length; 0 when there is none.
int CalibrationVersionOf(std::string_view data);

// The sum of all bytes as four hex digits, modulo 65536.
std::string CalibrationChecksum(services::Session& session, std::string_view data);

// The item that holds the calibration data of a radio of this model in a saved file: "47" on tier
// 2, else "2C". When the file has no record of it but holds the item of the radio's own type, that
// one.
std::string CalibrationItemIn(const radiodb::DataFile& file, const radiodb::RadioModel& model);

// The data of all records of the item, in file order; empty when there is none.
std::string GetCalibrationData(const radiodb::DataFile& file, std::string_view item);

// The calibration data of the radio that the file was read from; empty when there is none.
std::string CalibrationDataOf(const radiodb::DataFile& file);

// Appends the data as records to a data file. False, after a report and with the file as it was,
// when it could not be written.
bool AddCalibrationDataToFile(services::Session& session, const std::string& path,
                              std::string_view item, std::string_view data);

struct CalibrationRequest {
  std::string saved_file;
  std::string converted_file;
  int old_version = 0;
  int new_version = 0;
  // A trial run: gets what would change, and nothing is written.
  std::vector<Change>* changes = nullptr;
};

// Converts a calibration file into another one, which is replaced as a whole or not at all. False
// after a message.
bool ConvertCalibrationFile(services::Session& session, const CalibrationRequest& request);

}  // namespace zep::upgrade
