#include "services/text_layout.h"

#include <algorithm>
#include <utility>

#include "platform/utf8_text.h"

namespace zep::services {
namespace {

using platform::FirstCharacter;
using platform::Utf8Character;

constexpr int kGap = 2;
constexpr std::string_view kDots = "...";

std::string Blanks(int count) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

// The part of the text, cut between characters, that fits.
std::string_view Fitting(std::string_view text, int width) {
  std::size_t at = 0;
  while (at < text.size()) {
    const Utf8Character next = FirstCharacter(text.substr(at));
    width -= next.columns;
    if (width < 0) break;
    at += next.bytes;
  }
  return text.substr(0, at);
}

std::string WrapParagraph(std::string_view text, int width, int indent) {
  std::string wrapped;
  int column = 0;
  while (!text.empty()) {
    const std::size_t blanks = std::min(text.find_first_not_of(' '), text.size());
    const std::size_t end = std::min(text.find(' ', blanks), text.size());
    const std::string_view word = text.substr(blanks, end - blanks);
    const int needed = static_cast<int>(blanks) + DisplayWidth(word);
    if (column > 0 && !word.empty() && column + needed > width) {
      wrapped += "\n" + Blanks(indent);
      column = indent + DisplayWidth(word);
    } else {
      wrapped += text.substr(0, blanks);
      column += needed;
    }
    wrapped += word;
    text.remove_prefix(end);
  }
  return wrapped;
}

}  // namespace

int CountCharacters(std::string_view text) {
  int count = 0;
  for (; !text.empty(); text.remove_prefix(FirstCharacter(text).bytes)) ++count;
  return count;
}

int DisplayWidth(std::string_view text) {
  int width = 0;
  while (!text.empty()) {
    const Utf8Character next = FirstCharacter(text);
    width += next.columns;
    text.remove_prefix(next.bytes);
  }
  return width;
}

std::string PadTo(std::string_view text, int width) {
  return std::string(text) + Blanks(width - DisplayWidth(text));
}

std::string CutTo(std::string_view text, int width) {
  if (DisplayWidth(text) <= width) return std::string(text);
  const int room = width - static_cast<int>(kDots.size());
  if (room < 1) return std::string(Fitting(text, width));
  return std::string(Fitting(text, room)).append(kDots);
}

std::string Wrap(std::string_view text, int width, int indent) {
  std::string wrapped;
  while (true) {
    const std::size_t end = text.find('\n');
    wrapped += WrapParagraph(text.substr(0, end), width, indent);
    if (end == std::string_view::npos) return wrapped;
    wrapped += '\n';
    text.remove_prefix(end + 1);
  }
}

Table::Table(std::vector<std::string> headings, std::vector<Align> alignments)
    : headings_(std::move(headings)), alignments_(std::move(alignments)) {}

void Table::AddRow(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

std::string Table::Text() const {
  std::vector<const std::vector<std::string>*> lines;
  if (!headings_.empty()) lines.push_back(&headings_);
  for (const std::vector<std::string>& row : rows_) lines.push_back(&row);

  std::vector<int> widths;
  for (const std::vector<std::string>* line : lines) {
    widths.resize(std::max(widths.size(), line->size()));
    for (std::size_t column = 0; column < line->size(); ++column)
      widths[column] = std::max(widths[column], DisplayWidth((*line)[column]));
  }

  std::string text;
  for (const std::vector<std::string>* line : lines) {
    std::string laid_out;
    for (std::size_t column = 0; column < line->size(); ++column) {
      const std::string& cell = (*line)[column];
      const bool to_the_right = column < alignments_.size() && alignments_[column] == Align::kRight;
      laid_out += to_the_right ? Blanks(widths[column] - DisplayWidth(cell)) + cell
                               : PadTo(cell, widths[column]);
      laid_out += Blanks(kGap);
    }
    laid_out.erase(laid_out.find_last_not_of(' ') + 1);
    text += laid_out + "\n";
  }
  return text;
}

}  // namespace zep::services
