// The manual page of zepctl as the tests read it.
#pragma once

#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "platform/files.h"

namespace zep::testing {

using Names = std::set<std::string, std::less<>>;

// A file of the source tree.
inline std::string SourceFile(const std::string& name) {
  return platform::ReadWholeFile(ZEP_SOURCE_DIR "/" + name).bytes;
}

// The lines of a section of the manual page as they are read: without macros, fonts and quotes.
// Those behind ".TP" are headings, which begin with "> ".
inline std::vector<std::string> ManualSection(const std::string& name) {
  static const std::regex macro(R"(^\.[A-Z]+ ?|\\f.|"|\\$)");
  static const std::regex escaped(R"(\\(.))");
  std::istringstream manual(SourceFile("packaging/zepctl.1"));
  std::vector<std::string> lines;
  bool is_inside = false;
  bool is_heading = false;
  for (std::string line; std::getline(manual, line);) {
    if (line.starts_with(".SH ")) is_inside = line == ".SH " + name;
    if (!is_inside) continue;
    if (line == ".TP") {
      is_heading = true;
      continue;
    }
    line = std::regex_replace(std::regex_replace(line, macro, ""), escaped, "$1");
    lines.push_back((is_heading ? "> " : "") + line);
    is_heading = false;
  }
  return lines;
}

// What the first group of the pattern matches in the text.
inline Names Found(const std::string& text, const std::string& pattern) {
  const std::regex expression(pattern);
  Names found;
  for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
    found.insert(match->str(1));
  return found;
}

}  // namespace zep::testing
