// Numbers and hexadecimal text as the radio's own firmware would handle them: upper-case digits,
// two a byte.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zep::simulator {

using Bytes = std::vector<std::uint8_t>;

// Two upper-case hexadecimal digits.
std::string HexByte(std::uint8_t value);
std::string HexText(std::span<const std::uint8_t> bytes);
// Nothing when the text is odd in length or holds anything but digits and upper-case A to F.
std::optional<Bytes> BytesFromHex(std::string_view text);
// The byte that two hexadecimal digits stand for.
std::optional<std::uint8_t> ByteFromHex(std::string_view text);

// A whole text as a decimal number of 0 or more.
std::optional<int> Decimal(std::string_view text);
// The digits of a version text as one number: "0402" and "4.02" are both 402.
int VersionNumber(std::string_view version);

// A record line: item, second header byte, length, data and checksum.
std::string RecordText(std::uint8_t item, std::uint8_t second, std::span<const std::uint8_t> data);
// The bytes and the one that makes the sum of all 0 modulo 256.
std::string TextWithChecksum(Bytes bytes);
// The sum of all bytes modulo 256; 0 for a whole record.
std::uint8_t ByteSum(std::span<const std::uint8_t> bytes);
// The two decimal digits of number (modulo 100) in one byte: record 12 is 0x12.
std::uint8_t DecimalCounter(std::size_t number);

Bytes BytesOf(std::string_view text);
std::string TextOf(std::span<const std::uint8_t> bytes);

}  // namespace zep::simulator
