#include "radiodb/data_file_reader.h"

#include <algorithm>
#include <array>

#include "link/record_text.h"
#include "platform/files.h"
#include "radiodb/radio_identity.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/text_lines.h"

namespace zep::radiodb {
namespace {

using link::kRecordChecksum;
using link::kRecordHeader;
using services::Failure;
using services::IsHexText;
using services::NLSFmt;
using services::Session;

// Twice the longest record.
constexpr std::size_t kLongestLine = 1000;

bool IsText(std::string_view bytes) {
  constexpr std::string_view kAllowed = "\r\n\t\f";
  return std::ranges::all_of(bytes, [&](char byte) {
    return static_cast<unsigned char>(byte) >= ' ' || kAllowed.find(byte) != std::string_view::npos;
  });
}

bool IsBlank(std::string_view line) { return line.find_first_not_of(" \t\f") == line.npos; }

// Sorts the file's lines into header and contents. Returns the number of a line that is far too
// long, 0 when there is none.
int SortLines(std::string_view bytes, DataFile& file) {
  bool in_header = false;
  int too_long = 0;
  services::ForEachLine(bytes, [&](std::string_view line, int number) {
    if (line.size() > kLongestLine && too_long == 0) too_long = number;
    std::string text(line.substr(0, kLongestLine));
    StripForceMark(text);
    if (number == 1) in_header = text == kHeaderStart;
    if (in_header) {
      in_header = text != kHeaderEnd;
      file.header.push_back(std::move(text));
    } else if (!IsBlank(text)) {
      file.lines.push_back({number, std::move(text)});
    }
  });
  return too_long;
}

// A file with more is no file of radio data.
constexpr std::size_t kMostFindings = 1000;

// The value of an upper-case hexadecimal digit, -1 for any other character.
int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}

std::uint8_t ByteAt(std::string_view hex, std::size_t at) {
  return static_cast<std::uint8_t>(16 * DigitValue(hex[at]) + DigitValue(hex[at + 1]));
}

// The text that hexadecimal text stands for; "?" where it is none.
std::string TextOf(std::string_view hex) {
  std::string text;
  for (std::size_t at = 0; at + 1 < hex.size(); at += 2) {
    text += IsHexText(hex.substr(at, 2)) ? static_cast<char>(ByteAt(hex, at)) : '?';
  }
  return text;
}

// Kept: the identity record of radios with the longest item 0 claims 4 bytes more than it has.
bool IsLongIdentityRecord(std::string_view record) {
  return record.substr(0, kRecordHeader) == "000015" && record.size() == 42;
}

// What is wrong with a record; empty when it is sound.
std::string RecordProblem(const Session& session, std::string_view record) {
  if (!IsHexText(record) || record.size() < kRecordHeader + kRecordChecksum) {
    return NLSFmt(session,
                  "This is no record: a record is made of pairs of the digits 0 to 9 and A to F, "
                  "at least four of them.");
  }
  const std::size_t length = kRecordHeader + 2 * std::size_t{ByteAt(record, 4)} + 2;
  if (record.size() != length && !IsLongIdentityRecord(record)) {
    return NLSFmt(session, "The record has %0:s characters, but its length field asks for %1:s.",
                  {std::to_string(record.size()), std::to_string(length)});
  }
  const std::size_t checksum_at = record.size() - kRecordChecksum;
  const std::string checksum = services::RecordChecksum(record.substr(0, checksum_at));
  if (record.substr(checksum_at) == checksum) return {};
  return NLSFmt(session, "The record's checksum is %0:s, but should be %1:s.",
                {record.substr(checksum_at), checksum});
}

std::string SerialNumberOf(std::string_view data) {
  if (data == "FFFFFF" || !IsHexText(data)) return "NOT SET";
  std::int64_t number = 0;
  for (std::size_t at = 0; at < data.size(); at += 2) number = 256 * number + ByteAt(data, at);
  return std::to_string(kSerialNumberOffset + number);
}

// What is wrong with the file as a whole.
void CheckWhole(const Session& session, const DataFile& file, DataFileCheck& check) {
  const auto add = [&check](std::string text) { check.findings.push_back({0, std::move(text)}); };
  if (file.size < kSmallestDataFile) {
    add(NLSFmt(session, "The file has %0:s bytes; a data file has at least %1:s.",
               {std::to_string(file.size), std::to_string(kSmallestDataFile)}));
  }
  if (!check.identity) add(NLSFmt(session, "There is no identity record (item 00)."));
  if (check.networks > kMostNetworks) {
    add(NLSFmt(session, kTooManyNetworks,
               {std::to_string(check.networks), std::to_string(kMostNetworks)}));
  }
}

}  // namespace

void StripForceMark(std::string& line) {
  if (line.starts_with('f')) line.erase(0, 1);
}

bool IsNetworkSeparator(std::string_view line) { return line.starts_with(kNetworkSeparator); }

std::optional<DataFile> ReadDataFile(Session& session, const std::string& path) {
  const platform::FileContents contents = platform::ReadWholeFile(path);
  if (contents.error) {
    RefuseFile(session, contents.error, "ReadDataFile");
    return std::nullopt;
  }
  // Editors of old end a text with this byte.
  std::string_view bytes = contents.bytes;
  if (bytes.ends_with('\x1A')) bytes.remove_suffix(1);
  // What is too short for any data is for the checks to refuse, whatever it holds.
  if (contents.bytes.size() >= kSmallestDataFile && !IsText(bytes)) {
    Refuse(
        session,
        NLSFmt(session, "Data file is corrupt.") + "\n" +
            NLSFmt(
                session,
                "%0:s is not a file of radio data: it holds bytes that are no text. Please choose "
                "another file.",
                {path}),
        Failure::kFile);
    return std::nullopt;
  }
  DataFile file{.path = path, .size = contents.bytes.size(), .header = {}, .lines = {}};
  if (const int line = SortLines(bytes, file); line > 0) {
    Refuse(session,
           NLSFmt(session, "Data file is corrupt.") + "\n" +
               NLSFmt(session,
                      "%0:s is not a file of radio data: line %1:s has more than %2:s characters. "
                      "Please choose another file.",
                      {path, std::to_string(line), std::to_string(kLongestLine)}),
           Failure::kFile);
    return std::nullopt;
  }
  return file;
}

std::optional<FileIdentity> FindFileIdentity(const DataFile& file) {
  const auto found = std::ranges::find_if(
      file.lines, [](const DataFileLine& line) { return line.text.starts_with("00"); });
  constexpr std::size_t kShortest = 32;
  if (found == file.lines.end() || found->text.size() < kShortest) return std::nullopt;

  const std::string_view record = found->text;
  const std::string_view length = record.substr(4, 2);
  FileIdentity identity;
  identity.line = found->number;
  identity.is_calibration = length == "1C" || length == "20";
  identity.model_string = TextOf(record.substr(kRecordHeader, 18));
  identity.model_code = identity.model_string.substr(6, 2);
  identity.type_digit = identity.model_code[1];
  if (!identity.is_calibration) {
    identity.database_version = TextOf(record.substr(24, 8));
    identity.hardware_version = TextOf(record.substr(32, 8));
  } else {
    identity.serial_number = SerialNumberOf(record.substr(record.size() - kRecordChecksum - 6, 6));
  }
  return identity;
}

DataFileCheck CheckDataFile(const Session& session, const DataFile& file) {
  DataFileCheck check;
  check.identity = FindFileIdentity(file);
  std::vector<Finding> findings;
  for (const DataFileLine& line : file.lines) {
    if (IsNetworkSeparator(line.text)) {
      ++check.networks;
    } else if (line.text != kCommonDynamicItemLine) {
      ++check.records;
      if (findings.size() == kMostFindings) continue;
      std::string problem = RecordProblem(session, line.text);
      if (!problem.empty()) findings.push_back({line.number, std::move(problem)});
    }
  }
  CheckWhole(session, file, check);
  if (findings.size() == kMostFindings) {
    check.findings.push_back({0, NLSFmt(session, "Only the first %0:s bad records are told.",
                                        {std::to_string(kMostFindings)})});
  }
  check.findings.insert(check.findings.end(), findings.begin(), findings.end());
  return check;
}

std::string FindingText(const Session& session, const Finding& finding) {
  if (finding.line == 0) return finding.text;
  return NLSFmt(session, "Line %0:s: %1:s", {std::to_string(finding.line), finding.text});
}

}  // namespace zep::radiodb
