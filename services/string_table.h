// The application's string table: texts that differ between the applications of the suite
// (identity, titles, file filters, paths, captions), addressed by number.
//
// One table an application: "ZEP", "Vorn PMR II" and "Torvik" are built in; a file of the same name
// in the application folder takes a table's place. The file is UTF-8, a number and a text a line;
// "base NAME" takes over all entries of another table, and lines that start with "#" are comments:
//
//   base ZEP
//   100 Torvik
//
// A table in the application folder whose base has its own name builds on the built-in one.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zep::services {

class StringTable {
 public:
  // The built-in table of that name, or the one that the folder holds instead (file NAME.strings).
  // The entries of the built-in ZEP table stand in for all that is missing.
  StringTable(std::string_view name, const std::string& application_folder);

  // The entry, or an empty text when the table has none.
  const std::string& Get(int number) const;
  // Empty, or the first thing that was wrong: no such table, a file or a line that cannot be read.
  const std::string& Problem() const { return problem_; }

  std::vector<int> Numbers() const;

  // Names of the built-in tables.
  static std::vector<std::string> Names();

 private:
  // Adds the table's entries; reading holds the names of the tables that are being read just now.
  void Load(std::string_view name, const std::string& folder,
            std::vector<std::string_view> reading);
  void Read(std::string_view name, std::string_view contents,
            const std::function<void(std::string_view)>& load_base);
  void Complain(const std::string& problem);

  std::map<int, std::string> entries_;
  std::string problem_;
};

}  // namespace zep::services
