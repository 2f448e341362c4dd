#include "services/string_table.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "platform/files.h"
#include "services/builtin_tables.h"
#include "services/paths.h"
#include "services/text_lines.h"

namespace zep::services {
namespace {

constexpr std::uint64_t kLargestTable = 1'000'000;
constexpr std::string_view kBase = "base ";

const BuiltInTable* FindBuiltIn(std::string_view name) {
  const auto tables = BuiltInTables();
  const auto found = std::find_if(tables.begin(), tables.end(),
                                  [&](const BuiltInTable& table) { return table.name == name; });
  return found == tables.end() ? nullptr : &*found;
}

struct NumberedText {
  int number;
  std::string_view text;
};

// A number, a blank and the text, which may be missing. Nothing when the line is anything else.
std::optional<NumberedText> ReadEntry(std::string_view line) {
  int number = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
  line.remove_prefix(static_cast<std::size_t>(end - line.data()));
  const bool is_text =
      std::none_of(line.begin(), line.end(), [](char c) { return c >= '\0' && c < ' '; });
  if (error != std::errc() || number < 0 || !is_text || (!line.empty() && line.front() != ' '))
    return std::nullopt;
  return NumberedText{number, line.substr(line.empty() ? 0 : 1)};
}

}  // namespace

StringTable::StringTable(std::string_view name, const std::string& application_folder) {
  const BuiltInTable& zep = BuiltInTables().front();
  Read(zep.name, zep.contents, {});
  Load(name, application_folder, {});
}

void StringTable::Load(std::string_view name, const std::string& folder,
                       std::vector<std::string_view> reading) {
  const bool is_its_own_base = std::find(reading.begin(), reading.end(), name) != reading.end();
  const std::string path = AppMakePath(folder, std::string(name) + ".strings");
  if (!is_its_own_base && !folder.empty() && platform::FileExists(path)) {
    const platform::FileContents file = platform::ReadWholeFile(path, kLargestTable);
    if (!file.error) {
      reading.push_back(name);
      Read(name, file.bytes, [&](std::string_view base) { Load(base, folder, reading); });
      return;
    }
    Complain(path + ": " + file.error.description);
  }
  if (const BuiltInTable* table = FindBuiltIn(name)) {
    reading.push_back(name);
    Read(name, table->contents, [&](std::string_view base) { Load(base, folder, reading); });
  } else {
    Complain("there is no string table \"" + std::string(name) + "\"");
  }
}

void StringTable::Read(std::string_view name, std::string_view contents,
                       const std::function<void(std::string_view)>& load_base) {
  ForEachLine(contents, [&](std::string_view line, int line_number) {
    if (line.empty() || line.front() == '#') return;
    if (load_base && line.substr(0, kBase.size()) == kBase) {
      load_base(line.substr(kBase.size()));
    } else if (const auto entry = ReadEntry(line)) {
      entries_[entry->number] = entry->text;
    } else {
      Complain(std::string(name) + ".strings line " + std::to_string(line_number) +
               ": this is no number with a text");
    }
  });
}

void StringTable::Complain(const std::string& problem) {
  if (problem_.empty()) problem_ = problem;
}

const std::string& StringTable::Get(int number) const {
  static const std::string nothing;
  const auto found = entries_.find(number);
  return found == entries_.end() ? nothing : found->second;
}

std::vector<int> StringTable::Numbers() const {
  std::vector<int> numbers;
  for (const auto& [number, text] : entries_) numbers.push_back(number);
  return numbers;
}

std::vector<std::string> StringTable::Names() {
  std::vector<std::string> names;
  for (const BuiltInTable& table : BuiltInTables()) names.emplace_back(table.name);
  return names;
}

}  // namespace zep::services
