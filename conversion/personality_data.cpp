#include "conversion/personality_data.h"

#include <algorithm>
#include <utility>

#include "conversion/checked_data.h"
#include "services/hex_text.h"

namespace zep::conversion {
namespace {

using radiodb::DataFile;
using radiodb::DataFileLine;
using radiodb::Record;
using services::Problem;

constexpr std::size_t kRecordCharacters = 64;  // of data in a record of ours

void AddLine(const DataFileLine& line, bool& item_0_found, PersonalityNetwork& network) {
  const Record* record = line.AsRecord();
  const bool is_item_0 = record != nullptr && radiodb::IsIdentityLine(record->Line());
  if (record == nullptr || (is_item_0 && item_0_found)) {
    network.lines.push_back({.other_text = std::string(line.Text())});
    return;
  }
  item_0_found |= is_item_0;
  if (record->IsEmpty()) return;  // it is never stored
  const std::size_t item = record->ItemNumber();
  network.items.at(item) += record->Data();
  network.lines.push_back(
      {.item = item, .header = std::string(record->Header()), .characters = record->Data().size()});
}

PersonalityData ItemsOf(const DataFile& file) {
  PersonalityData data;
  data.networks.emplace_back();
  bool item_0_found = false;
  for (const DataFileLine& line : file.Lines()) {
    if (line.IsSeparator()) {
      data.networks.emplace_back();
    } else {
      AddLine(line, item_0_found, data.networks.back());
    }
  }
  return data;
}

// Adds a network's items to a file: items that kept their length in the records that they had.
class NetworkWriter {
 public:
  NetworkWriter(const PersonalityNetwork& network, DataFile& file)
      : network_(network), file_(file) {
    for (const PersonalityLine& line : network.lines) {
      if (line.other_text.empty()) characters_read_[line.item] += line.characters;
    }
  }

  void Write() {
    for (const PersonalityLine& line : network_.lines) {
      if (line.other_text.empty()) {
        WriteRecord(line);
      } else {
        file_.Add(line.other_text);
      }
    }
    for (std::size_t item = 0; item < kItemCount; ++item) {
      if (characters_read_[item] == 0) WriteAnew(item);
    }
  }

 private:
  void WriteRecord(const PersonalityLine& line) {
    const std::string_view data = network_.items[line.item];
    std::size_t& written = written_[line.item];
    if (data.size() == characters_read_[line.item]) {
      file_.Add(Record::WithHeader(line.header, data.substr(written, line.characters)));
      written += line.characters;
    } else if (written == 0) {
      WriteAnew(line.item);
      written = data.size() + 1;
    }
  }

  void WriteAnew(std::size_t item) {
    AddRecords(services::ConBytNumToHex(static_cast<std::uint8_t>(item)), network_.items[item],
               file_);
  }

  const PersonalityNetwork& network_;
  DataFile& file_;
  std::array<std::size_t, kItemCount> characters_read_{};
  std::array<std::size_t, kItemCount> written_{};
};

}  // namespace

tl::expected<PersonalityData, Problem> ReadDatabase(const DataFile& file) {
  if (file.IsSound()) return ItemsOf(file);
  return CheckedData(file).map(ItemsOf);
}

DataFile WriteDatabase(const PersonalityData& data, std::string path,
                       std::vector<std::string> header) {
  DataFile file(std::move(path), std::move(header));
  for (std::size_t network = 0; network < data.networks.size(); ++network) {
    if (network > 0) file.Add(radiodb::kNetworkSeparator);
    NetworkWriter(data.networks[network], file).Write();
  }
  return file;
}

void AddRecords(std::string_view item_number, std::string_view data, DataFile& file) {
  for (int record = 0; !data.empty(); ++record) {
    const std::string_view part = data.substr(0, kRecordCharacters);
    file.Add(Record(
        item_number,
        services::PadString(std::to_string(record % 100), services::PadSide::kLeft, 2, "0"), part));
    data.remove_prefix(part.size());
  }
}

}  // namespace zep::conversion
