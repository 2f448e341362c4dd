// Files of radio data for the tests of upgrades, written line by line, and tables of texts.
#pragma once

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "services/hex_text.h"

namespace zep::testing {

// Counting bytes from first to last as hexadecimal text.
inline std::string Count(int first, int last) {
  std::string hex;
  for (int byte = first; byte <= last; ++byte)
    hex += services::ConBytNumToHex(static_cast<std::uint8_t>(byte));
  return hex;
}

inline std::string Repeat(std::string_view text, int times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

// The record with its checksum: the byte that makes the sum of all bytes a multiple of 256.
inline std::string Record(std::string_view header, std::string_view data) {
  std::string record = std::string(header) + std::string(data);
  int sum = 0;
  for (std::size_t at = 0; at < record.size(); at += 2)
    sum += std::stoi(record.substr(at, 2), nullptr, 16);
  return record + Count(256 - sum % 256, 256 - sum % 256);
}

// The identity record of "ZEP-H1512", a conventional radio of model 51, with hardware 0201 and a
// database version of four digits.
inline std::string Identity(std::string_view version) {
  std::string data = "5A45502D4831353132";
  for (const char digit : version) data += std::string("3") + digit;
  return Record("000011", data + "30323031");
}

// The fields of a row: "one|two||four".
inline std::vector<std::string> Fields(const std::string& row) {
  std::vector<std::string> fields;
  std::istringstream all(row + "|");
  for (std::string field; std::getline(all, field, '|');) fields.push_back(field);
  return fields;
}

inline std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

// A data file of these records behind a header.
inline std::string DataFileOf(const std::vector<std::string>& records) {
  return "***\r\nZEP Data File\r\nSaved with a test\r\n###\r\n---\r\n" + Lines(records);
}

}  // namespace zep::testing
