#include "shell/wire_log.h"

namespace zep::shell {
namespace {

// Some 1.5 MB of text: a whole database, or the end of a firmware transfer.
constexpr std::size_t kMostLines = 20'000;

}  // namespace

void WireLog::Add(std::string_view piece) {
  ++version_;
  while (!piece.empty()) {
    if (lines_.empty() || lines_.back().ends_with('\n')) lines_.emplace_back();
    const std::size_t end = piece.find('\n');
    const std::size_t count = end == std::string_view::npos ? piece.size() : end + 1;
    lines_.back() += piece.substr(0, count);
    piece.remove_prefix(count);
  }
  while (lines_.size() > kMostLines) lines_.pop_front();
}

void WireLog::Clear() {
  ++version_;
  lines_.clear();
}

std::string WireLog::Text() const {
  std::string text;
  for (const std::string& line : lines_) text += line;
  return text;
}

}  // namespace zep::shell
