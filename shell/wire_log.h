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

  // The lines kept, the last one perhaps unfinished.
  std::string Text() const;
  // Grows with every piece and every Clear(), so that a window sees whether there is news.
  std::uint64_t Version() const { return version_; }

 private:
  std::deque<std::string> lines_;
  std::uint64_t version_ = 0;
};

}  // namespace zep::shell
