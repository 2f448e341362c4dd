#include "cli/file_names.h"

#include <filesystem>

namespace zep::cli {

std::string AbsoluteName(const std::string& name) {
  if (name.empty()) return {};
  std::error_code error;
  const std::filesystem::path full =
      std::filesystem::absolute(std::u8string(name.begin(), name.end()), error);
  if (error) return name;
  const std::u8string text = full.lexically_normal().u8string();
  return {text.begin(), text.end()};
}

}  // namespace zep::cli
