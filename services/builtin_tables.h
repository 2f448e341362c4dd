// The string tables of resources/strings as the build puts them into the program.
#pragma once

#include <span>
#include <string_view>

namespace zep::services {

struct BuiltInTable {
  std::string_view name;
  std::string_view contents;
};

// All of them; the first is ZEP.
std::span<const BuiltInTable> BuiltInTables();

}  // namespace zep::services
