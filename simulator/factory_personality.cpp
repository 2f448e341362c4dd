#include "simulator/factory_personality.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/noise.h"

namespace zep::simulator {

namespace {

// Bytes of data in a record, unless the item says otherwise.
constexpr std::size_t kRecordSize = 32;

constexpr std::uint8_t kChannels = 0x15;
constexpr std::uint8_t kScanGroups = 0x16;
constexpr std::uint8_t kDisplayTexts = 0x1E;
constexpr std::size_t kScanGroupSize = 29;

struct ItemLayout {
  std::uint8_t number;
  std::uint16_t size;
  ItemUse use = ItemUse::kPlain;
};

// clang-format off
// What radios of all types have, besides the tables.
constexpr ItemLayout kSharedLayout[] = {
    {0x01, 16, ItemUse::kCommon}, {0x02, 8, ItemUse::kCommon}, {0x03, 12, ItemUse::kCommon},
    {0x04, 32}, {0x05, 8},  {0x06, 6},  {0x07, 4},   {0x08, 20}, {0x09, 2},  {0x0A, 40}, {0x0B, 0},
    {0x0C, 10}, {0x0D, 12}, {0x0E, 64}, {0x0F, 3},   {0x10, 16}, {0x11, 5},  {0x12, 96}, {0x13, 1},
    {0x14, 30}, {0x17, 48}, {0x18, 0},  {0x19, 7},   {0x1A, 22}, {0x1B, 128}, {0x1C, 9}, {0x1D, 4},
    {0x1F, 36}, {0x20, 2},  {0x21, 14}, {0x22, 80},  {0x23, 6},  {0x24, 11}, {0x25, 0},  {0x26, 18},
    {0x2B, 24, ItemUse::kCommon},
};

constexpr ItemLayout kConventionalLayout[] = {
    {0x28, 4, ItemUse::kReadOnly},  {0x29, 8, ItemUse::kReadOnly},
    {0x2D, 16, ItemUse::kReadOnly}, {0x2E, 2, ItemUse::kReadOnly},
    {0x2F, 12}, {0x30, 20},
};

constexpr ItemLayout kTrunkedLayout[] = {
    {0x28, 4},  {0x29, 8},  {0x2D, 16}, {0x2E, 2},  {0x30, 20}, {0x31, 9},
    {0x32, 60, ItemUse::kCommon},   {0x33, 44, ItemUse::kCommon},
    {0x34, 72}, {0x35, 18}, {0x36, 6},  {0x37, 33}, {0x38, 0},  {0x39, 10}, {0x3A, 96}, {0x3B, 5},
    {0x41, 12}, {0x42, 7},  {0x43, 40}, {0x44, 3},  {0x49, 14}, {0x4A, 28}, {0x4B, 2},  {0x4C, 50},
    {0x2F, 4, ItemUse::kReadOnly},  {0x3E, 8, ItemUse::kReadOnly}, {0x3F, 2, ItemUse::kReadOnly},
    {0x45, 16, ItemUse::kReadOnly}, {0x46, 4, ItemUse::kReadOnly}, {0x48, 1, ItemUse::kReadOnly},
};
// clang-format on

// Made-up contents of an item: the same for the same radio, but others in another version of the
// database, so that data written back after an upgrade can be told from data that was there
// already.
Bytes Contents(const RadioProfile& profile, int network, std::uint8_t item, std::size_t size) {
  std::string seed =
      std::to_string(profile.serial_number.value_or(0)) + "/" + profile.versions.database;
  seed += "/" + std::to_string(network) + "/" + HexByte(item);
  return NoiseBytes(SeedOf(seed), size);
}

// Records that begin with their number, as channels and scan groups do.
Item Table(const RadioProfile& profile, int network, std::uint8_t number, std::size_t records,
           std::size_t record_size) {
  Bytes data = Contents(profile, network, number, records * record_size);
  for (std::size_t record = 0; record < records; ++record) {
    data[record * record_size] = static_cast<std::uint8_t>(record + 1);
  }
  return {ItemUse::kTable, 5 * data.size(), record_size, std::move(data)};
}

// Texts for the display, each ended by 0xFE, filled up with empty ones.
Bytes DisplayTexts(std::size_t size) {
  Bytes texts{0x00};
  for (int key = 1; key <= 40; ++key) {
    const Bytes text = BytesOf("KEY " + std::to_string(key) + "\xFE");
    texts.insert(texts.end(), text.begin(), text.end());
  }
  texts.resize(size, 0xFE);
  return texts;
}

// Bytes of calibration data from version 100 on; the layout is told by the length.
constexpr std::size_t kCalibrationSizes[] = {130, 138, 141, 134};

std::size_t CalibrationSize(std::string_view version) {
  const int number = std::clamp(VersionNumber(version), 100, 103);
  return kCalibrationSizes[number - 100];
}

Bytes MakeCalibration(const RadioProfile& profile) {
  const std::size_t size = CalibrationSize(profile.versions.calibration);
  Bytes calibration = Contents(profile, 0, CalibrationItem(profile), size);
  const std::uint16_t sum = CalibrationSum(calibration);
  calibration[size - 2] = static_cast<std::uint8_t>(sum / 256);
  calibration[size - 1] = static_cast<std::uint8_t>(sum % 256);
  return calibration;
}

Bytes SerialNumberData(const RadioProfile& profile) {
  if (!profile.serial_number) return Bytes(3, 0xFF);
  const std::uint32_t number = *profile.serial_number;
  return {static_cast<std::uint8_t>(number >> 16), static_cast<std::uint8_t>(number >> 8),
          static_cast<std::uint8_t>(number)};
}

Bytes BandData(const RadioProfile& profile) {
  if (!profile.band) return Bytes(6, 0xFF);
  return {*profile.band, static_cast<std::uint8_t>(profile.bandwidth), 0x00, 0x00, 0x00, 0x00};
}

// The compliance code that each high nibble of the band byte stands for.
constexpr std::string_view kComplianceCodes = "ABCD02345EFGHZL?";

// Nine characters: band letter, bandwidth and compliance code at places 5, 6 and 9.
std::string ModelString(const RadioProfile& profile) {
  const unsigned band = profile.band.value_or(0x48);
  const char letter =
      band % 16 >= 1 && band % 16 <= 11 ? static_cast<char>('A' + band % 16 - 1) : 'H';
  return std::string("ZEP-") + letter + profile.bandwidth + profile.model_code +
         kComplianceCodes[band / 16];
}

Item FactoryItem(ItemUse use, Bytes data) {
  const std::size_t size = data.size();
  return {use, size, kRecordSize, std::move(data)};
}

// The items that tell who the radio is.
void AddIdentity(Items& items, const RadioProfile& profile) {
  const bool trunked = profile.IsTrunked();
  items[kIdentityItem] = FactoryItem(ItemUse::kHidden, BytesOf(IdentityText(profile)));
  items[kIdentityItem].record_size = 255;
  items[trunked ? 0x40 : 0x2A] = FactoryItem(ItemUse::kHidden, BandData(profile));
  const ItemUse serial_number_use = trunked ? ItemUse::kReadOnly : ItemUse::kHidden;
  items[trunked ? 0x3D : 0x27] = FactoryItem(serial_number_use, SerialNumberData(profile));
  if (trunked) {
    const auto mask =
        static_cast<std::uint8_t>((1U << static_cast<unsigned>(profile.networks)) - 1);
    items[0x3C] = FactoryItem(ItemUse::kHidden, {mask});
  }
}

// The items of one network (counted from 1), or with network 0 those that all share.
Items MakeItems(const RadioProfile& profile, std::span<const ItemLayout> layouts, int network) {
  Items items;
  for (const ItemLayout& layout : layouts) {
    if ((layout.use == ItemUse::kPlain) != (network > 0)) continue;
    items[layout.number] =
        FactoryItem(layout.use, Contents(profile, network, layout.number, layout.size));
  }
  return items;
}

}  // namespace

Personality MakePersonality(const RadioProfile& profile) {
  std::vector<ItemLayout> layouts(std::begin(kSharedLayout), std::end(kSharedLayout));
  if (profile.IsTrunked()) {
    layouts.insert(layouts.end(), std::begin(kTrunkedLayout), std::end(kTrunkedLayout));
  } else {
    layouts.insert(layouts.end(), std::begin(kConventionalLayout), std::end(kConventionalLayout));
  }
  const int version = VersionNumber(profile.versions.database);
  const std::size_t channel_size = version < 400 ? 19 : 18;
  const std::size_t display_size = version < 402 ? 402 : 625;

  Personality personality;
  personality.common = MakeItems(profile, layouts, 0);
  AddIdentity(personality.common, profile);
  personality.common[kDisplayTexts] = FactoryItem(ItemUse::kCommon, DisplayTexts(display_size));
  personality.common[CalibrationItem(profile)] =
      FactoryItem(ItemUse::kCommon, MakeCalibration(profile));
  for (int network = 1; network <= profile.networks; ++network) {
    Items& items = personality.networks.at(static_cast<std::size_t>(network - 1));
    items = MakeItems(profile, layouts, network);
    items[kChannels] = Table(profile, network, kChannels, 40, channel_size);
    items[kScanGroups] = Table(profile, network, kScanGroups, 8, kScanGroupSize);
  }
  return personality;
}

std::uint8_t CalibrationItem(const RadioProfile& profile) {
  return profile.IsTrunked() ? 0x47 : 0x2C;
}

std::string IdentityText(const RadioProfile& profile) {
  const Versions& versions = profile.versions;
  std::string software = versions.firmware;
  if (profile.item_0_format == 58) software += "," + profile.hardware;
  if (profile.item_0_format == 66) software += ",STD," + profile.hardware;
  return ModelString(profile) + software + versions.database + "," + versions.calibration + "01";
}

}  // namespace zep::simulator
