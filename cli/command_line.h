// The command line as a grammar: which command was given, with which options, or what to show
// instead.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/options.h"
#include "services/session.h"

namespace zep::cli {

class CommandLine {
 public:
  CommandLine();
  ~CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  enum class Outcome {
    kRun,      // action does the work
    kHelp,     // was asked for
    kVersion,  // was asked for
    kNothing,  // no command: help is what the user needs
    kProblem,  // see Problem()
  };

  // Options before and after the command are the same. As far as they could be read, options are
  // filled in whatever the outcome is.
  Outcome Parse(std::vector<std::string> arguments);

  Options options;
  Action action;

  // Of the command that was begun, or of the whole program; translated, for a terminal this wide.
  std::string Help(const services::Session& session, int width) const;
  // What is wrong with the command line, translated.
  std::string Problem(const services::Session& session) const;

 private:
  struct Grammar;
  std::unique_ptr<Grammar> grammar_;
};

}  // namespace zep::cli
