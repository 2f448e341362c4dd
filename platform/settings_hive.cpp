#include "platform/settings_hive.h"

#include <algorithm>

namespace zep::platform {
namespace {

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return lower;
}

}  // namespace

std::optional<std::string> MemoryHive::Read(std::string_view key, std::string_view name) const {
  const auto found = values_.find({LowerCase(key), LowerCase(name)});
  if (found == values_.end()) return std::nullopt;
  return found->second;
}

SystemError MemoryHive::Write(std::string_view key, std::string_view name, std::string_view value) {
  values_[{LowerCase(key), LowerCase(name)}] = value;
  return {};
}

}  // namespace zep::platform
