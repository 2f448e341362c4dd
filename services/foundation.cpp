#include "services/foundation.h"

#include <utility>

#include "platform/files.h"
#include "services/messages.h"

namespace zep::services {
namespace {

Language LanguageOfSettings(const Session& session) {
  const int number = session.settings.AppGetUserNumber(AppType::kRoot, "UILanguage", 1);
  const bool is_language = number >= 1 && number <= kLanguageCount;
  return is_language ? static_cast<Language>(number) : Language::kEnglish;
}

}  // namespace

Foundation::Foundation(const std::string& application_folder, const std::string& string_table,
                       const platform::Computer& computer)
    : paths(FindApplicationPaths(application_folder)),
      strings(string_table, paths.application_folder),
      log(computer.clock, AppMakePath(paths.application_folder, kLogFile)),
      settings(computer.user_hive, computer.machine_hive, strings, log) {}

Seams Foundation::SeamsFor(const platform::Computer& computer, User& user) {
  return {.clock = computer.clock,
          .user = user,
          .settings = settings,
          .strings = strings,
          .translation = translation,
          .log = log,
          .start_program = computer.start_program};
}

platform::SystemError LoadTexts(Session& session, std::optional<Language> wanted) {
  if (!session.strings.Problem().empty()) session.log.Error(session.strings.Problem());
  const Language language = wanted ? *wanted : LanguageOfSettings(session);
  session.translation.SetLanguage(language);
  if (language == Language::kEnglish) return {};

  const std::string path = FindApplicationFile(session.paths, kDictionaryFile);
  platform::FileContents file = platform::ReadWholeFile(path);
  session.translation.Load(file.bytes);
  if (file.error) session.log.Error(path + ": " + file.error.description);
  if (!session.translation.Problem().empty())
    session.log.Error(path + ": " + session.translation.Problem());
  return std::move(file.error);
}

std::string StringTableNote(const Session& session) {
  const std::string& problem = session.strings.Problem();
  if (problem.empty()) return {};
  return NLSFmt(session,
                "The texts of this application are not all there (%0:s). Please choose another "
                "string table or reinstall this application.",
                {problem});
}

}  // namespace zep::services
