#include "shell/companions.h"

#include "services/locate_file.h"
#include "services/messages.h"

namespace zep::shell {
namespace {

using services::AppLocation;
using services::NLSFmt;
using services::Session;

// Has the user find the application; false when he does not.
bool LocateApplication(Session& session, AppLocation& location) {
  std::string name = services::FileTitleOf(location.executable);
  const std::string title = services::FindTitle(session, name);
  const std::string filter = NLSFmt(session, "Application|%0:s|All Files|*.*", {name});
  if (!services::AskForFile(session, location.folder, name, title, filter)) return false;
  location.executable = name;
  return true;
}

}  // namespace

void LaunchApplication(Application& application, services::AppType type) {
  Session& session = application.session;
  AppLocation location;
  if (!session.settings.AppGetAppLocation(type, location)) {
    if (!LocateApplication(session, location)) return;
    session.settings.AppSaveAppLocation(type, location);
  }
  const std::string program = services::AppMakePath(location.folder, location.executable);
  const platform::SystemError error = application.surroundings.start_program(program);
  if (error) ReportError(session, error, "LaunchApplication");
}

void OpenWebPage(Application& application, std::string_view setting, int default_resource) {
  Session& session = application.session;
  const platform::SystemError error = application.surroundings.open_address(
      session.settings.AppGetSharedUserSetting(setting, session.strings.Get(default_resource)));
  if (error) session.log.Error(error.subject + ": " + error.description);
}

}  // namespace zep::shell
