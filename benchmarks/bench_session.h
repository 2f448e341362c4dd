// A session for benchmarks: no user, no settings, English texts.
#pragma once

#include <cstdlib>
#include <iostream>
#include <string>

#include "firmware/transfer_view.h"
#include "link/job.h"
#include "platform/io_ports.h"
#include "platform/settings_hive.h"
#include "services/session.h"

namespace zep::benchmarks {

// Gives every question its default answer and keeps the last box, to tell why something failed.
class QuietUser final : public services::User {
 public:
  void PumpEvents() override {}
  services::Answer ShowMessage(const services::MessageRequest& request) override {
    last_box = request.text;
    return request.buttons == services::Buttons::kOk ? services::Answer::kOk
                                                     : services::Answer::kYes;
  }
  std::optional<std::string> AskOpenFile(const services::FileRequest&) override {
    return std::nullopt;
  }
  std::optional<std::string> AskSaveFile(const services::FileRequest&) override {
    return std::nullopt;
  }
  std::string last_box;
};

class QuietWindows final : public link::LinkWindows {
 public:
  void ShowPreferences(link::Link&, link::PortStates&) override {}
  void ShowPortSelection(link::Job&) override {}
};

class QuietTransfer final : public firmware::TransferView {
 public:
  void SetCaption(const std::string&) override {}
  void ShowStatus(const std::string&) override {}
  void SetProgressMaximum(int) override {}
  void SetProgress(int) override {}
  void ShowProgress(bool) override {}
  void EnableCancel(bool) override {}
  void ShowCancel(bool) override {}
  void ShowBootstrapHint(bool) override {}
  void SetPort(int, const firmware::PortFacts&) override {}
  void Repaint() override {}
};

struct BenchSession {
  explicit BenchSession(platform::Clock& clock, const std::string& folder = {})
      : log(clock, ""),
        session({.clock = clock,
                 .user = user,
                 .settings = settings,
                 .strings = strings,
                 .translation = translation,
                 .log = log,
                 .start_program = {}},
                {.application_folder = folder, .program_folder = folder}) {}

  QuietUser user;
  platform::MemoryHive user_hive;
  platform::MemoryHive machine_hive;
  services::StringTable strings{"ZEP", ""};
  services::Translation translation;
  services::ApplicationLog log;
  services::Settings settings{user_hive, machine_hive, strings, log};
  services::Session session;
};

// Ends the benchmark with a reason.
[[noreturn]] inline void Fail(const std::string& why) {
  std::cerr << "The benchmark failed: " << why << "\n";
  std::exit(1);
}

}  // namespace zep::benchmarks
