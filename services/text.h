// A text for the user as a value, made where there is no user to show it to: the English text of
// the dictionary and what stands for its placeholders. It is translated where it is shown (NLSFmt).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zep::services {

// Marks a text for translation and returns it as it is.
constexpr std::string_view NLSText(std::string_view text) { return text; }

struct Text {
  std::string_view english;                 // of the program itself, so it never ends
  std::vector<std::string> arguments = {};  // for %0:s and so on, as they are
  std::vector<Text> texts = {};             // for the placeholders behind those, translated as well
};

// The text with its placeholders filled in, for logs and for other programs.
std::string English(const Text& text);

}  // namespace zep::services
