// The commands of zepctl, one row each. A command lives in a file of its own (command_*.cpp).
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "cli/exit_status.h"
#include "cli/program.h"

namespace CLI {
class App;
}

namespace zep::cli {

// Does the work of a command whose options have been read.
using Action = std::function<ExitStatus(Program&)>;

struct Command {
  std::string_view name;       // "ports", "firmware write"
  std::string_view arguments;  // in the usage line, untranslated: "IMAGE"
  std::string_view summary;    // English, a line for the list of commands
  // Adds the command's own arguments and options to app.
  Action (*declare)(CLI::App& app);
};

// All of them, in the order of the help. Those that share their first word are kept together.
std::span<const Command> Commands();

Action DeclarePorts(CLI::App& app);
Action DeclareIdentify(CLI::App& app);
Action DeclareRead(CLI::App& app);
Action DeclareProgram(CLI::App& app);
Action DeclareFirmwareCheck(CLI::App& app);
Action DeclareFirmwareWrite(CLI::App& app);
Action DeclareFirmwareRead(CLI::App& app);
Action DeclareDataCheck(CLI::App& app);
Action DeclareDataShow(CLI::App& app);

}  // namespace zep::cli
