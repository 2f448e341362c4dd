#include "link/record.h"

#include "services/hex_text.h"

namespace zep::link {
namespace {

using services::NLSText;
using services::Text;

constexpr std::size_t kLengthAt = 4;

bool HasIdentityLength(std::string_view line) {
  constexpr std::size_t kCharacters = kRecordHeader + 2 * 17 + kRecordChecksum;
  return line.starts_with("000015") && line.size() == kCharacters;
}

}  // namespace

tl::expected<Record, Text> Record::Parse(std::string_view line) {
  if (!services::IsHexText(line) || line.size() < kRecordHeader + kRecordChecksum) {
    return tl::unexpected(Text{
        NLSText("This is no record: a record is made of pairs of the digits 0 to 9 and A to F, "
                "at least four of them.")});
  }
  const std::size_t length = RecordLength(line);
  if (line.size() != length && !HasIdentityLength(line)) {
    return tl::unexpected(
        Text{NLSText("The record has %0:s characters, but its length field asks for %1:s."),
             {std::to_string(line.size()), std::to_string(length)}});
  }
  const std::size_t checksum_at = line.size() - kRecordChecksum;
  std::string checksum = services::RecordChecksum(line.substr(0, checksum_at));
  if (line.substr(checksum_at) == checksum) return Record(std::string(line));
  return tl::unexpected(Text{NLSText("The record's checksum is %0:s, but should be %1:s."),
                             {std::string(line.substr(checksum_at)), std::move(checksum)}});
}

std::optional<Record> Record::ParseReply(std::string_view line) {
  const std::size_t length = RecordLength(line);
  if (length == 0 || line.size() < length) return std::nullopt;
  tl::expected<Record, Text> record = Parse(line.substr(0, length));
  if (!record) return std::nullopt;
  return std::move(*record);
}

Record::Record(std::string_view item, std::string_view second_byte, std::string_view data)
    : Record(WithHeader(
          std::string(item)
              .append(second_byte)
              .append(services::ConBytNumToHex(static_cast<std::uint8_t>(data.size() / 2))),
          data)) {}

Record Record::WithHeader(std::string_view header, std::string_view data) {
  std::string line;
  line.reserve(header.size() + data.size() + kRecordChecksum);
  line.append(header).append(data);
  line += services::RecordChecksum(line);
  return Record(std::move(line));
}

std::size_t Record::ItemNumber() const {
  return static_cast<std::size_t>(services::HexByte(Item()));
}

bool Record::IsEmpty() const { return IsEmptyRecord(line_); }

std::size_t RecordLength(std::string_view line) {
  if (line.size() < kRecordHeader) return 0;
  const auto bytes = static_cast<std::size_t>(services::HexByte(line.substr(kLengthAt, 2)));
  return kRecordHeader + 2 * bytes + kRecordChecksum;
}

bool IsEmptyRecord(std::string_view line) {
  return line.size() >= kRecordHeader && line.substr(kLengthAt, 2) == "00";
}

std::string GetRecordData(std::string_view line) {
  const std::size_t length = RecordLength(line);
  if (length == 0) return {};
  return std::string(line.substr(kRecordHeader, length - kRecordHeader - kRecordChecksum));
}

}  // namespace zep::link
