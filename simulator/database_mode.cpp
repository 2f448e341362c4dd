#include "simulator/database_mode.h"

#include <algorithm>
#include <optional>
#include <span>

#include "simulator/factory_personality.h"
#include "simulator/numbers.h"

namespace zep::simulator {

namespace {

constexpr char kCarriageReturn = '\r';
constexpr std::string_view kPrompt = ">";

constexpr std::size_t kItemsPerListLine = 32;
constexpr std::size_t kLongestData = 64;  // bytes of data that fit the radio's line buffer
constexpr std::size_t kFrameSize = 4;     // item, second header byte, length and checksum

// Sent after a firmware download: the trunked radio takes up its networks anew. It is accepted in
// any state, without "b", and although its checksum is not right.
constexpr std::string_view kTakeUpNetworks = "w4F80010000";

// Where the identity line of a data file holds the model code and the database version.
constexpr std::size_t kModelCodeOffset = 6;
constexpr std::size_t kVersionOffset = 9;

}  // namespace

void DatabaseMode::Restart() {
  in_command_set_ = writing_ = false;
  network_ = 1;
  line_.clear();
}

void DatabaseMode::Receive(std::uint8_t byte) {
  if (byte == '^') return Caret();
  if (byte == '#') return Prompt();
  if (byte != kCarriageReturn) {
    line_ += static_cast<char>(byte);
    return;
  }
  const std::string command = std::exchange(line_, {});
  if (in_command_set_) Execute(command);
}

void DatabaseMode::Caret() {
  line_.clear();
  in_command_set_ = writing_ = false;
  voice_.Answer(Step::kCaret, "v");
}

void DatabaseMode::Prompt() {
  line_.clear();
  in_command_set_ = true;
  network_ = 1;
  voice_.Answer(Step::kPrompt, [this]() -> std::string {
    if (corrupt_) return voice_.ErrorReply("X32");
    if (profile_.model_error) return voice_.ErrorReply("X31");
    return std::string(kPrompt);
  });
}

void DatabaseMode::Execute(std::string_view command) {
  if (command.empty()) return voice_.Say(std::string(kPrompt));
  const std::string_view argument = command.substr(1);
  if (command == "l") return voice_.Answer(Step::kList, [&] { return List(); });
  if (command == "b") return voice_.Answer(Step::kBegin, [&] { return Begin(); });
  if (command == "e") return voice_.Answer(Step::kEnd, [&] { return End(); });
  switch (command.front()) {
    case 'r':
      return voice_.Answer(Step::kRead, [&] { return Read(argument); });
    case 'd':
      return voice_.Answer(Step::kNetwork, [&] { return SelectNetwork(argument); });
    case 'w':
      return voice_.Answer(Step::kWrite, [&] { return Write(argument); });
    default:
      return voice_.Say(voice_.ErrorReply("C01"));
  }
}

std::string DatabaseMode::List() {
  const Bytes items = personality_.List(network_);
  std::string reply;
  for (std::size_t at = 0; at < items.size(); at += kItemsPerListLine) {
    const std::size_t count = std::min(kItemsPerListLine, items.size() - at);
    // The list looks like the records of an item "00" without the second header byte.
    Bytes line{DecimalCounter(at / kItemsPerListLine), static_cast<std::uint8_t>(count)};
    const auto first = items.begin() + static_cast<std::ptrdiff_t>(at);
    line.insert(line.end(), first, first + static_cast<std::ptrdiff_t>(count));
    reply += TextWithChecksum(std::move(line)) + kCarriageReturn;
  }
  return reply + std::string(kPrompt);
}

std::string DatabaseMode::Read(std::string_view item) {
  const std::optional<std::uint8_t> number = ByteFromHex(item);
  const Item* found = number ? personality_.Find(network_, *number) : nullptr;
  if (found == nullptr) return voice_.ErrorReply("C04");
  ++counts_.items_read;
  std::string reply;
  for (const std::string& record : RecordsOf(*number, *found)) reply += record + kCarriageReturn;
  return reply + std::string(kPrompt);
}

std::string DatabaseMode::SelectNetwork(std::string_view number) {
  if (!profile_.IsTrunked()) return voice_.ErrorReply("C01");
  const int network = number.starts_with('0') ? Decimal(number.substr(1)).value_or(0) : 0;
  if (number.size() != 2 || network < 1 || network > profile_.networks) {
    return voice_.ErrorReply("C04");
  }
  network_ = network;
  return std::string(kPrompt);
}

std::string DatabaseMode::Begin() {
  writing_ = true;
  written_.clear();
  return std::string(kPrompt);
}

std::string DatabaseMode::Write(std::string_view record) {
  const std::string_view code = WriteRecord(record);
  if (!code.empty()) return voice_.ErrorReply(code);
  ++counts_.records_written;
  return std::string(kPrompt);
}

std::string DatabaseMode::End() {
  if (!writing_) return voice_.ErrorReply("C03");
  writing_ = false;
  const std::string_view code = CheckWrittenItems();
  if (!code.empty()) return voice_.ErrorReply(code);
  corrupt_ = false;
  return std::string(kPrompt);
}

std::string_view DatabaseMode::WriteRecord(std::string_view record) {
  if (profile_.IsTrunked() && record == kTakeUpNetworks.substr(1)) return {};
  if (!writing_) return "C03";
  if (record.size() > 2 * (kFrameSize + kLongestData)) return "C08";
  const std::optional<Bytes> bytes = BytesFromHex(record);
  if (!bytes || bytes->size() < kFrameSize) return "C02";
  const std::uint8_t number = bytes->front();
  const Bytes data(bytes->begin() + 3, bytes->end() - 1);
  if (number != kIdentityItem && data.size() != (*bytes)[2]) return "C05";
  if (ByteSum(*bytes) != 0) return "C02";
  return number == kIdentityItem ? CheckIdentity(data) : Store(number, (*bytes)[1], data);
}

// The identity line of a data file is not stored, but data of another model or version is not
// accepted.
std::string_view DatabaseMode::CheckIdentity(const Bytes& data) const {
  if (data.size() < kVersionOffset + 4) return "C05";
  const std::string text = TextOf(data);
  if (text.substr(kModelCodeOffset, 2) != profile_.model_code) return "C03";
  const int version = VersionNumber(text.substr(kVersionOffset, 4));
  return version == VersionNumber(profile_.versions.database) ? "" : "C03";
}

std::string_view DatabaseMode::Store(std::uint8_t number, std::uint8_t counter, const Bytes& data) {
  Item* item = personality_.Find(network_, number);
  if (item == nullptr) return "C04";
  if (item->use == ItemUse::kReadOnly || item->use == ItemUse::kHidden) return "C07";
  if (number == profile_.worn_item) return "C10";

  std::size_t& records = written_[number];
  if (counter == 0 && records % 100 != 0) records = 0;  // the item is written once more
  if (counter != DecimalCounter(records)) return "C03";
  if (records == 0) item->data.clear();
  if (item->data.size() + data.size() > item->size) return "C06";
  if (item->use == ItemUse::kTable &&
      personality_.DynamicBytes(network_) + data.size() > profile_.dynamic_bytes) {
    return "C09";
  }
  item->data.insert(item->data.end(), data.begin(), data.end());
  ++records;
  return {};
}

std::string_view DatabaseMode::CheckWrittenItems() const {
  for (const auto& [number, records] : written_) {
    const Item* item = personality_.Find(network_, number);
    if (item == nullptr || records == 0) continue;
    const std::size_t size = item->data.size();
    const bool whole =
        item->use == ItemUse::kTable ? size % item->record_size == 0 : size == item->size;
    if (!whole) return "C05";
    if (number == CalibrationItem(profile_) && !HasCalibrationSum(item->data)) return "C03";
  }
  return {};
}

}  // namespace zep::simulator
