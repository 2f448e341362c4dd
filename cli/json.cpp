#include "cli/json.h"

#include <iterator>
#include <nlohmann/json.hpp>

namespace zep::cli {

struct JsonWriter {
  using Output = nlohmann::ordered_json;

  Output operator()(const Json& json) const { return std::visit(*this, json.value_); }
  Output operator()(const Json::Members& members) const {
    Output output = Output::object();
    for (const auto& [name, value] : members) output[name] = (*this)(value);
    return output;
  }
  Output operator()(const Json::Elements& elements) const {
    Output output = Output::array();
    for (const Json& element : elements) output.push_back((*this)(element));
    return output;
  }
  Output operator()(const auto& value) const { return value; }
};

Json Json::List() {
  Json list;
  list.value_ = Elements{};
  return list;
}

Json Json::List(const std::vector<std::string>& texts) {
  Json list = List();
  for (const std::string& text : texts) list.Add(Json(text));
  return list;
}

Json& Json::SetAll(Json members) {
  Members& added = std::get<Members>(members.value_);
  Members& all = std::get<Members>(value_);
  all.insert(all.end(), std::make_move_iterator(added.begin()),
             std::make_move_iterator(added.end()));
  return *this;
}

Json& Json::Add(Json element) {
  std::get<Elements>(value_).push_back(std::move(element));
  return *this;
}

std::string Json::Text() const {
  return JsonWriter()(*this).dump(2, ' ', false, JsonWriter::Output::error_handler_t::replace);
}

}  // namespace zep::cli
