// The dictionary against the program: every text that the sources, the string tables and the advice
// of the platform show must be there, in all languages, with the same placeholders.
#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/advice.h"
#include "platform/files.h"
#include "services/string_table.h"
#include "services/translation.h"

namespace zep {
namespace {

using services::Language;
using services::Translation;

// Texts that are the same in every language and need no entry: procedure names used as titles, and
// the line breaks between two texts.
const std::set<std::string, std::less<>> kNeutral = {"ConHexNumToLng", "\n"};
// Entries that no call names: what an identity holds, and what no radio has brought about yet.
const std::set<std::string, std::less<>> kNamedNowhere = {"NOT SET", "No Micro type returned."};

// A C++ source as words, punctuation and string literals, the latter joined as the compiler joins
// them.
struct Token {
  bool is_literal;
  std::string text;
};

std::vector<Token> Scan(const std::string& source) {
  static const std::regex pattern(
      R"~(//[^\n]*|"(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])*'|\w+(?:'\w+)*|\S)~");
  static const std::regex line_break(R"(\\n)");
  static const std::regex escape(R"(\\(.))");
  std::vector<Token> tokens;
  for (std::sregex_iterator part(source.begin(), source.end(), pattern), end; part != end; ++part) {
    const std::string word = part->str();
    if (word.starts_with("//")) continue;
    if (word.front() != '"') {
      tokens.push_back({false, word});
      continue;
    }
    if (tokens.empty() || !tokens.back().is_literal) tokens.push_back({true, ""});
    const std::string text = word.substr(1, word.size() - 2);
    tokens.back().text +=
        std::regex_replace(std::regex_replace(text, line_break, "\n"), escape, "$1");
  }
  return tokens;
}

// The literals that stand by themselves in one argument of the call whose "(" is tokens[at].
std::vector<std::string> LiteralsOfArgument(const std::vector<Token>& tokens, std::size_t at,
                                            int argument) {
  std::vector<std::string> literals;
  int depth = 0;
  for (; at < tokens.size(); ++at) {
    const auto& [is_literal, text] = tokens[at];
    if (is_literal) {
      if (depth == 1 && argument == 0) literals.push_back(text);
    } else if (text == "(" || text == "{" || text == "[") {
      ++depth;
    } else if (text == ")" || text == "}" || text == "]") {
      if (--depth == 0) break;
    } else if (text == "," && depth == 1) {
      --argument;
    }
  }
  return literals;
}

// What a source shows to the user: the text argument of the message procedures, and titles.
std::vector<std::string> ShownTexts(const std::string& source) {
  const std::map<std::string, int, std::less<>> text_argument = {
      {"NLSText", 0}, {"NLSFmt", 1}, {"NLSMsgBox", 1}};
  const std::vector<Token> tokens = Scan(source);
  std::vector<std::string> texts;
  for (std::size_t at = 0; at + 2 < tokens.size(); ++at) {
    if (tokens[at].is_literal) continue;
    const auto call = text_argument.find(tokens[at].text);
    if (call != text_argument.end() && tokens[at + 1].text == "(") {
      const auto literals = LiteralsOfArgument(tokens, at + 1, call->second);
      texts.insert(texts.end(), literals.begin(), literals.end());
    }
    if (tokens[at].text == "title" && tokens[at + 1].text == "=" && tokens[at + 2].is_literal) {
      texts.push_back(tokens[at + 2].text);
    }
  }
  return texts;
}

// Every shown text and where it stands.
std::map<std::string, std::string> AllShownTexts() {
  std::map<std::string, std::string> texts;
  for (const std::string_view text : platform::AdviceTexts())
    texts.emplace(text, "platform/advice.cpp");
  for (const std::string& name : services::StringTable::Names()) {
    const services::StringTable table(name, "");
    for (const int number : table.Numbers()) {
      const bool is_shown = number == 104 || (number >= 500 && number < 900);
      if (is_shown) texts.emplace(table.Get(number), name + ".strings " + std::to_string(number));
    }
  }
  const std::filesystem::path root = ZEP_SOURCE_DIR;
  for (const char* folder : {"platform", "services", "link", "radiodb", "conversion", "firmware",
                             "upgrade", "cli", "shell"}) {
    if (!std::filesystem::is_directory(root / folder)) continue;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".cpp" && extension != ".h") continue;
      const std::string where = std::filesystem::relative(entry.path(), root).string();
      for (const std::string& text :
           ShownTexts(platform::ReadWholeFile(entry.path().string()).bytes))
        texts.emplace(text, where);
    }
  }
  return texts;
}

// What must be the same in all languages: placeholders, patterns of filters, line breaks,
// mnemonics, dots at the end.
std::multiset<std::string> FixedParts(const std::string& text) {
  static const std::regex fixed(R"(%[0-9]:s|\|\*[^|]*|\||\n|&|\.\.\.$)");
  std::multiset<std::string> parts;
  for (std::sregex_iterator part(text.begin(), text.end(), fixed), end; part != end; ++part) {
    parts.insert(part->str());
  }
  return parts;
}

bool HasChinese(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) >= 0xE4 && static_cast<unsigned char>(c) <= 0xE9;
  });
}

const Translation& Dictionary() {
  static const Translation dictionary = [] {
    Translation loaded;
    loaded.Load(platform::ReadWholeFile(ZEP_SOURCE_DIR "/resources/ZEPDLCA.mld").bytes);
    return loaded;
  }();
  return dictionary;
}

TEST(Dictionary, HoldsEveryTextOfTheProgram) {
  EXPECT_EQ(Dictionary().Problem(), "");
  const auto texts = AllShownTexts();
  EXPECT_GT(texts.size(), 90U);
  for (const auto& [text, where] : texts) {
    if (kNeutral.contains(text)) continue;
    EXPECT_EQ(Dictionary().In(Language::kEnglish, text), text) << where;
  }
  for (const std::string& text : Dictionary().EnglishTexts())
    EXPECT_NE(texts.contains(text), kNamedNowhere.contains(text)) << text << " is shown nowhere";
}

void CheckTranslation(const std::string& english, Language language) {
  SCOPED_TRACE(std::string(services::LanguageCode(language)) + " of \"" + english + "\"");
  const std::string text = Dictionary().In(language, english);
  EXPECT_FALSE(text.empty());
  EXPECT_EQ(FixedParts(text), FixedParts(english));
  EXPECT_EQ(HasChinese(text), language == Language::kChinese && !kNeutral.contains(english));
}

TEST(Dictionary, EveryEntryHasAllLanguagesWithTheSamePlaceholders) {
  for (const std::string& english : Dictionary().EnglishTexts()) {
    for (int number = 2; number <= services::kLanguageCount; ++number)
      CheckTranslation(english, static_cast<Language>(number));
  }
}

TEST(Dictionary, EveryLanguageHasAHelpBook) {
  const std::filesystem::path books = std::filesystem::path(ZEP_SOURCE_DIR) / "resources/help";
  for (const services::LanguageNames& language : services::Languages())
    EXPECT_TRUE(std::filesystem::is_directory(books / language.code)) << language.code;
}

}  // namespace
}  // namespace zep
