// Hexadecimal text: all data of a radio, on the line and in files, is upper-case hexadecimal, two
// characters a byte. The conversions are exact about what they accept, because files and radios
// have come to depend on it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zep::services {

class Session;

// The number that the text stands for, 0 when empty. A letter a to f passes as a digit but counts
// 32 more than its upper-case form. Any other character, or a result outside 32 bits with sign,
// shows an error box and gives 0.
std::int32_t ConHexNumToLng(Session& session, std::string_view text);

// Eight upper-case hex digits of a number from 0 to 4294967295; a number outside counts as the
// nearer end.
std::string ConLngNumToHex(double number);

// The byte of exactly two characters. Letters count as in ConHexNumToLng, but a character that is
// no digit counts 0 without a box; a text of another length shows an error box and gives 0.
std::int16_t ConHexByteToInt(Session& session, std::string_view text);

// The same without a box; for a text of another length 0.
int HexByte(std::string_view text);

// Two upper-case hex digits.
std::string ConBytNumToHex(std::uint8_t byte);

// The number divided by 256, for numbers from 0 to 65535. And its remainder.
std::uint8_t GetHighByte(std::int32_t number);
std::uint8_t GetLowByte(std::int32_t number);

enum class PadSide { kRight, kLeft };
// The text with pad put in front of it or behind it until it is at least width long, so a pad of
// several characters may make it longer. An empty pad changes nothing.
std::string PadString(std::string text, PadSide side, int width, std::string_view pad);

// The byte, as two hex digits, that makes the sum of all bytes of the text and itself a multiple of
// 256. A last single character shows the error box of ConHexByteToInt and counts 0. A sum above
// 32767 is reported as an overflow and gives an empty text, as for 129 bytes FF.
std::string CalcHexChecksum(Session& session, std::string_view text);

// Whether the text is whole bytes in upper-case hex digits.
bool IsHexText(std::string_view text);

// The checksum of a record, which may be longer than CalcHexChecksum can do, from its hex text.
std::string RecordChecksum(std::string_view record);

// The text that the bytes stand for, one character a byte, "?" where there is no byte; and back.
std::string ConHexToText(std::string_view hex);
std::string ConTextToHex(std::string_view text);

}  // namespace zep::services
