#include "link/record_text.h"

#include "services/hex_text.h"

namespace zep::link {
namespace {

constexpr std::size_t kRecordLengthAt = 4;
constexpr std::size_t kListLengthAt = 2;

// The number of data characters that the length field at this offset announces; 0 when the line
// ends before it.
std::size_t DataLength(services::Session& session, std::string_view line, std::size_t length_at) {
  if (line.size() < length_at + 2) return 0;
  return 2 *
         static_cast<std::size_t>(services::ConHexByteToInt(session, line.substr(length_at, 2)));
}

std::string DataAfterLength(services::Session& session, std::string_view line,
                            std::size_t length_at) {
  const std::size_t length = DataLength(session, line, length_at);
  return length == 0 ? std::string() : std::string(line.substr(length_at + 2, length));
}

}  // namespace

bool IsEmptyRecord(std::string_view record) {
  return record.size() >= kRecordLengthAt + 2 && record.substr(kRecordLengthAt, 2) == "00";
}

bool IsIntactRecord(services::Session& session, std::string_view record) {
  const std::size_t checksum_at =
      kRecordLengthAt + 2 + DataLength(session, record, kRecordLengthAt);
  if (record.size() < checksum_at + 2) return false;
  const std::string_view summed = record.substr(0, checksum_at);
  return services::IsHexText(summed) &&
         services::RecordChecksum(summed) == record.substr(checksum_at, 2);
}

bool IsIntactListLine(services::Session& session, std::string_view line) {
  constexpr std::size_t kHeaderLength = kListLengthAt + 2;
  return line.size() < kHeaderLength ||
         line.size() >= kHeaderLength + DataLength(session, line, kListLengthAt);
}

std::string GetRecordData(services::Session& session, std::string_view record) {
  return DataAfterLength(session, record, kRecordLengthAt);
}

std::string GetListData(services::Session& session, std::string_view line) {
  return DataAfterLength(session, line, kListLengthAt);
}

}  // namespace zep::link
