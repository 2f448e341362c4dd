#include "shell/wire_log.h"

namespace zep::shell {
namespace {

// Some 1.5 MB of text: a whole database, or the end of a firmware transfer.
constexpr std::size_t kMostLines = 20'000;

}  // namespace

void WireLog::Add(std::string_view piece) {
  ++version_;
  end_ += piece.size();
  while (!piece.empty()) {
    if (lines_.empty() || lines_.back().ends_with('\n')) lines_.emplace_back();
    const std::size_t end = piece.find('\n');
    const std::size_t count = end == std::string_view::npos ? piece.size() : end + 1;
    lines_.back() += piece.substr(0, count);
    piece.remove_prefix(count);
  }
  while (lines_.size() > kMostLines) {
    first_ += lines_.front().size();
    lines_.pop_front();
  }
}

void WireLog::Clear() {
  ++version_;
  lines_.clear();
  first_ = end_;
}

std::string WireLog::TextFrom(std::uint64_t position) const {
  // What is wanted is at the end as a rule.
  std::uint64_t start = end_;
  auto line = lines_.end();
  while (line != lines_.begin() && start > position) start -= (--line)->size();
  std::string text;
  for (; line != lines_.end(); ++line) text += *line;
  if (position > start) text.erase(0, static_cast<std::size_t>(position - start));
  return text;
}

}  // namespace zep::shell
