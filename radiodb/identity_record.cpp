#include "radiodb/identity_record.h"

#include <algorithm>
#include <array>

#include "services/hex_text.h"

namespace zep::radiodb {
namespace {

using services::ConHexToText;

// Lengths and places from here on are in hexadecimal characters.
constexpr std::size_t kModelLength = 18;
constexpr std::size_t kVersionLength = 8;    // of the database and the hardware version
constexpr std::size_t kVersionsLength = 18;  // of database version, comma and calibration version
constexpr std::size_t kSerialNumberLength = 6;

// How item "00" of this length is cut, and how the headers of the identity records made from it
// begin. Behind the model string come the software and hardware version, then the database and
// calibration version, then 4 characters more.
struct Item0Format {
  std::size_t length;
  std::size_t software_length;       // of software and hardware version in the item
  std::string_view hardware_ending;  // what the item leaves out of them
  std::string_view database_header;
  std::string_view calibration_header;
};

constexpr std::array kItem0Formats = {
    // The shortest format has no hardware version: a comma and four zeros stand in for it.
    Item0Format{48, 8, "2C30303030", "000011", "00001C"},
    Item0Format{58, 18, "", "000011", "00001C"},
    // Kept: this data file record holds 17 bytes like the others, although its length field says
    // 21. Files and radios have it so.
    Item0Format{66, 26, "", "000015", "000020"},
};

// The places of the codes in the model string, in characters of text.
constexpr std::size_t kBandAt = 4;
constexpr std::size_t kBandwidthAt = 5;
constexpr std::size_t kModelCodeAt = 6;
constexpr std::size_t kComplianceAt = 8;

bool IsCalibrationHeader(std::string_view line) {
  return std::ranges::any_of(kItem0Formats, [line](const Item0Format& format) {
    return line.substr(4, 2) == format.calibration_header.substr(4);
  });
}

std::string SerialNumberText(std::string_view digits) {
  if (digits == "FFFFFF" || !services::IsHexText(digits)) return std::string(kSerialNumberNotSet);
  std::int64_t number = 0;
  for (std::size_t at = 0; at < digits.size(); at += 2)
    number = 256 * number + services::HexByte(digits.substr(at, 2));
  return std::to_string(kSerialNumberOffset + number);
}

}  // namespace

std::optional<Item0> ParseItem0(std::string_view data) {
  const auto format = std::ranges::find(kItem0Formats, data.size(), &Item0Format::length);
  if (format == kItem0Formats.end()) return std::nullopt;
  const std::string_view model = data.substr(0, kModelLength);
  const std::string software = std::string(data.substr(kModelLength, format->software_length))
                                   .append(format->hardware_ending);
  const std::string_view hardware =
      std::string_view(software).substr(software.size() - kVersionLength);
  const std::string_view rest = data.substr(kModelLength + format->software_length);
  const std::string versions = ConHexToText(rest.substr(0, kVersionsLength));

  Item0 item;
  item.model_string = ConHexToText(model);
  item.software_version = ConHexToText(software);
  item.software_version.resize(std::min(item.software_version.find(','),  //
                                        item.software_version.size()));
  item.hardware_version = ConHexToText(hardware);
  item.database_version = versions.substr(0, 4);
  item.calibration_version = versions.substr(5);
  item.database_record.append(format->database_header).append(model);
  item.database_record.append(rest.substr(0, kVersionLength)).append(hardware);
  item.calibration_record.append(format->calibration_header).append(model);
  item.calibration_record.append(software).append(rest);
  item.calibration_record.resize(link::RecordLength(format->calibration_header) - kRecordChecksum -
                                 kSerialNumberLength);
  return item;
}

void AppendSerialNumber(std::string_view digits, std::string& calibration_record) {
  calibration_record += services::PadString(std::string(digits.substr(0, kSerialNumberLength)),
                                            services::PadSide::kRight, kSerialNumberLength, "F");
}

void FillInCodes(const RadioCodes& codes, std::string& model_string) {
  if (2 * model_string.size() != kModelLength) return;
  model_string[kBandAt] = codes.band;
  model_string[kBandwidthAt] = codes.bandwidth;
  model_string[kComplianceAt] = codes.compliance_code;
}

std::optional<Record> CompleteIdentityRecord(std::string_view record, const RadioCodes& codes) {
  if (record.empty()) return std::nullopt;
  std::string data(record.substr(kRecordHeader));
  const auto fill_in = [&data](std::size_t at, char code) {
    data.replace(2 * at, 2, services::ConTextToHex({&code, 1}));
  };
  fill_in(kBandAt, codes.band);
  fill_in(kBandwidthAt, codes.bandwidth);
  fill_in(kComplianceAt, codes.compliance_code);
  return Record::WithHeader(record.substr(0, kRecordHeader), data);
}

bool IsIdentityLine(std::string_view line) { return line.starts_with("00"); }

std::optional<FileIdentity> ParseIdentityLine(std::string_view line) {
  constexpr std::size_t kDatabaseAt = kRecordHeader + kModelLength;
  constexpr std::size_t kHardwareAt = kDatabaseAt + kVersionLength;
  if (line.size() < kHardwareAt) return std::nullopt;
  FileIdentity identity;
  identity.is_calibration = IsCalibrationHeader(line);
  identity.model_string = ConHexToText(line.substr(kRecordHeader, kModelLength));
  identity.model_code = identity.model_string.substr(kModelCodeAt, 2);
  identity.type_digit = identity.model_code[1];
  if (identity.is_calibration) {
    identity.serial_number = SerialNumberText(
        line.substr(line.size() - kRecordChecksum - kSerialNumberLength, kSerialNumberLength));
  } else {
    identity.database_version = ConHexToText(line.substr(kDatabaseAt, kVersionLength));
    identity.hardware_version = ConHexToText(line.substr(kHardwareAt, kVersionLength));
  }
  return identity;
}

int VersionNumber(std::string_view version) {
  constexpr int kLargest = 99'999'999;
  int number = 0;
  for (const char character : version) {
    if (character == '.') continue;
    if (character < '0' || character > '9' || number > kLargest) break;
    number = 10 * number + (character - '0');
  }
  return number;
}

}  // namespace zep::radiodb
