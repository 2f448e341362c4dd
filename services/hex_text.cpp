#include "services/hex_text.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "services/messages.h"

namespace zep::services {
namespace {

constexpr int kOverflow = 6;
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

bool IsHexLetter(char character) {
  return (character >= 'A' && character <= 'F') || (character >= 'a' && character <= 'f');
}

// Kept: a lower-case letter is valued by the rule for upper-case ones, 42 to 47. Data of a radio is
// always upper case, and a file that is not must not read as if it were.
int LetterValue(char character) { return character - 55; }

int DigitOrNothing(char character) {
  if (IsDigit(character)) return character - '0';
  return IsHexLetter(character) ? LetterValue(character) : 0;
}

bool FitsLong(double value) {
  return value >= std::numeric_limits<std::int32_t>::min() &&
         value <= std::numeric_limits<std::int32_t>::max();
}

std::int32_t NumberError(Session& session, int number, const std::string& description) {
  NLSMsgBox(session,
            NLSFmt(session, "Error Number: %0:s, %1:s", {std::to_string(number), description}),
            {.icon = Icon::kCritical, .title = "ConHexNumToLng"});
  return 0;
}

}  // namespace

std::int32_t ConHexNumToLng(Session& session, std::string_view text) {
  double sum = 0;
  double weight = 1;
  for (std::size_t at = text.size(); at-- > 0; weight *= 16) {
    const char character = text[at];
    if (!IsDigit(character) && !IsHexLetter(character)) return NumberError(session, 0, "");
    const double term = DigitOrNothing(character) * weight;
    sum += term;
    if (!FitsLong(term) || !FitsLong(sum))
      return NumberError(session, kOverflow, NLSFmt(session, "Overflow"));
  }
  return static_cast<std::int32_t>(sum);
}

std::string ConLngNumToHex(double number) {
  std::string text;
  double rest = std::clamp(number, 0.0, 4294967295.0);
  for (const double divisor : {16777216.0, 65536.0, 256.0, 1.0}) {
    const double quotient = std::floor(rest / divisor);
    text += ConBytNumToHex(static_cast<std::uint8_t>(quotient));
    rest -= quotient * divisor;
  }
  return text;
}

std::int16_t ConHexByteToInt(Session& session, std::string_view text) {
  if (text.size() != 2) {
    NLSMsgBox(session,
              NLSFmt(session, "Data: %0:s is not correct length [ConHexByteToInt]", {text}),
              {.icon = Icon::kCritical});
    return 0;
  }
  return static_cast<std::int16_t>(HexByte(text));
}

int HexByte(std::string_view text) {
  return text.size() == 2 ? DigitOrNothing(text[0]) * 16 + DigitOrNothing(text[1]) : 0;
}

std::string ConBytNumToHex(std::uint8_t byte) {
  return {kHexDigits[byte / 16U], kHexDigits[byte % 16U]};
}

std::uint8_t GetHighByte(std::int32_t number) { return static_cast<std::uint8_t>(number / 256); }

std::uint8_t GetLowByte(std::int32_t number) { return static_cast<std::uint8_t>(number % 256); }

std::string PadString(std::string text, PadSide side, int width, std::string_view pad) {
  if (pad.empty()) return text;
  while (std::cmp_less(text.size(), width)) {
    text.insert(side == PadSide::kLeft ? 0 : text.size(), pad);
  }
  return text;
}

std::string CalcHexChecksum(Session& session, std::string_view text) {
  int sum = 0;
  for (std::size_t at = 0; at < text.size(); at += 2) {
    sum += ConHexByteToInt(session, text.substr(at, 2));
    if (sum > std::numeric_limits<std::int16_t>::max()) {
      ReportError(session, {kOverflow, NLSFmt(session, "Overflow"), "", "", {}}, "CalcHexChecksum");
      return "";
    }
  }
  return ConBytNumToHex(static_cast<std::uint8_t>(256 - sum % 256));
}

bool IsHexText(std::string_view text) {
  return text.size() % 2 == 0 && text.find_first_not_of(kHexDigits) == text.npos;
}

std::string RecordChecksum(std::string_view record) {
  int sum = 0;
  for (std::size_t at = 0; at + 1 < record.size(); at += 2) sum += HexByte(record.substr(at, 2));
  return ConBytNumToHex(static_cast<std::uint8_t>(256 - sum % 256));
}

std::string ConHexToText(std::string_view hex) {
  std::string text;
  for (std::size_t at = 0; at + 1 < hex.size(); at += 2) {
    const std::string_view digits = hex.substr(at, 2);
    text += IsHexText(digits) ? static_cast<char>(HexByte(digits)) : '?';
  }
  return text;
}

std::string ConTextToHex(std::string_view text) {
  std::string hex;
  for (const char character : text) hex += ConBytNumToHex(static_cast<std::uint8_t>(character));
  return hex;
}

}  // namespace zep::services
