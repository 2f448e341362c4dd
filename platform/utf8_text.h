// UTF-8 text, character by character.
#pragma once

#include <cstddef>
#include <string_view>

namespace zep::platform {

struct Utf8Character {
  std::size_t bytes = 1;
  int columns = 1;  // on a terminal: most characters take one, Chinese ones two, accents none
  bool is_valid = true;
};

// The first character of a text that is not empty. A byte that starts none stands for itself, one
// column wide and not valid.
Utf8Character FirstCharacter(std::string_view text);

}  // namespace zep::platform
