// The end of what went over the wires, kept in memory for the transcript window.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace zep::shell {

class WireLog {
 public:
  // Adds a piece of text; whole lines come in several pieces.
  void Add(std::string_view piece);
  void Clear();

  // The lines kept, the last one perhaps unfinished; from a position on, those behind it only.
  std::string Text() const { return TextFrom(first_); }
  std::string TextFrom(std::uint64_t position) const;
  // Where the lines kept begin and end, in bytes of all that was ever added.
  std::uint64_t First() const { return first_; }
  std::uint64_t End() const { return end_; }

  // Grows with every piece and every Clear(), so that a window sees whether there is news.
  std::uint64_t Version() const { return version_; }

 private:
  std::deque<std::string> lines_;
  std::uint64_t first_ = 0;
  std::uint64_t end_ = 0;
  std::uint64_t version_ = 0;
};

}  // namespace zep::shell
