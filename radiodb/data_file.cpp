#include "radiodb/data_file.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "platform/files.h"
#include "services/text_lines.h"

namespace zep::radiodb {
namespace {

using services::Failure;
using services::NLSText;
using services::Problem;
using services::Text;

constexpr std::string_view kEndOfLine = "\r\n";

// Twice the longest record.
constexpr std::size_t kLongestLine = 1000;

// A file with more is no file of radio data.
constexpr std::size_t kMostFindings = 1000;

bool IsText(std::string_view bytes) {
  constexpr std::string_view kAllowed = "\r\n\t\f";
  return std::ranges::all_of(bytes, [&](char byte) {
    return static_cast<unsigned char>(byte) >= ' ' || kAllowed.find(byte) != std::string_view::npos;
  });
}

bool IsBlank(std::string_view line) { return line.find_first_not_of(" \t\f") == line.npos; }

Problem Corrupt(Text reason) {
  return {Failure::kFile, {{NLSText("Data file is corrupt.")}, std::move(reason)}};
}

}  // namespace

void StripForceMark(std::string_view& line) {
  if (line.starts_with('f')) line.remove_prefix(1);
}

bool IsNetworkSeparator(std::string_view line) { return line.starts_with(kNetworkSeparator); }

std::string_view DataFileLine::Text() const {
  if (const Record* record = AsRecord()) return record->Line();
  if (const auto* separator = std::get_if<NetworkSeparator>(&content)) return separator->text;
  if (const auto* damaged = std::get_if<DamagedLine>(&content)) return damaged->text;
  return kCommonDynamicItemLine;
}

Text FindingText(const Finding& finding) {
  if (finding.line == 0) return finding.text;
  return {NLSText("Line %0:s: %1:s"), {std::to_string(finding.line)}, {finding.text}};
}

DataFile::DataFile(std::string path, std::vector<std::string> header)
    : path_(std::move(path)), header_(std::move(header)) {
  for (const std::string& line : header_) size_ += line.size() + kEndOfLine.size();
}

tl::expected<DataFile, Problem> DataFile::Parse(std::string path, std::string_view bytes) {
  DataFile file(std::move(path), {});
  const std::size_t size = bytes.size();
  // Editors of old end a text with this byte.
  if (bytes.ends_with('\x1A')) bytes.remove_suffix(1);
  // What is too short for any data is for the checks to refuse, whatever it holds.
  if (size >= kSmallestDataFile && !IsText(bytes)) {
    return tl::unexpected(Corrupt({NLSText("%0:s is not a file of radio data: it holds bytes that "
                                           "are no text. Please choose another file."),
                                   {file.path_}}));
  }
  bool in_header = false;
  int too_long = 0;
  services::ForEachLine(bytes, [&](std::string_view line, int number) {
    if (line.size() > kLongestLine && too_long == 0) too_long = number;
    if (too_long != 0) return;
    StripForceMark(line);
    if (number == 1) in_header = line == kHeaderStart;
    if (in_header) {
      in_header = line != kHeaderEnd;
      file.header_.emplace_back(line);
    } else if (!IsBlank(line)) {
      file.Add(line, number);
    }
  });
  if (too_long > 0) {
    return tl::unexpected(
        Corrupt({NLSText("%0:s is not a file of radio data: line %1:s has more than %2:s "
                         "characters. Please choose another file."),
                 {file.path_, std::to_string(too_long), std::to_string(kLongestLine)}}));
  }
  file.size_ = size;
  return file;
}

void DataFile::Add(Record record) { AddLine({0, std::move(record)}); }

void DataFile::Add(std::string_view line, int number) {
  if (IsNetworkSeparator(line)) return AddLine({number, NetworkSeparator{std::string(line)}});
  if (line == kCommonDynamicItemLine) return AddLine({number, CommonDynamicItem{}});
  tl::expected<Record, Text> record = Record::Parse(line);
  if (record) return AddLine({number, *std::move(record)});
  if (bad_records_.size() < kMostFindings) {
    bad_records_.push_back({number, std::move(record.error())});
  }
  AddLine({number, DamagedLine{std::string(line)}});
}

void DataFile::AddLine(DataFileLine line) {
  const std::string_view text = line.Text();
  size_ += text.size() + kEndOfLine.size();
  if (line.IsSeparator()) {
    ++networks_;
  } else if (!std::holds_alternative<CommonDynamicItem>(line.content)) {
    ++records_;
    if (!has_identity_line_ && IsIdentityLine(text)) {
      has_identity_line_ = true;
      identity_ = ParseIdentityLine(text);
      if (identity_) identity_->line = line.number;
    }
  }
  lines_.push_back(std::move(line));
}

DataFile DataFile::UpperCase() const {
  DataFile file(path_, header_);
  for (const DataFileLine& line : lines_) {
    if (line.AsRecord() != nullptr || std::holds_alternative<CommonDynamicItem>(line.content)) {
      file.AddLine(line);
      continue;
    }
    std::string text(line.Text());
    std::ranges::transform(text, text.begin(),
                           [](unsigned char character) { return std::toupper(character); });
    file.Add(text, line.number);
  }
  file.size_ = size_;
  return file;
}

std::vector<Finding> DataFile::Findings() const {
  std::vector<Finding> findings;
  const auto add = [&](Text text) { findings.push_back({0, std::move(text)}); };
  if (size_ < kSmallestDataFile) {
    add({NLSText("The file has %0:s bytes; a data file has at least %1:s."),
         {std::to_string(size_), std::to_string(kSmallestDataFile)}});
  }
  if (!identity_) add({NLSText("There is no identity record (item 00).")});
  if (networks_ > kMostNetworks) add(TooManyNetworks(networks_));
  if (bad_records_.size() == kMostFindings) {
    add({NLSText("Only the first %0:s bad records are told."), {std::to_string(kMostFindings)}});
  }
  findings.insert(findings.end(), bad_records_.begin(), bad_records_.end());
  return findings;
}

std::string DataFile::Print() const {
  std::string text;
  text.reserve(size_);
  for (const std::string& line : header_) text.append(line).append(kEndOfLine);
  for (const DataFileLine& line : lines_) text.append(line.Text()).append(kEndOfLine);
  return text;
}

Text TooManyNetworks(int networks) {
  return {NLSText("The file holds %0:s networks; a radio has at most %1:s."),
          {std::to_string(networks), std::to_string(kMostNetworks)}};
}

tl::expected<DataFile, Problem> ReadDataFile(const std::string& path) {
  platform::FileContents contents = platform::ReadWholeFile(path);
  if (contents.error) {
    return tl::unexpected(Problem{.error = std::move(contents.error), .procedure = "ReadDataFile"});
  }
  return DataFile::Parse(path, contents.bytes);
}

tl::expected<std::string, Problem> WriteDataFile(const DataFile& file, std::string_view procedure) {
  platform::NewFile out;
  if (platform::SystemError error = out.Open(file.Path()))
    return tl::unexpected(Problem{.error = std::move(error), .procedure = procedure});
  return WriteDataFile(file, out, procedure);
}

tl::expected<std::string, Problem> WriteDataFile(const DataFile& file, platform::NewFile& out,
                                                 std::string_view procedure) {
  const std::string bytes = file.Print();
  platform::FileCopy former = platform::KeepFormer(file.Path(), bytes);
  if (former.error)
    return tl::unexpected(Problem{.error = std::move(former.error), .procedure = "KeepCopy"});
  platform::SystemError error = out.Commit(bytes);
  if (!error) return former.path;
  if (former.is_new) platform::RemoveFile(former.path);
  return tl::unexpected(Problem{.error = std::move(error), .procedure = procedure});
}

}  // namespace zep::radiodb
