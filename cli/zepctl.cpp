#include "cli/zepctl.h"

#include "cli/command_line.h"
#include "services/messages.h"
#include "services/resource_ids.h"

namespace zep::cli {
namespace {

// "1.0.0" of "Version 1.0.0"
std::string VersionNumber(const services::Session& session) {
  const std::string& text = session.strings.Get(services::kResVersion);
  return text.substr(text.find_last_of(' ') + 1);
}

ExitStatus Run(CommandLine& command_line, CommandLine::Outcome outcome, CommandContext& context) {
  Console& console = context.console;
  const std::string language_problem = context.ChooseLanguage();
  switch (outcome) {
    case CommandLine::Outcome::kHelp:
      console.WriteOutput(command_line.Help(context.session, console.Width()));
      return ExitStatus::kDone;
    case CommandLine::Outcome::kVersion:
      console.WriteOutput("zepctl " + VersionNumber(context.session) + "\n");
      return ExitStatus::kDone;
    case CommandLine::Outcome::kNothing:
      console.WriteError(command_line.Help(context.session, console.Width()));
      return ExitStatus::kUsage;
    case CommandLine::Outcome::kProblem:
      return context.UsageError(command_line.Problem(context.session));
    case CommandLine::Outcome::kRun:
      break;
  }
  if (!language_problem.empty()) return context.UsageError(language_problem);
  const ExitStatus start = context.Start();
  return start == ExitStatus::kDone ? command_line.action(context) : start;
}

}  // namespace

ExitStatus RunZepctl(const std::vector<std::string>& arguments, Console& console,
                     const platform::Computer& computer) {
  CommandLine command_line;
  const CommandLine::Outcome outcome = command_line.Parse(arguments);
  CommandContext context(command_line.options, console, computer);
  const ExitStatus status = Run(command_line, outcome, context);
  context.Finish(status);
  if (!console.HasLostOutput()) return status;
  context.user.Say(
      services::NLSFmt(context.session, "The result cannot be written to the standard output."));
  return status == ExitStatus::kDone ? ExitStatus::kRefused : status;
}

}  // namespace zep::cli
