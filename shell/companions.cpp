#include "shell/companions.h"

#include "services/messages.h"

namespace zep::shell {
namespace {

using services::AppLocation;
using services::NLSFmt;
using services::Session;

// Has the user find the application; false when he does not.
bool LocateApplication(Session& session, AppLocation& location) {
  const std::string name = services::FileTitleOf(location.executable);
  const services::Answer answer = NLSMsgBox(
      session, NLSFmt(session, "Cannot find %0:s would you like to locate the file?", {name}),
      {.icon = services::Icon::kQuestion, .buttons = services::Buttons::kYesNo});
  if (answer != services::Answer::kYes) return false;
  const auto chosen =
      session.user.AskOpenFile({.title = NLSFmt(session, "Find %0:s...", {name}),
                                .filter = NLSFmt(session, "Application|%0:s|All Files|*.*", {name}),
                                .folder = location.folder,
                                .name = name});
  if (!chosen) return false;
  location = {services::FolderOf(*chosen), services::FileTitleOf(*chosen)};
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
  const platform::SystemError error = session.start_program(program);
  if (error) ReportError(session, error, "LaunchApplication");
}

void OpenWebPage(Application& application, std::string_view setting, int default_resource) {
  Session& session = application.session;
  const platform::SystemError error = application.computer.open_address(
      session.settings.AppGetSharedUserSetting(setting, session.strings.Get(default_resource)));
  if (error) session.log.Error(error.subject + ": " + error.description);
}

}  // namespace zep::shell
