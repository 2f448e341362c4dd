// What every program of ours does with these services when it starts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/computer.h"
#include "platform/system_error.h"
#include "services/session.h"

namespace zep::services {

// The program's log and its dictionary, by the names of their files.
inline constexpr std::string_view kLogFile = "zepdlca.log";
inline constexpr std::string_view kDictionaryFile = "ZEPDLCA.mld";

// What a session stands on, in the order in which one part needs the other. The computer outlives
// it.
struct Foundation {
  // An empty application folder is looked for (see FindApplicationPaths).
  Foundation(const std::string& application_folder, const std::string& string_table,
             const platform::Computer& computer);
  Foundation(const Foundation&) = delete;
  Foundation& operator=(const Foundation&) = delete;

  const ApplicationPaths paths;
  const StringTable strings;
  Translation translation;
  ApplicationLog log;
  Settings settings;

  Seams SeamsFor(const platform::Computer& computer, User& user);
};

// Chooses the wanted language, else that of the shared setting UILanguage, which is English when
// the value is none of the four languages, and reads the dictionary for any language but English.
// Without a dictionary all texts are English; what is wrong with it, or with the string table, is
// logged. Returns why the dictionary could not be read.
platform::SystemError LoadTexts(Session& session, std::optional<Language> wanted = std::nullopt);

// What the user is told when the string table is not as it should be; empty when it is.
std::string StringTableNote(const Session& session);

}  // namespace zep::services
