// The commands of zepctl, one row each. A command lives in a file of its own (command_*.cpp).
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "cli/command_context.h"
#include "cli/exit_status.h"

namespace zep::cli {

// The arguments that a command takes besides the options of all commands. Meanings are English
// texts that are translated for the help; targets are filled in when the command line is read.
class Arguments {
 public:
  virtual ~Arguments() = default;

  // A word by its place; required unless optional.
  virtual void AddWord(std::string_view name, std::string& target, std::string_view meaning) = 0;
  virtual void AddOptionalWord(std::string_view name, std::string& target,
                               std::string_view meaning) = 0;
  // "--name VALUE" and "--name"; the name comes with its dashes, value is what the help calls it.
  virtual void AddOption(std::string_view name, std::string_view value, std::string& target,
                         std::string_view meaning) = 0;
  virtual void AddFlag(std::string_view name, bool& target, std::string_view meaning) = 0;
  // What stands below them in the help.
  virtual void AddRemark(std::string_view remark) = 0;
};

// Does the work of a command whose arguments have been read.
using Action = std::function<ExitStatus(CommandContext&)>;

struct Command {
  std::string_view name;       // "ports", "firmware write"
  std::string_view arguments;  // in the usage line, untranslated: "IMAGE"
  std::string_view summary;    // English, a line for the list of commands
  Action (*declare)(Arguments& arguments);
};

// All of them, in the order of the help. Those that share their first word are kept together.
std::span<const Command> Commands();

Action DeclarePorts(Arguments& arguments);
Action DeclareIdentify(Arguments& arguments);
Action DeclareRead(Arguments& arguments);
Action DeclareProgram(Arguments& arguments);
Action DeclareFirmwareCheck(Arguments& arguments);
Action DeclareFirmwareWrite(Arguments& arguments);
Action DeclareFirmwareRead(Arguments& arguments);
Action DeclareDataCheck(Arguments& arguments);
Action DeclareUpgrade(Arguments& arguments);
Action DeclareConvertPersonality(Arguments& arguments);
Action DeclareConvertCalibration(Arguments& arguments);
Action DeclareDataShow(Arguments& arguments);
Action DeclareDataDiff(Arguments& arguments);

}  // namespace zep::cli
