#include "conversion/item_differences.h"

#include <algorithm>

#include "conversion/personality_steps.h"

namespace zep::conversion {
namespace {

constexpr std::size_t kBytesInRow = 16;

std::string_view BytesOf(std::string_view text, std::size_t first, std::size_t count) {
  return text.substr(std::min(2 * first, text.size()), 2 * count);
}

// Compares two runs of bytes that belong together; place tells where they are.
void CompareRun(std::string_view before, std::string_view after, const ItemDifference& place,
                std::vector<ItemDifference>& differences) {
  const std::size_t end = (std::max(before.size(), after.size()) + 1) / 2;
  for (std::size_t byte = 0; byte < end;) {
    std::size_t count = 0;
    while (count < kBytesInRow && byte + count < end &&
           BytesOf(before, byte + count, 1) != BytesOf(after, byte + count, 1)) {
      ++count;
    }
    if (count > 0) {
      ItemDifference difference = place;
      difference.byte = byte;
      difference.before = BytesOf(before, byte, count);
      difference.after = BytesOf(after, byte, count);
      differences.push_back(std::move(difference));
    }
    byte += std::max<std::size_t>(count, 1);
  }
}

}  // namespace

void CompareItem(const ItemPair& pair, std::vector<ItemDifference>& differences) {
  ItemDifference place{.network = pair.network, .item = pair.item};
  if (pair.record_bytes_before == 0 || pair.record_bytes_after == 0) {
    CompareRun(pair.before, pair.after, place, differences);
    return;
  }
  std::string_view before = pair.before;
  std::string_view after = pair.after;
  while (!before.empty() || !after.empty()) {
    ++place.record;
    const std::string_view old_record = BytesOf(before, 0, pair.record_bytes_before);
    const std::string_view new_record = BytesOf(after, 0, pair.record_bytes_after);
    CompareRun(old_record, new_record, place, differences);
    before.remove_prefix(old_record.size());
    after.remove_prefix(new_record.size());
  }
}

std::vector<ItemDifference> CompareItems(int network, const ItemArray& before, int version_before,
                                         const ItemArray& after, int version_after) {
  std::vector<ItemDifference> differences;
  for (std::size_t item = 0; item < kItemCount; ++item) {
    if (before[item] == after[item]) continue;
    CompareItem({.network = network,
                 .item = item,
                 .before = before[item],
                 .after = after[item],
                 .record_bytes_before = TableRecordBytes(item, version_before),
                 .record_bytes_after = TableRecordBytes(item, version_after)},
                differences);
  }
  return differences;
}

}  // namespace zep::conversion
