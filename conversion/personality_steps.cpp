#include "conversion/personality_steps.h"

#include <algorithm>
#include <string>

#include "conversion/display_texts.h"
#include "services/hex_text.h"

namespace zep::conversion {
namespace {

using services::NLSText;
using services::Text;

constexpr std::size_t kScanGroupBytes = 29;
constexpr std::size_t kFirstMember = 13;  // of the 16 channels that a scan group refers to
constexpr std::size_t kLastMember = 28;

// Kept: IDs and references are single bytes, so none is ever 510 and no record is removed.
constexpr int kReservedId = 510;

std::string ItemNumber(std::size_t item) {
  return services::ConBytNumToHex(static_cast<std::uint8_t>(item));
}

// Remarks when the default settings lack a byte that a step is about to take.
void CheckDefault(const ConversionData& data, std::size_t item, std::size_t byte) {
  if (data.defaults[item].size() >= 2 * (byte + 1)) return;
  data.remarks.push_back(
      {Text{NLSText("Item %0:s of the default settings has no byte %1:s, 00 is used"),
            {ItemNumber(item), std::to_string(byte)}}});
}

// Takes a byte from the default settings.
void TakeDefaultByte(const ConversionData& data, std::size_t item, std::size_t byte) {
  CheckDefault(data, item, byte);
  if (CopyWholeByte(data.items[item], data.defaults[item], byte)) return;
  data.remarks.push_back(
      {Text{NLSText("Item %0:s of the saved data has no byte %1:s and is kept as it is"),
            {ItemNumber(item), std::to_string(byte)}}});
}

// Kept: a copy without bits, which changes nothing.
void TakeNoDefaultBits(const ConversionData& data, std::size_t item, std::size_t byte) {
  CopyByte(data.items[item], data.defaults[item], byte, {});
}

// Cuts an item into records, has each changed, and joins them again.
template <typename Change>
void ChangeRecords(const ConversionData& data, std::size_t item, std::size_t record_bytes,
                   Change change) {
  std::string joined;
  joined.reserve(data.items[item].size());
  for (std::string& record : SplitMultiItem(data.items[item], record_bytes)) {
    change(record);
    joined += record;
  }
  const std::string_view tail = TailOfMultiItem(data.items[item], record_bytes);
  if (!tail.empty()) {
    data.remarks.push_back(
        {Text{NLSText("Item %0:s is no whole number of records of %1:s bytes; the %2:s bytes "
                      "behind the last one are kept as they are"),
              {ItemNumber(item), std::to_string(record_bytes), std::to_string(tail.size() / 2)}}});
  }
  data.items[item] = joined.append(tail);
}

bool HasReservedId(std::string_view record, std::size_t first, std::size_t last) {
  for (std::size_t byte = first; byte <= last; ++byte) {
    if (GetByte(record, byte) == kReservedId) return true;
  }
  return false;
}

void RemoveRecord(const ConversionData& data, std::string& record, std::string_view why) {
  data.remarks.push_back({.text = {why}, .needs_box = true});
  record.clear();
}

void CheckChannelId(const ConversionData& data, std::string& channel) {
  if (!HasReservedId(channel, 0, 0)) return;
  RemoveRecord(data, channel,
               NLSText("A Channel is using the ID 510 which may not be utilised from database "
                       "version 4.02 onwards. This Channel will be removed."));
}

void CheckScanGroupIds(const ConversionData& data, std::string& scan_group) {
  if (HasReservedId(scan_group, 0, 0)) {
    RemoveRecord(data, scan_group,
                 NLSText("An ordinary Scan Group is using the ID 510 which may not be utilised "
                         "from database version 4.02 onwards. This Scan Group will be removed."));
  } else if (HasReservedId(scan_group, kFirstMember, kLastMember)) {
    RemoveRecord(
        data, scan_group,
        NLSText("An ordinary Scan Group is referencing Channel ID 510 which may not be utilised "
                "from database version 4.02 onwards. This Scan Group will be removed."));
  }
}

constexpr PersonalityStep kSteps[] = {{400, ConvertTo400}, {401}, {402, ConvertTo402},
                                      {403, ConvertTo403}, {404}, {405}};

}  // namespace

std::size_t TableRecordBytes(std::size_t item, int version) {
  if (item == kChannels) return version < 400 ? 19 : 18;
  return item == kScanGroups ? kScanGroupBytes : 0;
}

void ConvertTo400(const ConversionData& data) {
  TakeDefaultByte(data, 5, 0);
  TakeDefaultByte(data, 5, 4);
  TakeDefaultByte(data, 6, 4);

  const std::string& default_channels = data.defaults[kChannels];
  if (!data.items[kChannels].empty()) {
    CheckDefault(data, kChannels, 7);
    CheckDefault(data, kChannels, 13);
  }
  const std::size_t new_bytes = TableRecordBytes(kChannels, 400);
  ChangeRecords(data, kChannels, TableRecordBytes(kChannels, 399), [&](std::string& channel) {
    CopyWholeByte(channel, default_channels, 7);
    CopyByte(channel, default_channels, 13, {6, 7});
    CopyByte(channel, default_channels, 17, {});  // Kept: no bits, no change.
    channel.resize(2 * new_bytes);
  });

  TakeNoDefaultBits(data, 43, 20);
  TakeNoDefaultBits(data, 43, 21);
}

void ConvertTo402(const ConversionData& data) {
  TakeDefaultByte(data, 5, 4);
  TakeDefaultByte(data, 7, 1);
  ChangeRecords(data, kChannels, TableRecordBytes(kChannels, 402),
                [&](std::string& channel) { CheckChannelId(data, channel); });
  ChangeRecords(data, kScanGroups, kScanGroupBytes,
                [&](std::string& scan_group) { CheckScanGroupIds(data, scan_group); });
  data.items[kDisplayTexts] = DisplayTextTable();
}

void ConvertTo403(const ConversionData& data) {
  TakeNoDefaultBits(data, 13, 8);
  TakeNoDefaultBits(data, 13, 9);
  if (!data.items[kChannels].empty()) CheckDefault(data, kChannels, 14);
  ChangeRecords(data, kChannels, TableRecordBytes(kChannels, 403), [&](std::string& channel) {
    CopyByte(channel, data.defaults[kChannels], 14, {4, 5, 6, 7});
  });
}

std::span<const PersonalityStep> PersonalitySteps() { return kSteps; }

void RecordVersion(ItemArray& items, std::string_view version) {
  constexpr std::size_t kVersionAt = 18;
  constexpr std::size_t kBehindVersion = 26;
  std::string& item = items[kConfiguration];
  const std::string rest = item.substr(std::min(kBehindVersion, item.size()));
  item = item.substr(0, kVersionAt) + services::ConTextToHex(version) + rest;
}

}  // namespace zep::conversion
