#include "upgrade/upgrade_log.h"

#include <utility>

#include "platform/files.h"
#include "services/log.h"
#include "services/messages.h"
#include "services/paths.h"

namespace zep::upgrade {

using services::NLSFmt;
using services::NLSMsgBox;

UpgradeLog::UpgradeLog(services::Session& session, std::string file_name)
    : session_(session), file_name_(std::move(file_name)) {}

void UpgradeLog::Log(std::string_view message) {
  if (file_name_.empty()) return;
  platform::FileWriter file;
  file.Open(file_name_, platform::WriteMode::kAppend);
  file.Write(services::DateAndTime(session_.clock.LocalTime()) + "  " + std::string(message) +
             "\n");
  const platform::SystemError error = file.Close();
  if (!error || std::exchange(failure_told_, true)) return;
  NLSMsgBox(session_,
            NLSFmt(session_,
                   "The upgrade log %0:s cannot be written: %1:s. The upgrade goes on without it.",
                   {file_name_, error.description}));
}

std::string UpgradeLogFile(const services::Session& session) {
  return services::AppMakePath(session.paths.application_folder, "upgrade.log");
}

}  // namespace zep::upgrade
