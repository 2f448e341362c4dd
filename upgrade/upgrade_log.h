// upgrade.log: what an upgrade did, step by step, for whoever has to finish or explain it later.
// Always in English, so that it reads the same wherever it is sent.
#pragma once

#include <string>
#include <string_view>

#include "services/session.h"

namespace zep::upgrade {

class UpgradeLog {
 public:
  // Lines go to the end of the file. An empty name keeps nothing, as for a trial run.
  UpgradeLog(services::Session& session, std::string file_name);

  // Appends the local date and time, two blanks and the message. The file is closed again, so that
  // the line survives a crash. The first line that cannot be written is told to the user; the job
  // goes on without a log.
  void Log(std::string_view message);

  const std::string& FileName() const { return file_name_; }

 private:
  services::Session& session_;
  std::string file_name_;
  bool failure_told_ = false;
};

// Its place: the application folder.
std::string UpgradeLogFile(const services::Session& session);

}  // namespace zep::upgrade
