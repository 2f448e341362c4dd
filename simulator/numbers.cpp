#include "simulator/numbers.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace zep::simulator {

namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";

}  // namespace

std::string HexByte(std::uint8_t value) { return {kDigits[value / 16], kDigits[value % 16]}; }

std::string HexText(std::span<const std::uint8_t> bytes) {
  std::string text;
  text.reserve(2 * bytes.size());
  for (const std::uint8_t byte : bytes) text += HexByte(byte);
  return text;
}

std::optional<std::uint8_t> ByteFromHex(std::string_view text) {
  if (text.size() != 2) return std::nullopt;
  const std::size_t high = kDigits.find(text[0]);
  const std::size_t low = kDigits.find(text[1]);
  if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
  return static_cast<std::uint8_t>(16 * high + low);
}

std::optional<Bytes> BytesFromHex(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  Bytes bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t at = 0; at < text.size(); at += 2) {
    const std::optional<std::uint8_t> byte = ByteFromHex(text.substr(at, 2));
    if (!byte) return std::nullopt;
    bytes.push_back(*byte);
  }
  return bytes;
}

std::optional<int> Decimal(std::string_view text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, failure] = std::from_chars(text.data(), end, number);
  if (failure != std::errc{} || stop != end || number < 0) return std::nullopt;
  return number;
}

int VersionNumber(std::string_view version) {
  std::string digits(version);
  std::erase(digits, '.');
  return Decimal(digits).value_or(0);
}

std::string RecordText(std::uint8_t item, std::uint8_t second, std::span<const std::uint8_t> data) {
  Bytes record{item, second, static_cast<std::uint8_t>(data.size())};
  record.insert(record.end(), data.begin(), data.end());
  return TextWithChecksum(std::move(record));
}

std::string TextWithChecksum(Bytes bytes) {
  bytes.push_back(static_cast<std::uint8_t>(256 - ByteSum(bytes)));
  return HexText(bytes);
}

std::uint8_t ByteSum(std::span<const std::uint8_t> bytes) {
  unsigned sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return static_cast<std::uint8_t>(sum % 256);
}

std::uint8_t DecimalCounter(std::size_t number) {
  return static_cast<std::uint8_t>(number / 10 % 10 * 16 + number % 10);
}

Bytes BytesOf(std::string_view text) { return {text.begin(), text.end()}; }

std::string TextOf(std::span<const std::uint8_t> bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace zep::simulator
