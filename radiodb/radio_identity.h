// Who a radio is: its model, versions, band, networks and serial number, as it tells them in item
// "00" and a few other items.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "link/job.h"
#include "radiodb/identity_record.h"
#include "radiodb/radio_models.h"

namespace zep::radiodb {

// Band letter, bandwidth and compliance code of a radio whose band information item is blank.
inline constexpr char kUnknownCode = 'x';

struct RadioIdentity {
  std::string model_string;  // 9 characters; empty when item 0 has an unknown format
  std::string model_code;    // 2 characters of it
  int tier = 1;
  RadioType type = RadioType::kConventional;
  std::string model_name;
  std::string software_version;
  std::string hardware_version;  // 4 characters
  std::string database_version;  // 4 characters
  std::string calibration_version;
  char band = kUnknownCode;             // "A" to "K"
  char bandwidth = kUnknownCode;        // "1", or "2" for Universal
  char compliance_code = kUnknownCode;  // "0", "2" to "5", "A" to "H", "L" or "Z"
  int networks = 0;                     // 1 to 4; 0 on a conventional radio
  std::string serial_number;            // decimal, or "NOT SET"

  // The identity records of the two files as far as item 0 and the serial number make them up:
  // hexadecimal text, without checksum. Empty unless read for a transfer.
  std::string database_record;
  std::string calibration_record;

  bool IsTrunked() const { return type == RadioType::kTrunked; }
};

// What the identity is read for. For a transfer the identity records are made, and the user is told
// of blank items.
enum class IdentityUse { kView, kTransfer };

// Makes identity anew from the data of item "00". Data of unknown length leaves all texts empty; an
// unknown model code is reported and counts as tier 1, conventional.
void ProcessItem0(services::Session& session, std::string_view data, IdentityUse use,
                  RadioIdentity& identity);

// The data of item "3C", a bit mask of the networks present; any but "01", "03", "07" and "0F"
// changes nothing.
void ProcessNumberOfNetworks(std::string_view data, RadioIdentity& identity);

// The data of the band information item. What is invalid in it is reported and replaced.
void ProcessFreqBandInfo(services::Session& session, std::string_view data, IdentityUse use,
                         RadioIdentity& identity);

// The data of the serial number item.
void ProcessRadioSerialNumber(services::Session& session, std::string_view data, IdentityUse use,
                              RadioIdentity& identity);

// Band letter from the low nibble, compliance code from the high one; an invalid nibble leaves its
// field as it was. True when both are valid.
bool SetBandAndComplianceCodeFromByte(std::uint8_t byte, RadioIdentity& identity);

// Its inverse; nothing when there is no byte for the identity's band and compliance code.
// Only tests call it.
std::optional<std::uint8_t> SetByteFromBandAndComplianceCode(const RadioIdentity& identity);

// The band in words for the user: "H 400-470 MHz"; "Unknown", untranslated, where there is none.
std::string_view BandText(const RadioIdentity& identity);

// The identity record of a data file or a calibration file as it is written: with band, bandwidth
// and compliance code. Nothing when the identity has no records.
std::optional<Record> DatabaseIdentityRecord(const RadioIdentity& identity);
std::optional<Record> CalibrationIdentityRecord(const RadioIdentity& identity);

// Opens the Active port and reads the identity of the radio behind it. False when the job must not
// go on: no port, no answer, an error reply, the user's No, Cancel. The port is left open and the
// radio in programming mode.
//
//   sends "^" "#"        into programming mode; error replies are only kept
//   sends "r" item CR    "00", then "3C" "40" "3D" (trunked) or "2A" "27" (conventional)
bool ReadRadioIdentity(link::Job& job, IdentityUse use, RadioIdentity& identity);

}  // namespace zep::radiodb
