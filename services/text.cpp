#include "services/text.h"

#include "services/fill_in.h"

namespace zep::services {

std::string English(const Text& text) {
  std::vector<std::string> arguments = text.arguments;
  for (const Text& part : text.texts) arguments.push_back(English(part));
  return FillIn(text.english, arguments);
}

}  // namespace zep::services
