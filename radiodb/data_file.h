// A file of radio data as a value: read once and checked while it is read, or made line by line and
// written once.
//
// A header is skipped: from a first line "***" up to and including the line "---". Blank lines are
// left out, a leading "f" is removed, lines may end in LF or CRLF.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <variant>
#include <vector>

#include "platform/files.h"
#include "radiodb/identity_record.h"
#include "services/problem.h"
#include "services/text.h"

namespace zep::radiodb {

// Stands in a data file where item "32" was left out.
inline constexpr std::string_view kCommonDynamicItemLine = "Insert Common Dynamic Item Here";

// The lines around a header, and between two networks.
inline constexpr std::string_view kHeaderStart = "***";
inline constexpr std::string_view kHeaderEnd = "---";
inline constexpr std::string_view kNetworkSeparator = "~~~";

inline constexpr int kMostNetworks = 4;
inline constexpr std::size_t kSmallestDataFile = 50;  // bytes

// Removes a leading "f" from a line.
void StripForceMark(std::string_view& line);

// The line separates two networks.
bool IsNetworkSeparator(std::string_view line);

// What a line may be besides a record.
struct NetworkSeparator {
  std::string text;  // "~~~", and what may stand behind it
};
struct CommonDynamicItem {};
struct DamagedLine {
  std::string text;
};

struct DataFileLine {
  int number = 0;  // in the file, from 1; 0 in a file that was not read
  std::variant<Record, NetworkSeparator, CommonDynamicItem, DamagedLine> content;

  // Null when it is no sound record.
  const Record* AsRecord() const { return std::get_if<Record>(&content); }
  bool IsSeparator() const { return std::holds_alternative<NetworkSeparator>(content); }
  // Without the end of the line.
  std::string_view Text() const;
};

// What is wrong with a file.
struct Finding {
  int line = 0;  // 0: with the file as a whole
  services::Text text;
};

// The finding as the user sees it: "Line 12: ...".
services::Text FindingText(const Finding& finding);

class DataFile {
 public:
  // An empty one.
  DataFile() = default;
  // One that is made here: it has these header lines and gets its lines with Add. The path is where
  // it is to be written.
  DataFile(std::string path, std::vector<std::string> header);

  // What is no text, or has lines that are far too long for a record, is no file of radio data; all
  // else is one, with findings. The path is where it was read.
  static tl::expected<DataFile, services::Problem> Parse(std::string path, std::string_view bytes);

  void Add(Record record);
  // Any line, as it stands in a file.
  void Add(std::string_view line, int number = 0);

  // The same file with the letters of its lines in upper case: records written otherwise are sound
  // then.
  DataFile UpperCase() const;

  const std::string& Path() const { return path_; }
  std::size_t Size() const { return size_; }  // bytes in the file
  // From "***" to "---"; empty when there is none.
  const std::vector<std::string>& Header() const { return header_; }
  // Records, separators, common dynamic item lines, and those that should be one of them.
  const std::vector<DataFileLine>& Lines() const { return lines_; }

  // From the first line that begins with "00"; nothing when there is none or it is too short.
  const std::optional<FileIdentity>& Identity() const { return identity_; }
  bool IsCalibration() const { return identity_ && identity_->is_calibration; }
  int Networks() const { return networks_; }
  int Records() const { return records_; }  // the damaged ones, too

  // What is wrong: with the whole, then line by line; empty when the file is sound. It is long
  // enough, tells who it is for, has no more networks than a radio, and each record's digits,
  // length and checksum are right. No more than 1000 records are told of.
  std::vector<Finding> Findings() const;
  bool IsSound() const { return Findings().empty(); }

  // The whole file as it is written: every line ends in CRLF.
  std::string Print() const;

 private:
  void AddLine(DataFileLine line);

  std::string path_;
  std::size_t size_ = 0;
  std::vector<std::string> header_;
  std::vector<DataFileLine> lines_;
  std::optional<FileIdentity> identity_;
  bool has_identity_line_ = false;
  int networks_ = 1;
  int records_ = 0;
  std::vector<Finding> bad_records_;
};

// What is told of a file with more than kMostNetworks.
services::Text TooManyNetworks(int networks);

// Reads a file. What is wrong when there is none, or it is no file of radio data.
tl::expected<DataFile, services::Problem> ReadDataFile(const std::string& path);

// Puts the whole file where its path says, or nothing of it. What the file held before is kept
// beside it ("NAME.bak", or "NAME.bak2" and so on), unless it is the same: returns the name of that
// copy, which may be empty. procedure: in whose name a failure is reported.
tl::expected<std::string, services::Problem> WriteDataFile(
    const DataFile& file, std::string_view procedure = "WriteDataFile");
// The same into a file that was opened with its path.
tl::expected<std::string, services::Problem> WriteDataFile(
    const DataFile& file, platform::NewFile& out, std::string_view procedure = "WriteDataFile");

}  // namespace zep::radiodb
