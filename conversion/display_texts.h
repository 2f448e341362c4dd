// The texts that a radio shows on its display, as database version 4.02 brought them in: one item
// for all of them.
#pragma once

#include <string>

namespace zep::conversion {

// The item as hexadecimal text: a byte 00, then the texts in ASCII, each ended by FE.
std::string DisplayTextTable();

}  // namespace zep::conversion
