// What every program of ours does with these services when it starts.
#pragma once

#include <string_view>

#include "services/session.h"

namespace zep::services {

// The program's log and its dictionary, by the names of their files.
inline constexpr std::string_view kLogFile = "zepdlca.log";
inline constexpr std::string_view kDictionaryFile = "ZEPDLCA.mld";

// Reads the dictionary and chooses the language of the shared setting UILanguage; English when the
// value is none of the four languages. Without a dictionary all texts are English; what is wrong
// with it, or with the string table, is logged.
void LoadTexts(Session& session);

}  // namespace zep::services
