#include "link/record_text.h"

#include "services/hex_text.h"

namespace zep::link {
namespace {

// The data behind a length field of two characters that starts at this offset.
std::string DataAfterLength(services::Session& session, std::string_view line,
                            std::size_t length_at) {
  if (line.size() < length_at + 2) return {};
  const auto length =
      static_cast<std::size_t>(services::ConHexByteToInt(session, line.substr(length_at, 2)));
  return std::string(line.substr(length_at + 2, 2 * length));
}

}  // namespace

bool IsEmptyRecord(std::string_view record) {
  return record.size() >= 6 && record.substr(4, 2) == "00";
}

bool IsIntactRecord(services::Session& session, std::string_view record) {
  if (record.size() < 8) return false;
  const auto length =
      static_cast<std::size_t>(services::ConHexByteToInt(session, record.substr(4, 2)));
  const std::size_t checksum_at = 6 + 2 * length;
  return record.size() >= checksum_at + 2 &&
         services::CalcHexChecksum(session, record.substr(0, checksum_at)) ==
             record.substr(checksum_at, 2);
}

std::string GetRecordData(services::Session& session, std::string_view record) {
  return DataAfterLength(session, record, 4);
}

std::string GetListData(services::Session& session, std::string_view line) {
  return DataAfterLength(session, line, 2);
}

}  // namespace zep::link
