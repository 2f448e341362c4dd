// zepctl's grammar against its manual page and its completion: every command, option and argument.
#include <cstdio>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "cli/command.h"
#include "tests/manual_page.h"
#include "tests/zepctl_testing.h"

namespace zep::cli {
namespace {

using testing::Found;
using testing::ManualSection;
using testing::Names;

// What a command declares.
class Recorder final : public Arguments {
 public:
  Names words;
  Names options;
  Names values;  // what the help calls them

  void AddWord(std::string_view name, std::string&, std::string_view) override {
    words.emplace(name);
  }
  void AddOptionalWord(std::string_view name, std::string&, std::string_view) override {
    words.emplace(name);
  }
  void AddOption(std::string_view name, std::string_view value, std::string&,
                 std::string_view) override {
    options.emplace(name);
    values.emplace(value);
  }
  void AddFlag(std::string_view name, bool&, std::string_view) override { options.emplace(name); }
  void AddRemark(std::string_view) override {}
};

Recorder Declared(const Command& command) {
  Recorder recorder;
  command.declare(recorder);
  return recorder;
}

// The options of every command as the help shows them: "--trace", "-p".
Names CommonOptions(const std::string& pattern = "[ \n](--?[a-z-]+)[ ,\n]") {
  testing::Zepctl zepctl;
  EXPECT_EQ(zepctl.Run({"--help"}), 0);
  const std::string help = zepctl.Out();
  const std::size_t begin = help.find("\nOptions\n");
  std::string lines;
  std::istringstream text(help.substr(begin, help.find("\nExamples\n") - begin));
  for (std::string line; std::getline(text, line);) {
    // Not what an option means, which stands behind it or below.
    if (line.starts_with("  -")) lines.append(line, 1, line.find("  ", 2) - 1).append("\n");
  }
  return Found(lines, pattern);
}

Names Without(Names names, const Names& others) {
  for (const std::string& other : others) names.erase(other);
  return names;
}

const Command* CommandOf(std::string_view text) {
  for (const Command& command : Commands()) {
    if (text.starts_with(command.name)) return &command;
  }
  return nullptr;
}

// What the manual page tells of each command.
std::map<std::string_view, Recorder> ToldOfCommands() {
  std::map<std::string_view, Recorder> told;
  Recorder* entry = nullptr;
  for (const std::string& line : ManualSection("COMMANDS")) {
    if (line.starts_with("> ") && !line.starts_with("> -")) {
      const Command* command = CommandOf(line.substr(2));
      entry = &told[command == nullptr ? "unknown" : command->name];
      entry->words.merge(Found(line, R"(\b([A-Z]+)\b)"));
    }
    if (entry != nullptr) entry->options.merge(Found(line, "(--[a-z-]+)"));
  }
  return told;
}

Names ToldOptions() {
  Names options;
  for (const std::string& line : ManualSection("OPTIONS")) {
    if (line.starts_with("> ")) options.merge(Found(line, "[ ](--?[a-z-]+)"));
  }
  return options;
}

TEST(ZepctlManual, TellsOfEveryCommandOptionAndArgumentAndOfNoOther) {
  std::map<std::string_view, Recorder> told = ToldOfCommands();
  const Names common = CommonOptions();
  EXPECT_EQ(common.size(), 14U);
  EXPECT_EQ(ToldOptions(), common);
  EXPECT_EQ(told.size(), Commands().size());
  for (const Command& command : Commands()) {
    SCOPED_TRACE(command.name);
    const Recorder declared = Declared(command);
    EXPECT_EQ(Without(told[command.name].words, declared.values),
              Without(declared.words, declared.values));
    EXPECT_EQ(Without(told[command.name].options, common), declared.options);
  }
}

// What bash offers behind the words of each line, by line.
std::map<std::string, Names> Completions(const Names& lines) {
  testing::TempFolder folder;
  std::string text;
  for (const std::string& line : lines) text.append(line).append("\n");
  folder.Write("lines", text);
  folder.Write("script", "source " ZEP_SOURCE_DIR R"SH(/packaging/zepctl.bash
    while read -r line; do
      eval "COMP_WORDS=(zepctl $line)"
      COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) COMPREPLY=()
      _zepctl
      printf '%s|%s\n' "$line" "${COMPREPLY[*]}"
    done < lines)SH");
  std::FILE* pipe = popen(("cd " + folder.Path() + "; bash script").c_str(), "r");
  std::string output;
  for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe))
    output += static_cast<char>(byte);
  EXPECT_EQ(pclose(pipe), 0);
  std::map<std::string, Names> offered;
  std::istringstream answers(output);
  for (std::string line; std::getline(answers, line);) {
    const std::size_t bar = line.find('|');
    offered[line.substr(0, bar)] = Found(line.substr(bar), R"(([\w-]+))");
  }
  return offered;
}

TEST(ZepctlCompletion, OffersEveryCommandAndOptionAndNoOther) {
  const Names common = CommonOptions();
  std::map<std::string, Names> expected;
  for (const Command& command : Commands()) {
    const std::string name(command.name);
    const std::size_t blank = name.find(' ');
    expected["\"\""].insert(name.substr(0, blank));
    if (blank != std::string::npos)
      expected[name.substr(0, blank) + " \"\""].insert(name.substr(blank + 1));
    Names all = Declared(command).options;
    all.insert(common.begin(), common.end());
    expected[name + " -"] = all;
    for (const std::string& option : CommonOptions("(--[a-z-]+) [^,\n]"))
      expected[option + " value " + name + " -"] = all;
  }
  Names lines;
  for (const auto& [line, words] : expected) lines.insert(line);
  EXPECT_GT(lines.size(), 70U);
  for (const auto& [line, words] : Completions(lines)) EXPECT_EQ(words, expected[line]) << line;
}

}  // namespace
}  // namespace zep::cli
