// Text in columns and lines of a terminal, whatever its language.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zep::services {

// Characters of UTF-8 text, and the columns that they take on a terminal.
int CountCharacters(std::string_view text);
int DisplayWidth(std::string_view text);

// The text followed by blanks, so that it is at least that many columns wide.
std::string PadTo(std::string_view text, int width);

// The beginning of the text that fits into that many columns; a text that is cut ends with "...".
std::string CutTo(std::string_view text, int width);

// The text with its lines broken between words, so that none is wider than width as far as words
// allow. Lines behind the first of each paragraph begin with indent blanks.
std::string Wrap(std::string_view text, int width, int indent = 0);

// A table with aligned columns, two blanks between them and none at the end of a line.
class Table {
 public:
  enum class Align { kLeft, kRight };

  // Without headings the table starts with its first row.
  explicit Table(std::vector<std::string> headings = {}, std::vector<Align> alignments = {});

  void AddRow(std::vector<std::string> cells);
  // Whether there are rows.
  bool IsEmpty() const { return rows_.empty(); }

  // All lines, each with its end.
  std::string Text() const;

 private:
  std::vector<std::string> headings_;
  std::vector<Align> alignments_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace zep::services
