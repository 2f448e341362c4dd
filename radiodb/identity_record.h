// Item "00": who a radio is. Where its fields stand in what the radio sends, and in the identity
// records that open a data file and a calibration file.
//
//   data file         model string (9 bytes), database version (4), hardware version (4)
//   calibration file  model string (9), software and hardware version, database and calibration
//                     version, ... filled up; serial number (3)
//
// In the model string, character 5 is the band letter, 6 the bandwidth, 7 and 8 are the model code
// and 9 is the compliance code.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "link/record.h"

namespace zep::radiodb {

using link::GetRecordData;
using link::kRecordChecksum;
using link::kRecordHeader;
using link::Record;

// The serial number of a radio whose serial number item holds 0.
inline constexpr std::int64_t kSerialNumberOffset = 10'000'000;
// And of one whose item is blank.
inline constexpr std::string_view kSerialNumberNotSet = "NOT SET";

// What stands in the model string only after the band information item was read.
struct RadioCodes {
  char band;
  char bandwidth;
  char compliance_code;
};

// Item "00" as a radio sends it, as text.
struct Item0 {
  std::string model_string;
  std::string software_version;
  std::string hardware_version;  // 4 characters
  std::string database_version;  // 4 characters
  std::string calibration_version;

  // Header and data of the two identity records, that of calibration without the serial number.
  std::string database_record;
  std::string calibration_record;
};

// From the hexadecimal data; nothing when its length is not that of a known radio.
std::optional<Item0> ParseItem0(std::string_view data);

// Appends the serial number, six hexadecimal digits, to the calibration file's record.
void AppendSerialNumber(std::string_view digits, std::string& calibration_record);

// Puts the codes into a model string; one of another length than 9 stays as it is.
void FillInCodes(const RadioCodes& codes, std::string& model_string);

// An identity record as it is written, with the codes, from header and data; nothing when these are
// empty.
std::optional<Record> CompleteIdentityRecord(std::string_view record, const RadioCodes& codes);

// What an identity record tells of the radio that its file was read from.
struct FileIdentity {
  bool is_calibration = false;  // the identity record of a calibration file
  int line = 0;                 // of the file
  std::string model_string;
  std::string model_code;
  char type_digit = 0;           // second character of the model code
  std::string database_version;  // 4 characters; of a data file only, like the next
  std::string hardware_version;
  std::string serial_number;  // of a calibration file only: decimal, or "NOT SET"
};

// Whether a line of a file is an identity record: it begins with "00".
bool IsIdentityLine(std::string_view line);
// From such a line, sound or not; nothing when it is too short.
std::optional<FileIdentity> ParseIdentityLine(std::string_view line);

// A version as an integer: "0402" and "4.02" are 402. Ends at the first other character; 0 when
// there is no digit before it.
int VersionNumber(std::string_view version);

}  // namespace zep::radiodb
