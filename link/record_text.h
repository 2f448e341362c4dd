// The fields of an item record and of a line of the item list, which are lines of hexadecimal text.
//
//   record      item number (2), a second header byte (2), data length N in bytes (2), data (2N),
//               checksum (2)
//   list line   two characters, length N in bytes (2), data (2N)
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "services/session.h"

namespace zep::link {

// In characters: the fields before a record's data, and the one behind it.
inline constexpr std::size_t kRecordHeader = 6;
inline constexpr std::size_t kRecordChecksum = 2;

// What ends the answer to a command, and a command.
inline constexpr std::string_view kPrompt = ">";
inline constexpr std::string_view kCarriageReturn = "\r";

// The length field is "00": such a record is never stored and never sent.
bool IsEmptyRecord(std::string_view record);

// The record is as long as its length field says and its checksum is right. What follows is not
// looked at.
bool IsIntactRecord(services::Session& session, std::string_view record);

// The line of the item list holds as many items as its count says. A line too short for a count
// holds none and is none the worse; what follows the items is not looked at.
bool IsIntactListLine(services::Session& session, std::string_view line);

// The data characters of a record, or of a line of the item list; what there is of them when the
// line is too short, nothing when it is too short for its length field.
std::string GetRecordData(services::Session& session, std::string_view record);
std::string GetListData(services::Session& session, std::string_view line);

}  // namespace zep::link
