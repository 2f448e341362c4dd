// What a command works with: the session at a terminal, the link over the chosen ports, and the
// ways to answer.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/json.h"
#include "cli/options.h"
#include "cli/port_choice.h"
#include "cli/progress.h"
#include "cli/terminal_user.h"
#include "link/port_set.h"
#include "link/wire_trace.h"
#include "platform/computer.h"
#include "platform/files.h"
#include "services/foundation.h"
#include "services/session.h"

namespace zep::cli {

class CommandContext {
 public:
  CommandContext(const Options& given_options, Console& the_console,
                 const platform::Computer& the_computer);
  ~CommandContext();
  CommandContext(const CommandContext&) = delete;
  CommandContext& operator=(const CommandContext&) = delete;

  const Options& options;
  Console& console;
  const platform::Computer& computer;
  TerminalUser user;

 private:
  services::Foundation foundation_;

 public:
  services::Session session;
  ProgressMeter progress;

  // Chooses the language, English for --json; with an unknown one, what to tell the user. Has to
  // come before the first text.
  std::string ChooseLanguage();
  // Checks the options, tells what is wrong with settings and texts, and starts the trace. Anything
  // but kDone ends zepctl; the user has been told.
  ExitStatus Start();

  // The link over the ports of the options or of the settings, with their states checked.
  link::Link& Link();
  // The same for a job. Null when none is Active, or one that was named cannot be used; the user
  // has been told, and LinkStatus() is how the program ends.
  link::Link* LinkForJob();
  // The same for a job with a single radio: the user chooses one of several Active ports.
  link::Link* LinkForOneRadio(link::Transfer direction);
  ExitStatus LinkStatus() const { return StatusOf(link_failure_); }
  // Whether the ports were named with -p, rather than left to the settings.
  bool NamesPorts() const { return !options.ports.empty(); }

  // A result for people: left out with --json.
  void Print(const std::string& text);
  // What a command adds to the object that --json prints at the end.
  Json json = Json::object();

  // Says that the command was not given as it should be.
  ExitStatus UsageError(const std::string& text);
  // How a job with radios ended, as the exit status and in the object of --json.
  ExitStatus JobStatus(const services::Outcome& outcome);
  // How work ends that failed without a job with radios: as the cause tells, or interrupted.
  ExitStatus WorkStatus(services::Failure why) const;

  // What is left to be said at the end: the object of --json, settings that could not be stored.
  void Finish(ExitStatus status);

 private:
  void ShowNote(const platform::SystemError& error);

  services::Failure link_failure_ = services::Failure::kNone;
  std::uint64_t byte_count_ = 0;
  PortDevices devices_;  // named with -p
  platform::FileWriter trace_file_;
  std::unique_ptr<link::WireTrace> trace_;
  std::unique_ptr<platform::IoPorts> io_ports_;
  std::unique_ptr<link::LinkWindows> windows_;
  std::unique_ptr<link::Link> link_;
};

}  // namespace zep::cli
