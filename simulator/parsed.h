// What became of a text that a user typed: a value, or the reason why it cannot be one.
#pragma once

#include <optional>
#include <string>

namespace zep::simulator {

template <typename Value>
struct Parsed {
  std::optional<Value> value;
  std::string error;  // names what was typed and what is allowed; empty when there is a value
};

}  // namespace zep::simulator
