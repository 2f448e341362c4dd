// The text of a settings file: lines as they stand, and the values among them. The format is told
// in settings_hive.h.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zep::platform {

// Keys and names are compared without regard to the case of A to Z.
std::string LowerCase(std::string_view text);

class SettingsText {
 public:
  explicit SettingsText(std::string_view contents);

  // Where a value stands twice, the later one counts.
  std::optional<std::string> Find(std::string_view key, std::string_view name) const;
  // Changes the line of the value or adds one at the end of its section. REQUIRES: CanHold(key,
  // name).
  void Set(std::string_view key, std::string_view name, std::string_view value);

  // Whether some lines are neither values nor sections, comments or blank. They are left out of
  // Contents().
  bool IsDamaged() const { return damaged_; }
  std::string Contents() const;

  // Whether a section and a name can stand in a file as they are.
  static bool CanHold(std::string_view key, std::string_view name);

 private:
  struct Line {
    std::string text = {};
    std::string key = {};   // lower case
    std::string name = {};  // lower case; empty when the line is no value
    std::string value = {};
    bool is_section = false;
  };

  void Read(std::string_view text, std::string& key);
  std::size_t Place(std::string_view key);

  std::string start_;  // the byte order mark that some editors write
  std::string line_end_ = "\n";
  std::vector<Line> lines_;
  bool damaged_ = false;
};

}  // namespace zep::platform
