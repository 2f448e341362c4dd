#include "services/translation.h"

#include <optional>

#include "services/messages.h"
#include "services/text_lines.h"

namespace zep::services {
namespace {

constexpr std::array<LanguageNames, kLanguageCount> kLanguages = {{
    {.code = "en", .own = "English", .english = NLSText("English")},
    {.code = "fr", .own = "Français", .english = NLSText("French")},
    {.code = "es", .own = "Español", .english = NLSText("Spanish")},
    {.code = "zh", .own = "简体中文", .english = NLSText("Chinese")},
}};

std::size_t IndexOf(Language language) { return static_cast<std::size_t>(language) - 1; }

// The text between the double quotes that line consists of.
std::optional<std::string> Unquote(std::string_view line) {
  if (line.size() < 2 || line.front() != '"' || line.back() != '"') return std::nullopt;
  std::string text;
  for (std::size_t at = 1; at < line.size() - 1; ++at) {
    char character = line[at];
    if (character == '"') return std::nullopt;
    if (character == '\\') {
      ++at;
      character = at < line.size() - 1 ? line[at] : '\0';
      if (character != 'n' && character != '"' && character != '\\') return std::nullopt;
      if (character == 'n') character = '\n';
    }
    text += character;
  }
  return text;
}

}  // namespace

std::span<const LanguageNames, kLanguageCount> Languages() { return kLanguages; }

std::string_view LanguageCode(Language language) {
  const std::size_t index = IndexOf(language);
  return index < kLanguages.size() ? kLanguages[index].code : std::string_view();
}

std::string LanguageCodes(std::string_view between) {
  std::string codes;
  for (const LanguageNames& language : kLanguages) {
    if (!codes.empty()) codes += between;
    codes += language.code;
  }
  return codes;
}

void Translation::Load(std::string_view contents) {
  entries_.clear();
  problem_.clear();
  int bad_lines = 0;
  const auto complain = [&](int number, std::string_view what) {
    if (++bad_lines == 1) problem_ = "line " + std::to_string(number) + ": " + std::string(what);
  };
  Entry* entry = nullptr;
  ForEachLine(contents, [&](std::string_view line, int number) {
    if (line.find_first_not_of(" \t") == std::string_view::npos) {
      entry = nullptr;
      return;
    }
    if (line.front() == '#') return;
    std::size_t language = 0;
    while (language < kLanguages.size() && line.substr(0, 2) != kLanguages[language].code)
      ++language;
    const std::optional<std::string> text =
        line.size() > 2 && line[2] == ' ' ? Unquote(line.substr(3)) : std::nullopt;
    if (language == kLanguages.size() || !text || text->empty()) {
      complain(number,
               "this is no language (" + LanguageCodes(", ") + ") with a text in double quotes");
    } else if (language == IndexOf(Language::kEnglish)) {
      const auto [place, is_new] = entries_.try_emplace(*text);
      if (!is_new) complain(number, "this text has an entry already");
      entry = &place->second;
      entry->front() = *text;
    } else if (entry == nullptr) {
      complain(number, "there is no English text above this translation");
    } else if (!(*entry)[language].empty()) {
      complain(number, "this language has a text in this entry already");
    } else {
      (*entry)[language] = *text;
    }
  });
  if (bad_lines > 1) problem_ += " (and " + std::to_string(bad_lines - 1) + " more)";
}

std::string Translation::Translate(std::string_view english) const {
  std::string text = In(language_, english);
  return text.empty() ? std::string(english) : text;
}

std::vector<std::string> Translation::EnglishTexts() const {
  std::vector<std::string> texts;
  for (const auto& [english, entry] : entries_) texts.push_back(english);
  return texts;
}

std::string Translation::In(Language language, std::string_view english) const {
  const auto found = entries_.find(english);
  const std::size_t index = IndexOf(language);
  return found == entries_.end() || index >= kLanguageCount ? std::string() : found->second[index];
}

}  // namespace zep::services
