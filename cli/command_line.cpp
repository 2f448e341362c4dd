#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <utility>

#include "services/messages.h"
#include "services/text_layout.h"

namespace zep::cli {
namespace {

using services::DisplayWidth;
using services::NLSFmt;
using services::NLSText;
using services::PadTo;
using services::Wrap;

constexpr int kIndent = 2;
constexpr int kNameColumn = 28;
constexpr int kWidestHelp = 100;
// Of an option that is given several times.
constexpr auto kLastCounts = CLI::MultiOptionPolicy::TakeLast;

std::string Text(std::string_view view) { return std::string(view); }

void AddOptions(CLI::App& app, Options& options, bool& help, bool& version) {
  app.add_option(
         "-p,--port", options.ports,
         Text(NLSText("the radio's port; up to four times. N is its number, 1 to 4. DEVICE is "
                      "a serial device such as /dev/ttyUSB0 or COM3, or a simulated radio: "
                      "sim:conventional, sim:trunked")))
      ->type_name("[N=]DEVICE")
      ->allow_extra_args(false);
  app.add_flag("--yes", options.yes, Text(NLSText("answer every question with Yes")));
  app.add_flag("--no", options.no,
               Text(NLSText("answer every question with No; so it is without a terminal, too")));
  app.add_flag(
      "--json", options.json,
      Text(NLSText("the result as one JSON object on the standard output; all texts are English")));
  app.add_flag("--quiet", options.quiet, Text(NLSText("no progress; messages are still shown")));
  app.add_option("--trace", options.trace,
                 Text(NLSText("write every byte on the wire into FILE, with its time")))
      ->type_name("FILE")
      ->multi_option_policy(kLastCounts);
  app.add_option("--application-folder", options.application_folder,
                 Text(NLSText("where bs.tsk, dl.tsk and the saved data are")))
      ->type_name("DIR")
      ->multi_option_policy(kLastCounts);
  app.add_option("--string-table", options.string_table,
                 Text(NLSText("the family of radios: ZEP, \"Vorn PMR II\" or Torvik")))
      ->type_name("NAME")
      ->multi_option_policy(kLastCounts);
  app.add_option("--language", options.language, Text(NLSText("language of the messages")))
      ->type_name(services::LanguageCodes("|"))
      ->multi_option_policy(kLastCounts);
  app.add_flag("--inhouse", options.in_house,
               Text(NLSText("allow firmware that the radio's microprocessor is not made for")));
  app.add_flag("-h,--help", help, Text(NLSText("show this help, or that of a command")));
  app.add_flag("--version", version, Text(NLSText("show the version")));
}

// The two halves of a command's name: "firmware" and "write", or none and "ports".
std::pair<std::string, std::string> Halves(std::string_view name) {
  const std::size_t blank = name.find(' ');
  if (blank == std::string_view::npos) return {"", Text(name)};
  return {Text(name.substr(0, blank)), Text(name.substr(blank + 1))};
}

// "-p, --port [N=]DEVICE"
std::string OptionName(const CLI::Option& option) {
  std::string name = option.get_name(option.get_positional(), true);
  if (const std::size_t comma = name.find(','); comma != std::string::npos)
    name.insert(comma + 1, " ");
  if (!option.get_positional() && option.get_items_expected_max() > 0 &&
      !option.get_type_name().empty()) {
    name += " " + option.get_type_name();
  }
  return name;
}

// A name, and what it means beside or below it.
std::string HelpEntry(const std::string& name, const std::string& meaning, int width) {
  std::string entry = PadTo(std::string(kIndent, ' ') + name, kNameColumn);
  if (DisplayWidth(entry) > kNameColumn) entry += "\n" + std::string(kNameColumn, ' ');
  const std::string wrapped = Wrap(std::string(kNameColumn, ' ') + meaning, width, kNameColumn);
  return entry + wrapped.substr(kNameColumn) + "\n";
}

std::string OptionEntries(const CLI::App& app, const services::Session& session, int width) {
  std::string text;
  for (const CLI::Option* option : app.get_options())
    text += HelpEntry(OptionName(*option), NLSFmt(session, option->get_description()), width);
  return text;
}

// Hands the arguments of a command to its parser.
class CommandArguments final : public Arguments {
 public:
  explicit CommandArguments(CLI::App& app) : app_(app) {}

  void AddWord(std::string_view name, std::string& target, std::string_view meaning) override {
    app_.add_option(Text(name), target, Text(meaning))->required();
  }
  void AddOptionalWord(std::string_view name, std::string& target,
                       std::string_view meaning) override {
    app_.add_option(Text(name), target, Text(meaning));
  }
  void AddOption(std::string_view name, std::string_view value, std::string& target,
                 std::string_view meaning) override {
    app_.add_option(Text(name), target, Text(meaning))
        ->type_name(Text(value))
        ->multi_option_policy(kLastCounts);
  }
  void AddFlag(std::string_view name, bool& target, std::string_view meaning) override {
    app_.add_flag(Text(name), target, Text(meaning));
  }
  void AddRemark(std::string_view remark) override { app_.footer(Text(remark)); }

 private:
  CLI::App& app_;
};

}  // namespace

struct CommandLine::Grammar {
  CLI::App app;
  bool help = false;
  bool version = false;
  std::map<std::string, CLI::App*> groups;
  std::map<const CLI::App*, const Command*> commands;
  std::map<const CLI::App*, Action> actions;
  std::unique_ptr<CLI::ParseError> error;

  Grammar() {
    app.set_help_flag();
    app.allow_windows_style_options(false);
    app.fallthrough();
    app.require_subcommand(0, 1);
  }

  void Add(const Command& command) {
    const auto [group, name] = Halves(command.name);
    CLI::App* parent = &app;
    if (!group.empty()) {
      CLI::App*& known = groups[group];
      if (known == nullptr) known = app.add_subcommand(group)->require_subcommand(0, 1);
      parent = known;
    }
    CLI::App* sub = parent->add_subcommand(name);
    commands[sub] = &command;
    CommandArguments arguments(*sub);
    actions[sub] = command.declare(arguments);
  }

  // The innermost command that was given.
  const CLI::App& Given() const {
    const CLI::App* given = &app;
    while (!given->get_subcommands().empty()) given = given->get_subcommands().front();
    return *given;
  }

  std::string CommandEntries(const CLI::App& group, const services::Session& session,
                             int width) const {
    std::string text;
    for (const Command& command : Commands()) {
      if (group.get_parent() != nullptr && Halves(command.name).first != group.get_name()) continue;
      const bool is_long = command.arguments.find('|') != std::string_view::npos;
      const std::string name =
          Text(command.name) + " " + (is_long ? "FILE" : Text(command.arguments));
      text += HelpEntry(name, NLSFmt(session, command.summary), width);
    }
    return text;
  }
};

CommandLine::CommandLine() : grammar_(std::make_unique<Grammar>()) {
  AddOptions(grammar_->app, options, grammar_->help, grammar_->version);
  for (const Command& command : Commands()) grammar_->Add(command);
}

CommandLine::~CommandLine() = default;

CommandLine::Outcome CommandLine::Parse(std::vector<std::string> arguments) {
  std::reverse(arguments.begin(), arguments.end());
  try {
    grammar_->app.parse(arguments);
  } catch (const CLI::ParseError& error) {
    grammar_->error = std::make_unique<CLI::ParseError>(error);
  }
  if (grammar_->help) return Outcome::kHelp;
  if (grammar_->version) return Outcome::kVersion;
  if (grammar_->error) return Outcome::kProblem;
  const auto found = grammar_->actions.find(&grammar_->Given());
  if (found == grammar_->actions.end()) return Outcome::kNothing;
  action = found->second;
  return Outcome::kRun;
}

std::string CommandLine::Help(const services::Session& session, int width) const {
  width = std::min(width, kWidestHelp) - 1;
  const CLI::App& given = grammar_->Given();
  const auto found = grammar_->commands.find(&given);
  if (found == grammar_->commands.end()) {
    const bool is_whole = given.get_parent() == nullptr;
    std::string text =
        NLSFmt(session, "Usage: %0:s",
               {"zepctl [options] " + (is_whole ? "" : given.get_name() + " ") + "COMMAND"}) +
        "\n\n" + NLSFmt(session, "Commands") + "\n" +
        grammar_->CommandEntries(given, session, width);
    if (!is_whole) return text;
    text += "\n" + NLSFmt(session, "Options") + "\n" + OptionEntries(given, session, width);
    text += "\n" + NLSFmt(session, "Examples") +
            "\n"
            "  zepctl ports\n"
            "  zepctl -p /dev/ttyUSB0 identify\n"
            "  zepctl -p /dev/ttyUSB0 read radio.ops\n"
            "  zepctl -p /dev/ttyUSB0 -p /dev/ttyUSB1 firmware write image.bin\n"
            "  zepctl -p sim:trunked,unpaced identify\n\n";
    return text +
           Wrap(NLSFmt(session,
                       "\"zepctl COMMAND --help\" tells more about a command, \"man "
                       "zepctl\" about everything."),
                width) +
           "\n";
  }

  const Command& command = *found->second;
  std::string text = NLSFmt(session, "Usage: %0:s",
                            {"zepctl [options] " + Text(command.name) +
                             (command.arguments.empty() ? "" : " " + Text(command.arguments))}) +
                     "\n\n" + Wrap("  " + NLSFmt(session, command.summary), width, kIndent) + "\n";
  if (!given.get_options().empty()) text += "\n" + OptionEntries(given, session, width);
  if (!given.get_footer().empty())
    text += "\n" + Wrap(NLSFmt(session, given.get_footer()), width) + "\n";
  return text + "\n" +
         Wrap(NLSFmt(session, "\"zepctl --help\" shows the options that every command takes."),
              width) +
         "\n";
}

std::string CommandLine::Problem(const services::Session& session) const {
  const CLI::ParseError& error = *grammar_->error;
  std::string what = error.what();
  const auto is = [&error](CLI::ExitCodes code) {
    return error.get_exit_code() == static_cast<int>(code);
  };
  if (is(CLI::ExitCodes::ExtrasError)) {
    const std::vector<std::string> words = grammar_->app.remaining(true);
    return NLSFmt(session, "%0:s is no command or option that fits here.",
                  {words.empty() ? what : words.front()});
  }
  if (is(CLI::ExitCodes::RequiredError))
    return NLSFmt(session, "%0:s is missing.", {what.substr(0, what.find(" is required"))});
  if (is(CLI::ExitCodes::ArgumentMismatch))
    return NLSFmt(session, "%0:s needs a value.", {what.substr(0, what.find(':'))});
  return what;
}

}  // namespace zep::cli
