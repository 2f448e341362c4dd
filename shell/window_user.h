// The user in front of the windows: message boxes, file dialogs, and the turns in which windows
// react while a job runs.
#pragma once

#include <chrono>

#include "services/session.h"

namespace zep::shell {

class WindowUser final : public services::User {
 public:
  // The session outlives the last call; nothing is shown before it is attached.
  void Attach(services::Session& session) { session_ = &session; }

  void PumpEvents() override;
  services::Answer ShowMessage(const services::MessageRequest& request) override;
  std::optional<std::string> AskOpenFile(const services::FileRequest& request) override;
  std::optional<std::string> AskSaveFile(const services::FileRequest& request) override;

 private:
  std::optional<std::string> AskFile(const services::FileRequest& request, long style);

  services::Session* session_ = nullptr;
  std::chrono::steady_clock::time_point last_turn_{};
};

}  // namespace zep::shell
