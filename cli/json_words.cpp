#include "cli/json_words.h"

#include "cli/data_report.h"

namespace zep::cli {
namespace {

constexpr std::string_view kUnknown = "unknown";

}  // namespace

std::string_view JsonWord(platform::SerialDeviceState state) {
  switch (state) {
    using enum platform::SerialDeviceState;
    case kFree:
      return "free";
    case kBusy:
      return "in_use";
    case kConsole:
      return "system_console";
    case kNoPermission:
      return "no_permission";
  }
  return kUnknown;
}

std::string_view JsonWord(link::PortState state) {
  switch (state) {
    using enum link::PortState;
    case kActive:
      return "active";
    case kAvailable:
      return "available";
    case kNotAvailable:
      return "not_available";
    case kErrorDetected:
      return "error_detected";
  }
  return kUnknown;
}

std::string_view JsonWord(radiodb::RadioType type) {
  switch (type) {
    using enum radiodb::RadioType;
    case kConventional:
      return "conventional";
    case kTrunked:
      return "trunked";
    case kConventionalII:
      return "conventional_ii";
  }
  return kUnknown;
}

std::string_view JsonWord(services::Icon icon) {
  switch (icon) {
    using enum services::Icon;
    case kInformation:
      return "information";
    case kCritical:
      return "critical";
    case kQuestion:
      return "question";
  }
  return kUnknown;
}

std::string_view JsonWord(DataFileKind kind) {
  switch (kind) {
    using enum DataFileKind;
    case kData:
      return "data";
    case kMultiNetworkData:
      return "multi_network_data";
    case kCalibration:
      return "calibration";
  }
  return kUnknown;
}

std::string_view JsonWord(conversion::FileFact fact) {
  switch (fact) {
    using enum conversion::FileFact;
    case kContents:
      return "contents";
    case kModel:
      return "model";
    case kModelString:
      return "model_string";
    case kType:
      return "type";
    case kDatabaseVersion:
      return "database_version";
    case kHardwareVersion:
      return "hardware_version";
    case kSerialNumber:
      return "serial_number";
    case kNetworks:
      return "networks";
    case kOtherLines:
      return "other_lines";
  }
  return kUnknown;
}

std::string_view JsonWord(conversion::ChangeReason::Kind reason) {
  switch (reason) {
    using enum conversion::ChangeReason::Kind;
    case kDatabaseStep:
      return "database_step";
    case kNewDatabaseVersion:
      return "new_database_version";
    case kCalibrationStep:
      return "calibration_step";
    case kChecksum:
      return "checksum";
  }
  return kUnknown;
}

std::string_view RadioTypeWord(std::string_view model_code) {
  const char digit = model_code.size() == 2 ? model_code[1] : '0';
  return JsonWord(static_cast<radiodb::RadioType>(digit - '0'));
}

}  // namespace zep::cli
