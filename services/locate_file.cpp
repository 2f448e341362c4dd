#include "services/locate_file.h"

#include "platform/files.h"
#include "services/messages.h"
#include "services/paths.h"

namespace zep::services {

bool GetFile(Session& session, std::string& folder, std::string& name, const std::string& title) {
  if (!name.empty() && platform::FileExists(folder + name)) return true;
  return AskForFile(session, folder, name, title, NLSFmt(session, "All files|*.*"));
}

bool AskForFile(Session& session, std::string& folder, std::string& name, const std::string& title,
                const std::string& filter) {
  const std::string question =
      NLSFmt(session, "Cannot find %0:s would you like to locate the file?", {name});
  if (NLSMsgBox(session, question, {.icon = Icon::kQuestion, .buttons = Buttons::kYesNo}) !=
      Answer::kYes) {
    return false;
  }
  const std::optional<std::string> picked =
      session.user.AskOpenFile({.title = title, .filter = filter, .folder = folder, .name = name});
  if (!picked) return false;
  folder = FolderOf(*picked);
  name = FileTitleOf(*picked);
  return true;
}

std::string FindTitle(const Session& session, const std::string& name) {
  return NLSFmt(session, "Find %0:s...", {name});
}

}  // namespace zep::services
