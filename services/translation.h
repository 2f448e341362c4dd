// The dictionary ZEPDLCA.mld: every text of the program in the four interface languages.
//
// The file is UTF-8. An entry is four lines, language and text in double quotes, with \n, \" and
// \\ inside; a blank line ends it, lines that start with "#" are comments:
//
//   en "File exists overwrite?"
//   fr "Le fichier existe, le remplacer ?"
//   es "El archivo existe, ¿reemplazarlo?"
//   zh "文件已存在，是否覆盖？"
//
// Blanks at the ends of a text and the placeholders %0:s, %1:s belong to the text.
#pragma once

#include <array>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zep::services {

// The values of the setting UILanguage.
enum class Language { kEnglish = 1, kFrench = 2, kSpanish = 3, kChinese = 4 };
inline constexpr int kLanguageCount = 4;

struct LanguageNames {
  std::string_view code;     // two letters, in the dictionary, of the help book, for zepctl: "fr"
  std::string_view own;      // what it calls itself: "Français"
  std::string_view english;  // untranslated: "French"
};
// All of them, in the order of the setting UILanguage.
std::span<const LanguageNames, kLanguageCount> Languages();

// Empty when there is no such language.
std::string_view LanguageCode(Language language);
// All codes: "en, fr, es, zh".
std::string LanguageCodes(std::string_view between);

class Translation {
 public:
  // English texts as they are.
  Translation() = default;

  // Reads a dictionary's contents. Lines that cannot be read are left out and counted in Problem().
  void Load(std::string_view contents);
  // Empty, or what was wrong with the dictionary: "line 12: ...".
  const std::string& Problem() const { return problem_; }

  void SetLanguage(Language language) { language_ = language; }
  Language GetLanguage() const { return language_; }

  // The text in the interface language; the English text where the dictionary has none.
  std::string Translate(std::string_view english) const;

  // For checks over the dictionary: all English texts, and one of the translations (empty when
  // missing).
  std::vector<std::string> EnglishTexts() const;
  std::string In(Language language, std::string_view english) const;

 private:
  using Entry = std::array<std::string, kLanguageCount>;

  Language language_ = Language::kEnglish;
  std::map<std::string, Entry, std::less<>> entries_;
  std::string problem_;
};

}  // namespace zep::services
