// An item record: some data of one of the numbered items that a radio's database is made of. On the
// line and in files it is a line of upper-case hexadecimal text that carries its own length and
// checksum:
//
//   item number (2), a second header byte (2), data length N in bytes (2), data (2N), checksum (2)
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>

#include "services/text.h"

namespace zep::link {

// In characters: the fields before a record's data, and the one behind it.
inline constexpr std::size_t kRecordHeader = 6;
inline constexpr std::size_t kRecordChecksum = 2;

// A sound record. Its length field is that of its data, but for one kind of record that files and
// radios have otherwise (see Parse).
class Record {
 public:
  // From a line that holds nothing else; what is wrong with the line when it is no record.
  // Kept: the identity record of the radios with the longest item "00" claims 21 bytes and has 17.
  static tl::expected<Record, services::Text> Parse(std::string_view line);
  // From the beginning of a line that a radio has sent; what follows the record is not looked at.
  // Nothing when the line is shorter than its length field says or the checksum is wrong.
  static std::optional<Record> ParseReply(std::string_view line);

  // Of an item (two digits), with a second header byte (two digits) and at most 255 bytes of data.
  // The length and the checksum are computed.
  Record(std::string_view item, std::string_view second_byte, std::string_view data);
  // With a header of six digits as it stands.
  static Record WithHeader(std::string_view header, std::string_view data);

  // Two digits, and as a number: 0 to 255.
  std::string_view Item() const { return Line().substr(0, 2); }
  std::size_t ItemNumber() const;
  std::string_view SecondByte() const { return Line().substr(2, 2); }
  // Both of them and the length.
  std::string_view Header() const { return Line().substr(0, kRecordHeader); }
  // Hexadecimal text.
  std::string_view Data() const {
    return Line().substr(kRecordHeader, line_.size() - kRecordHeader - kRecordChecksum);
  }
  std::string_view Checksum() const { return Line().substr(line_.size() - kRecordChecksum); }
  // Its length field is "00": such a record is never stored and never sent.
  bool IsEmpty() const;

  // As it is written, without an end of line.
  std::string_view Line() const { return line_; }

  bool operator==(const Record&) const = default;

 private:
  explicit Record(std::string line) : line_(std::move(line)) {}

  std::string line_;
};

// The following take any line as a record, as it comes from a radio or a damaged file.

// In characters, from the length field; 0 when the line ends before it.
std::size_t RecordLength(std::string_view line);
// Whether the length field is "00".
bool IsEmptyRecord(std::string_view line);
// The data characters: what there is of them when the line is too short.
std::string GetRecordData(std::string_view line);

}  // namespace zep::link
