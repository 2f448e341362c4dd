// The application's string table: texts that differ between the applications of the suite
// (identity, titles, file filters, paths, captions), addressed by number.
//
// One table an application: "ZEP", "Vorn PMR II" and "Torvik" are built in; a file of the same name
// in the application folder takes a table's place. The file is UTF-8, a number and a text a line;
// "base NAME" takes over all entries of another table, and lines that start with "#" are comments:
//
//   base ZEP
//   100 Torvik
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zep::services {

class StringTable {
 public:
  // The built-in table of that name, or the one that the folder holds instead (file NAME.strings).
  // Problem() tells when there is no such table or a line cannot be read; the ZEP entries stand in
  // for what is missing.
  StringTable(std::string_view name, const std::string& application_folder);

  // The entry, or an empty text when the table has none.
  const std::string& Get(int number) const;
  const std::string& Problem() const { return problem_; }

  std::vector<int> Numbers() const;

  // Names of the built-in tables.
  static std::vector<std::string> Names();

 private:
  void Read(std::string_view contents, const std::string& folder, int depth);

  std::map<int, std::string> entries_;
  std::string problem_;
};

}  // namespace zep::services
