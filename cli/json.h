// Results for other programs: values of JSON, made up by the commands and written out at the end.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace zep::cli {

class Json {
 public:
  // An object without members.
  Json() : value_(Members{}) {}
  explicit Json(bool value) : value_(value) {}
  explicit Json(std::integral auto value) : value_(static_cast<std::int64_t>(value)) {}
  explicit Json(double value) : value_(value) {}
  explicit Json(std::string_view text) : value_(std::string(text)) {}
  explicit Json(const std::string& text) : value_(text) {}
  explicit Json(const char* text) : value_(std::string(text)) {}
  // A list without elements.
  static Json List();
  static Json List(const std::vector<std::string>& texts);

  // Adds a member to an object, behind those that it has. Each name is set once.
  template <typename Value>
  Json& Set(std::string_view name, Value&& value) {
    std::get<Members>(value_).emplace_back(std::string(name), Json(std::forward<Value>(value)));
    return *this;
  }
  // Adds the members of another object.
  Json& SetAll(Json members);
  // Adds an element to a list.
  Json& Add(Json element);

  // The value in lines with indents. What is no UTF-8 in a text, as it may come from a radio, is
  // replaced.
  std::string Text() const;

 private:
  using Members = std::vector<std::pair<std::string, Json>>;
  using Elements = std::vector<Json>;
  friend struct JsonWriter;

  std::variant<bool, std::int64_t, double, std::string, Elements, Members> value_;
};

}  // namespace zep::cli
