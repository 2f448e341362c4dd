#include "services/application.h"

#include "platform/files.h"

namespace zep::services {

void LoadTexts(Session& session) {
  const std::string path = FindApplicationFile(session.paths, kDictionaryFile);
  const platform::FileContents file = platform::ReadWholeFile(path);
  session.translation.Load(file.bytes);
  if (file.error) session.log.Error(path + ": " + file.error.description);
  if (!session.translation.Problem().empty())
    session.log.Error(path + ": " + session.translation.Problem());
  if (!session.strings.Problem().empty()) session.log.Error(session.strings.Problem());

  const int number = session.settings.AppGetUserNumber(AppType::kRoot, "UILanguage", 1);
  const bool is_language = number >= 1 && number <= kLanguageCount;
  session.translation.SetLanguage(is_language ? static_cast<Language>(number) : Language::kEnglish);
}

}  // namespace zep::services
