// zepctl run inside the test: on simulated radios that can be looked at afterwards, on a virtual
// clock, at a terminal that is written down.
//
//   Zepctl zepctl;
//   zepctl.console.Type("y");                       // at the next question, on a terminal
//   EXPECT_EQ(zepctl.Run({"-p", "sim:trunked", "read", "a.omn"}), 0);
//   EXPECT_EQ(zepctl.Out(), "...");
#pragma once

#include <cctype>
#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "cli/zepctl.h"
#include "simulator/radio_text.h"
#include "simulator/samples.h"
#include "tests/lent_port.h"
#include "tests/testing.h"

namespace zep::testing {

class TestConsole final : public cli::Console {
 public:
  std::string out;
  std::string err;
  bool is_terminal = false;
  std::string typed_ahead;  // before a question was there
  // Called at each look for interrupts, by its number from 1; returns how many there are.
  std::function<int(int look)> interrupts;

  // What the user types at the next question: a line, or Ctrl-C.
  void Type(std::string line) { typed_.emplace_back(std::move(line)); }
  void TypeCtrlC() { typed_.emplace_back(std::nullopt); }

  void WriteOutput(std::string_view text) override { out += text; }
  void WriteError(std::string_view text) override { err += text; }
  bool HasLostOutput() const override { return false; }
  bool ShowsToPerson() const override { return is_terminal; }
  bool CanAsk() const override { return is_terminal; }
  int Width() const override { return 80; }
  void DropTypedAhead() override { typed_ahead.clear(); }
  std::optional<std::string> ReadLine() override {
    if (!typed_ahead.empty()) return typed_ahead;
    EXPECT_FALSE(typed_.empty()) << "nothing is typed at: " << err;
    if (typed_.empty()) return std::nullopt;
    std::optional<std::string> line = std::move(typed_.front());
    typed_.pop_front();
    if (!line) ++ctrl_c_;
    if (line) err += *line + "\n";
    return line;
  }
  int TakeInterrupts() override {
    return std::exchange(ctrl_c_, 0) + (interrupts ? interrupts(++looks_) : 0);
  }

 private:
  std::deque<std::optional<std::string>> typed_;
  int ctrl_c_ = 0;
  int looks_ = 0;
};

class Zepctl {
 public:
  Zepctl() {
    folder.Write("bs.tsk", simulator::SampleFirstLoader());
    folder.Write("dl.tsk", simulator::SampleSecondLoader());
  }

  TempFolder folder;  // the application folder
  platform::VirtualClock clock;
  LentPorts ports{clock};
  TestConsole console;
  platform::MemoryHive user_hive;
  std::vector<platform::SerialDeviceInfo> devices;

  // The exit status. Outputs begin anew; in them the folder's name is "FOLDER".
  int Run(std::vector<std::string> arguments) {
    console.out.clear();
    console.err.clear();
    arguments.insert(arguments.begin(), {"--application-folder", folder.Path()});
    platform::MemoryHive machine_hive;
    const cli::ExitStatus status = cli::RunZepctl(
        arguments, console,
        {.clock = clock,
         .user_hive = user_hive,
         .machine_hive = machine_hive,
         .make_port = [this](const std::string& device) { return ports.Make(device); },
         .list_devices = [this] { return devices; },
         .start_program = [](const std::string&) { return platform::SystemError{}; }});
    return static_cast<int>(status);
  }
  std::string Out() const { return folder.Renamed(console.out, "FOLDER"); }
  std::string Err() const { return folder.Renamed(console.err, "FOLDER"); }
  simulator::SimulatedRadio& Radio(const std::string& device) { return ports.Radio(device); }
  std::string ToRadios() const { return ports.to_radios; }

  // A sample image in the folder.
  std::string WriteImage(std::string_view name) const {
    for (const simulator::SampleImage& image : simulator::SampleImages()) {
      if (image.name == name) return folder.Write(name, simulator::MakeSampleImage(image));
    }
    ADD_FAILURE() << "no sample " << name;
    return {};
  }
};

// The same with factory data of the radio, default settings and an image in its folder, which is
// "F/" in words on a line.
struct ZepctlBench : Zepctl {
  static constexpr const char* kRadio = "sim:torvik,unpaced";

  ZepctlBench() {
    simulator::RadioProfile profile = *simulator::ParseRadio(kRadio).value;
    folder.Write("old.ops", simulator::DataFileText(profile));
    folder.Write("old.ocs", simulator::CalibrationFileText(profile));
    for (const std::string name : {"old.ops", "old.ocs"}) {
      std::string text = *folder.Read(name);
      for (char& character : text) character = static_cast<char>(std::tolower(character));
      folder.Write("lower-" + name, text);
    }
    profile.serial_number = 0;
    folder.Write("default.ops", simulator::DataFileText(profile));
    std::filesystem::rename(WriteImage("PP11PhaseI.bin"), folder.Path("my.bin"));
  }
  std::vector<std::string> Words(const std::string& line) const {
    std::vector<std::string> arguments;
    std::istringstream words(line);
    for (std::string word; words >> word;)
      arguments.push_back(word.starts_with("F/") ? folder.Path(word.substr(2)) : word);
    return arguments;
  }
  int RunLine(const std::string& line) { return Run(Words(line)); }
};

}  // namespace zep::testing
