// What every program of ours does with these services when it starts.
#pragma once

#include <optional>
#include <string_view>

#include "platform/system_error.h"
#include "services/session.h"

namespace zep::services {

// The program's log and its dictionary, by the names of their files.
inline constexpr std::string_view kLogFile = "zepdlca.log";
inline constexpr std::string_view kDictionaryFile = "ZEPDLCA.mld";

// Chooses the wanted language, else that of the shared setting UILanguage, which is English when
// the value is none of the four languages, and reads the dictionary for any language but English.
// Without a dictionary all texts are English; what is wrong with it, or with the string table, is
// logged. Returns why the dictionary could not be read.
platform::SystemError LoadTexts(Session& session, std::optional<Language> wanted = std::nullopt);

}  // namespace zep::services
