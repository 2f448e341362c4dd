// A line of the item list, hexadecimal text like a record: two characters, a length N in bytes (2),
// data (2N), which is the numbers of N items.
#pragma once

#include <string>
#include <string_view>

namespace zep::link {

// The line holds as many items as its count says. A line too short for a count holds none and is
// none the worse; what follows the items is not looked at.
bool IsIntactListLine(std::string_view line);

// The data characters: what there is of them when the line is too short.
std::string GetListData(std::string_view line);

}  // namespace zep::link
