// Windows speaks UTF-16, the program speaks UTF-8. Only there are these two defined.
#pragma once

#include <string>
#include <string_view>

namespace zep::platform {

// Characters that cannot be converted become the replacement character.
std::wstring Widen(std::string_view utf8);
std::string Narrow(std::wstring_view utf16);

}  // namespace zep::platform
