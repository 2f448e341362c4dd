#include "simulator/personality.h"

#include <algorithm>
#include <span>

namespace zep::simulator {

namespace {

template <typename Map>
auto* FindIn(Map& items, std::uint8_t number) {
  const auto found = items.find(number);
  return found == items.end() ? nullptr : &found->second;
}

}  // namespace

const Item* Personality::Find(int network, std::uint8_t number) const {
  const Item* item = FindIn(common, number);
  return item != nullptr ? item
                         : FindIn(networks.at(static_cast<std::size_t>(network - 1)), number);
}

Item* Personality::Find(int network, std::uint8_t number) {
  Item* item = FindIn(common, number);
  return item != nullptr ? item
                         : FindIn(networks.at(static_cast<std::size_t>(network - 1)), number);
}

Bytes Personality::List(int network) const {
  Items all = networks.at(static_cast<std::size_t>(network - 1));
  all.insert(common.begin(), common.end());
  Bytes numbers;
  for (const auto& [number, item] : all) {
    if (item.use != ItemUse::kHidden) numbers.push_back(number);
  }
  return numbers;
}

std::size_t Personality::DynamicBytes(int network) const {
  std::size_t bytes = 0;
  for (const auto& [number, item] : networks.at(static_cast<std::size_t>(network - 1))) {
    if (item.use == ItemUse::kTable) bytes += item.data.size();
  }
  return bytes;
}

std::vector<std::string> RecordsOf(std::uint8_t number, const Item& item) {
  std::vector<std::string> records;
  const std::span<const std::uint8_t> data(item.data);
  std::size_t at = 0;
  do {
    const std::size_t length = std::min(item.record_size, data.size() - at);
    records.push_back(RecordText(number, DecimalCounter(records.size()), data.subspan(at, length)));
    at += length;
  } while (at < data.size());
  return records;
}

std::uint16_t CalibrationSum(const Bytes& calibration) {
  unsigned sum = 0;
  for (std::size_t at = 0; at + 2 < calibration.size(); ++at) sum += calibration[at];
  return static_cast<std::uint16_t>(sum % 65536);
}

bool HasCalibrationSum(const Bytes& calibration) {
  const std::size_t size = calibration.size();
  const std::uint16_t sum = CalibrationSum(calibration);
  return size > 2 && calibration[size - 2] == sum / 256 && calibration[size - 1] == sum % 256;
}

}  // namespace zep::simulator
