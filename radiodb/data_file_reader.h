// Files of radio data as they are read: the lines behind the header, whoever needs them, and
// whether they are sound.
//
// A header is skipped: from a first line "***" up to and including the line "---". Blank lines are
// left out, a leading "f" is removed, lines may end in LF or CRLF.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "services/messages.h"
#include "services/session.h"

namespace zep::radiodb {

// Stands in a data file where item "32" was left out.
inline constexpr std::string_view kCommonDynamicItemLine = "Insert Common Dynamic Item Here";

// The lines around a header, and between two networks.
inline constexpr std::string_view kHeaderStart = "***";
inline constexpr std::string_view kHeaderEnd = "---";
inline constexpr std::string_view kNetworkSeparator = "~~~";

inline constexpr int kMostNetworks = 4;
inline constexpr std::string_view kTooManyNetworks =
    services::NLSText("The file holds %0:s networks; a radio has at most %1:s.");
inline constexpr std::size_t kSmallestDataFile = 50;  // bytes

// Removes a leading "f" from a line.
void StripForceMark(std::string& line);

// The line separates two networks.
bool IsNetworkSeparator(std::string_view line);

struct DataFileLine {
  int number = 0;  // in the file, from 1
  std::string text;
};

struct DataFile {
  std::string path;
  std::size_t size = 0;             // bytes in the file
  std::vector<std::string> header;  // from "***" to "---"; empty when there is none
  std::vector<DataFileLine> lines;  // records, separators and common dynamic item lines
};

// Reads a file of radio data. A file that cannot be read, is binary, or has lines that are far too
// long for a record is reported to the user and gives nothing; session.failure is set.
std::optional<DataFile> ReadDataFile(services::Session& session, const std::string& path);

// What the identity record tells of the radio that a file was read from.
struct FileIdentity {
  bool is_calibration = false;  // the identity record of a calibration file
  int line = 0;
  std::string model_string;
  std::string model_code;
  char type_digit = 0;           // second character of the model code
  std::string database_version;  // 4 characters; of a data file only, like the next
  std::string hardware_version;
  std::string serial_number;  // of a calibration file only: decimal, or "NOT SET"
};

// From the first line that begins with "00"; nothing when there is none or it is too short.
std::optional<FileIdentity> FindFileIdentity(const DataFile& file);

struct Finding {
  int line = 0;  // 0: the file as a whole
  std::string text;
};

struct DataFileCheck {
  std::optional<FileIdentity> identity;
  int networks = 1;
  int records = 0;
  std::vector<Finding> findings;  // of the whole, then line by line; empty when it is sound
};

// Checks a file without a radio: that it is long enough, who it is for, the number of networks, and
// each record's digits, length and checksum. Findings are translated, and no more than 1000 of
// records are kept.
DataFileCheck CheckDataFile(const services::Session& session, const DataFile& file);

// The finding as the user sees it: "Line 12: ...".
std::string FindingText(const services::Session& session, const Finding& finding);

}  // namespace zep::radiodb
