#include "upgrade/personality_data.h"

#include <algorithm>
#include <span>

#include "link/record_text.h"
#include "platform/files.h"
#include "radiodb/data_file_reader.h"
#include "radiodb/data_files.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/paths.h"
#include "upgrade/checked_data_file.h"

namespace zep::upgrade {
namespace {

constexpr std::string_view kEndOfLine = "\r\n";
constexpr std::size_t kRecordCharacters = 64;  // of data in a record of ours

void AppendRecord(std::string_view record, std::string& text) {
  text += record;
  text += services::RecordChecksum(record);
  text += kEndOfLine;
}

void AddLine(services::Session& session, const std::string& text, bool& item_0_found,
             PersonalityNetwork& network) {
  const bool is_item_0 = text.starts_with("00");
  if (text == radiodb::kCommonDynamicItemLine || (is_item_0 && item_0_found)) {
    network.lines.push_back({.other_text = text});
    return;
  }
  item_0_found |= is_item_0;
  PersonalityLine line;
  line.item = static_cast<std::size_t>(services::ConHexByteToInt(session, text.substr(0, 2)));
  line.header = text.substr(0, link::kRecordHeader);
  line.characters = text.size() - link::kRecordHeader - link::kRecordChecksum;
  if (line.characters == 0) return;  // an empty record is never stored
  network.items.at(line.item).append(text, link::kRecordHeader, line.characters);
  network.lines.push_back(std::move(line));
}

// Writes a network's items into text: items that kept their length in the records that they had.
class NetworkWriter {
 public:
  NetworkWriter(const PersonalityNetwork& network, std::string& text)
      : network_(network), text_(text) {
    for (const PersonalityLine& line : network.lines) {
      if (line.other_text.empty()) characters_read_[line.item] += line.characters;
    }
  }

  void Write() {
    for (const PersonalityLine& line : network_.lines) {
      if (line.other_text.empty()) {
        WriteRecord(line);
      } else {
        text_.append(line.other_text).append(kEndOfLine);
      }
    }
    for (std::size_t item = 0; item < kItemCount; ++item) {
      if (characters_read_[item] == 0) WriteAnew(item);
    }
  }

 private:
  void WriteRecord(const PersonalityLine& line) {
    const std::string& data = network_.items[line.item];
    std::size_t& written = written_[line.item];
    if (data.size() == characters_read_[line.item]) {
      AppendRecord(line.header + data.substr(written, line.characters), text_);
      written += line.characters;
    } else if (written == 0) {
      WriteAnew(line.item);
      written = data.size() + 1;
    }
  }

  void WriteAnew(std::size_t item) {
    if (network_.items[item].empty()) return;
    AppendRecords(Number(item), network_.items[item], text_);
  }

  static std::string Number(std::size_t item) {
    return services::ConBytNumToHex(static_cast<std::uint8_t>(item));
  }

  const PersonalityNetwork& network_;
  std::string& text_;
  std::array<std::size_t, kItemCount> characters_read_{};
  std::array<std::size_t, kItemCount> written_{};
};

}  // namespace

std::optional<PersonalityData> ReadDatabase(services::Session& session, const std::string& path) {
  const std::optional<radiodb::DataFile> file = ReadCheckedDataFile(session, path);
  if (!file) return std::nullopt;
  return ItemsOf(session, *file);
}

PersonalityData ItemsOf(services::Session& session, const radiodb::DataFile& file) {
  PersonalityData data;
  data.networks.emplace_back();
  bool item_0_found = false;
  for (const radiodb::DataFileLine& line : file.lines) {
    if (radiodb::IsNetworkSeparator(line.text)) {
      data.networks.emplace_back();
    } else {
      AddLine(session, line.text, item_0_found, data.networks.back());
    }
  }
  return data;
}

bool WriteDatabase(services::Session& session, const PersonalityData& data,
                   const std::string& path) {
  std::string text;
  for (const std::string& line :
       radiodb::DatabaseHeader(session, static_cast<int>(data.networks.size()))) {
    text.append(line).append(kEndOfLine);
  }
  for (std::size_t network = 0; network < data.networks.size(); ++network) {
    if (network > 0) text.append(radiodb::kNetworkSeparator).append(kEndOfLine);
    NetworkWriter(data.networks[network], text).Write();
  }
  platform::SystemError error = platform::MakeFolders(services::FolderOf(path));
  if (!error) error = platform::WriteWholeFile(path, text);
  if (!error) return true;
  return RefuseFile(session, error, "WriteDatabase");
}

void AppendRecords(std::string_view item_number, std::string_view data, std::string& text) {
  for (int record = 0; !data.empty(); ++record) {
    const std::string_view part = data.substr(0, kRecordCharacters);
    std::string line(item_number);
    line += services::PadString(std::to_string(record % 100), services::PadSide::kLeft, 2, "0");
    line += services::ConBytNumToHex(static_cast<std::uint8_t>(part.size() / 2));
    AppendRecord(line.append(part), text);
    data.remove_prefix(part.size());
  }
}

}  // namespace zep::upgrade
