// A link on four scripted ports, for tests of what goes over the wire.
//
//   TestLink test({1, 2});                // ports 1 and 2 are Active
//   test.port(1).Answer("^", "v");          // each time "^" is written, "v" is received at once
//   test.port(2).Receive(".", 100ms);       // received 100 ms from now
//   ...
//   EXPECT_EQ(test.Wire(), "1<^ 1>v 2<^ ...");   // what was written (<) and read (>), in order;
//   other bytes as hex
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "link/job.h"
#include "platform/io_ports.h"
#include "platform/serial_port.h"
#include "services/hex_text.h"
#include "tests/testing.h"

namespace zep::testing {

class ScriptedPort final : public platform::SerialPort {
 public:
  ScriptedPort(platform::Clock& clock, int number, std::string& wire)
      : clock_(clock), number_(number), wire_(wire) {}

  void Answer(std::string written, std::string answer) {
    answers_[std::move(written)] = std::move(answer);
  }
  void Receive(const std::string& bytes, platform::Duration after = {}) {
    for (const char byte : bytes)
      input_.emplace_back(clock_.Now() + after, static_cast<std::uint8_t>(byte));
  }
  // The next look at the port finds this failure; it reads nothing from then on.
  void Fail(int error) { error_ = {.number = error, .description = "Input/output error"}; }
  platform::SystemError open_error;     // what Open() gives
  std::function<std::size_t()> output;  // how many bytes have not gone out yet; none by default
  std::vector<std::string> settings;    // as they were set

  std::string Device() const override { return "scripted"; }
  platform::SystemError Open() override {
    if (!open_error) is_open_ = true;
    return open_error;
  }
  void Close() override { is_open_ = false; }
  bool IsOpen() const override { return is_open_; }
  platform::SystemError SetSettings(std::string_view text) override {
    settings.push_back(std::string(text) + (OutputCount() > 0 ? " too early" : ""));
    return {};
  }
  std::size_t InputCount() override {
    std::size_t count = 0;
    while (count < input_.size() && input_[count].first <= clock_.Now()) ++count;
    return count;
  }
  std::size_t OutputCount() override { return output ? output() : 0; }
  void ClearInput() override { input_.clear(); }
  void ClearOutput() override {}
  std::optional<std::uint8_t> Read() override {
    if (InputCount() == 0) return std::nullopt;
    const std::uint8_t byte = input_.front().second;
    input_.pop_front();
    Note('>', byte);
    return byte;
  }
  void Write(std::span<const std::uint8_t> bytes) override {
    std::string text;
    for (const std::uint8_t byte : bytes) {
      Note('<', byte);
      text += static_cast<char>(byte);
    }
    if (const auto answer = answers_.find(text); answer != answers_.end()) Receive(answer->second);
  }
  void WaitForInput(platform::Duration longest) override { clock_.Sleep(longest); }
  void WaitForOutput(platform::Duration longest) override { clock_.Sleep(longest); }
  platform::SystemError TakeError() override { return std::exchange(error_, {}); }

 private:
  void Note(char direction, std::uint8_t byte) {
    if (!wire_.empty()) wire_ += ' ';
    wire_ += std::to_string(number_) + direction;
    const bool is_shown = byte > 0x20 && byte < 0x7F;
    wire_ += is_shown ? std::string(1, static_cast<char>(byte)) : services::ConBytNumToHex(byte);
  }

  platform::Clock& clock_;
  int number_;
  std::string& wire_;
  bool is_open_ = false;
  platform::SystemError error_;
  std::map<std::string, std::string> answers_;
  std::deque<std::pair<platform::Duration, std::uint8_t>> input_;
};

// Keeps what was written, as "2A7=FF 2AF=FF".
class RecordedIoPorts final : public platform::IoPorts {
 public:
  void Out(std::uint16_t address, std::uint8_t value) override {
    const auto hex = [](int byte) {
      return services::ConBytNumToHex(static_cast<std::uint8_t>(byte));
    };
    writes += writes.empty() ? "" : " ";
    writes += hex(address / 256).substr(1) + hex(address % 256) + "=" + hex(value);
  }
  std::string writes;
};

// Answers by doing what the test says.
class ScriptedWindows final : public link::LinkWindows {
 public:
  void ShowPreferences(link::Link& link, link::PortStates& states) override {
    shown += "preferences ";
    if (on_preferences) on_preferences(link, states);
  }
  void ShowPortSelection(link::Job& job) override {
    shown += "port selection ";
    if (on_selection) on_selection(job);
  }
  std::string shown;
  std::function<void(link::Link&, link::PortStates&)> on_preferences;
  std::function<void(link::Job&)> on_selection;
};

struct TestLink : TestSession {
  // With these ports Active and open.
  TestLink(std::initializer_list<int> active = {}) : link(session, MakePorts(), windows, io) {
    Activate(active);
  }

  // Makes these ports Active, for the user and in the job, and opens them.
  void Activate(std::initializer_list<int> numbers) {
    for (const int number : numbers) {
      Choose(number);
      link.Port(number).Open();
    }
  }
  void Choose(int number) { job.State(number) = link.State(number) = link::PortState::kActive; }
  ScriptedPort& port(int number) { return *scripted[static_cast<std::size_t>(number - 1)]; }
  // What went over the wire since the last call.
  std::string Wire() { return std::exchange(wire_, {}); }
  // The four states as digits: "1224"; those of the job.
  std::string States() const { return States(job.CommStates); }
  static std::string States(const link::PortStates& of) {
    std::string states;
    for (const link::PortState state : of) states += std::to_string(static_cast<int>(state));
    return states;
  }
  // The cause of the job's end so far.
  services::Failure Failure() const { return job.Ended(true).failure; }

  ScriptedWindows windows;
  RecordedIoPorts io;
  std::vector<ScriptedPort*> scripted;
  link::Link link;
  link::Job job{link};

 private:
  link::Ports MakePorts() {
    link::Ports ports;
    for (const int number : link::kAllPorts) {
      auto port = std::make_unique<ScriptedPort>(clock, number, wire_);
      scripted.push_back(port.get());
      ports[link::Link::Index(number)] = std::move(port);
    }
    return ports;
  }

  std::string wire_;
};

}  // namespace zep::testing
