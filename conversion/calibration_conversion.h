// Calibration data brought from the layout of one calibration database version to that of another,
// up or down, and between a calibration file and the data file that is programmed into the radio.
// Versions are numbers: 100 to 103.
#pragma once

#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <vector>

#include "conversion/calibration_steps.h"
#include "conversion/item_differences.h"
#include "radiodb/data_file.h"
#include "radiodb/radio_models.h"
#include "services/text.h"

namespace zep::conversion {

inline constexpr int kOldestCalibration = 100;
inline constexpr int kNewestCalibration = 103;

// Why calibration data cannot be converted: a step met data of a length that is not that of its
// version, or, without a step, what the text says.
struct CalibrationProblem {
  const CalibrationStep* step = nullptr;
  services::Text text = {};
};

// Converts the data, hexadecimal text that ends in its checksum, step by step and renews the
// checksum, which is all that is done when both versions are the same. When that is not possible
// the data is as the last step that succeeded has left it. changes, when given, gets what the steps
// change.
tl::expected<void, CalibrationProblem> ConvertCalibrationDatabase(
    std::string& data, int current, int wanted, std::vector<Change>* changes = nullptr);

// The calibration version whose data has this length; 0 when there is none.
int CalibrationVersionOf(std::string_view data);

// The sum of all bytes as four hex digits, modulo 65536.
std::string CalibrationChecksum(std::string_view data);

// The item that holds the calibration data of a radio of this model in a saved file (see
// CalibrationItems).
std::string CalibrationItemIn(const radiodb::DataFile& file, const radiodb::RadioModel& model);

// The data of all records of the item, in file order; empty when there is none.
std::string GetCalibrationData(const radiodb::DataFile& file, std::string_view item);

// The calibration data of the radio that the file was read from; empty when there is none.
std::string CalibrationDataOf(const radiodb::DataFile& file);

// Adds the data as records to a data file.
void AddCalibrationDataToFile(std::string_view item, std::string_view data,
                              radiodb::DataFile& file);

struct CalibrationConversion {
  int old_version = 0;
  int new_version = 0;
  // Of the converted file.
  std::string path = {};
  std::vector<std::string> header = {};
  bool collect_changes = false;
};

struct CalibrationResult {
  radiodb::DataFile file;
  std::string item;  // that holds the data, two digits
  std::string data;
  std::vector<Change> changes;  // when they are collected
};

// Makes a calibration file of the new version from a sound one.
tl::expected<CalibrationResult, CalibrationProblem> ConvertCalibration(
    const CalibrationConversion& conversion, const radiodb::DataFile& saved);

}  // namespace zep::conversion
