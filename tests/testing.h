// What the tests of every folder stand on: a folder of their own, a scripted user, and a session
// without any hardware.
//
//   TestSession test;
//   test.user.WillAnswer("overwrite", Answer::kYes);          // the next question, in this order
//   test.user.WillChoose("save", test.folder.Path("a.ops"));  // the next file dialog
//   DoIt(test.session);
//   EXPECT_EQ(test.user.Boxes(),
//             "question File exists overwrite? -> Yes\n"
//             "save [Save Data File] -> a.ops\n"
//             "critical [ConHexNumToLng] Error Number: 0,  -> OK\n");
//
// Boxes with a single OK button need no script. A question that the script does not expect fails
// the test and is answered with Cancel or No; so does a scripted answer that nobody asked for.
#pragma once

#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/settings_hive.h"
#include "services/session.h"

namespace zep::testing {

// Cannot be written when told so.
class BreakableHive final : public platform::SettingsHive {
 public:
  std::optional<std::string> Read(std::string_view key, std::string_view name) const override {
    return values.Read(key, name);
  }
  platform::SystemError Write(std::string_view key, std::string_view name,
                              std::string_view value) override {
    return is_broken ? platform::SystemError{13, "Permission denied", "settings.ini"}
                     : values.Write(key, name, value);
  }

  platform::MemoryHive values;
  bool is_broken = false;
};

// A folder that is made empty for the test and removed with all it holds.
class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("zep_test_" + std::to_string(random()) + "_" + std::to_string(random()));
    std::filesystem::create_directories(path_);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string Path() const { return path_.string(); }
  std::string Path(std::string_view name) const { return (path_ / name).string(); }

  // Writes the bytes as they are and returns the file's full name.
  std::string Write(std::string_view name, std::string_view contents) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << contents;
    return Path(name);
  }
  std::string Write(std::string_view name, const std::vector<std::uint8_t>& bytes) const {
    return Write(name, std::string(bytes.begin(), bytes.end()));
  }
  // The file's bytes; nothing when it does not exist.
  std::optional<std::string> Read(std::string_view name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    if (!file) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
  }
  // The text with another name of this folder, or with the names of its files alone.
  std::string Renamed(std::string text, std::string_view name = {}) const {
    const std::string path = name.empty() ? Path("") : Path();
    for (std::size_t at = 0; (at = text.find(path, at)) != std::string::npos;)
      text.replace(at, path.size(), name);
    return text;
  }

 private:
  std::filesystem::path path_;
};

class TestUser final : public services::User {
 public:
  // An empty application title shows every box's title.
  explicit TestUser(std::string application_title = {})
      : application_title_(std::move(application_title)) {}
  TestUser(const TestUser&) = delete;
  TestUser& operator=(const TestUser&) = delete;
  ~TestUser() override {
    for (const Step& step : script_) ADD_FAILURE() << "never asked: " << step.part;
  }

  // The next question holds this part of its text and is answered so.
  void WillAnswer(std::string part, services::Answer answer) {
    script_.push_back({std::move(part), answer, {}});
  }
  // The next file dialog is an "open" or "save" dialog and gives this file, or nothing.
  void WillChoose(std::string open_or_save, std::optional<std::string> file) {
    script_.push_back({std::move(open_or_save), std::nullopt, std::move(file)});
  }

  // Everything shown so far, a line each: "icon [title] text -> answer", the title only where it is
  // not the application's; "open [title] -> name", the file without its folder.
  const std::string& Boxes() const { return boxes_; }
  // The same, then forgets it.
  std::string TakeBoxes() { return std::exchange(boxes_, {}); }

  // The requests as they came, for tests of folders and filters.
  std::vector<services::FileRequest> file_requests;

  // What the user says to the question whether to cancel; unset, it is a question like any other.
  std::optional<services::Answer> when_cancelled;

  // Turns of the user interface so far, and what happens in each: on_turn(1) in the first.
  int turns = 0;
  std::function<void(int turn)> on_turn;
  // What happens while a box is shown: time passes.
  std::function<void()> while_shown;

  void PumpEvents() override {
    ++turns;
    if (on_turn) on_turn(turns);
  }

  services::Answer ShowMessage(const services::MessageRequest& request) override {
    if (while_shown) while_shown();
    const services::Answer answer = AnswerTo(request);
    const std::string title = request.title == application_title_ ? "" : "[" + request.title + "] ";
    boxes_ += Name(request.icon) + " " + title + request.text + " -> " + Name(answer) + "\n";
    return answer;
  }

  std::optional<std::string> AskOpenFile(const services::FileRequest& request) override {
    return AskFile("open", request);
  }
  std::optional<std::string> AskSaveFile(const services::FileRequest& request) override {
    return AskFile("save", request);
  }

 private:
  struct Step {
    std::string part;  // of a question's text; "open" or "save" for a file dialog
    std::optional<services::Answer> answer;
    std::optional<std::string> file;
  };

  services::Answer AnswerTo(const services::MessageRequest& request) {
    if (request.buttons == services::Buttons::kOk) return services::Answer::kOk;
    if (request.purpose == services::Purpose::kCancel && when_cancelled) return *when_cancelled;
    const auto gives_up = request.buttons == services::Buttons::kYesNo ? services::Answer::kNo
                                                                       : services::Answer::kCancel;
    if (script_.empty() || !script_.front().answer ||
        request.text.find(script_.front().part) == std::string::npos) {
      ADD_FAILURE() << "unexpected question: " << request.text << Expected();
      return gives_up;
    }
    const services::Answer answer = *script_.front().answer;
    script_.pop_front();
    return answer;
  }

  std::optional<std::string> AskFile(const std::string& kind,
                                     const services::FileRequest& request) {
    file_requests.push_back(request);
    std::optional<std::string> file;
    if (script_.empty() || script_.front().answer || script_.front().part != kind) {
      ADD_FAILURE() << "unexpected file dialog: " << kind << " " << request.title << Expected();
    } else {
      file = std::move(script_.front().file);
      script_.pop_front();
    }
    const std::string name = file ? std::filesystem::path(*file).filename().string() : "nothing";
    boxes_ += kind + " [" + request.title + "] -> " + name + "\n";
    return file;
  }

  std::string Expected() const {
    return script_.empty() ? "\n  expected nothing more" : "\n  expected: " + script_.front().part;
  }

  static std::string Name(services::Icon icon) {
    using enum services::Icon;
    return icon == kInformation ? "information" : icon == kCritical ? "critical" : "question";
  }
  static std::string Name(services::Answer answer) {
    using enum services::Answer;
    return answer == kOk ? "OK" : answer == kCancel ? "Cancel" : answer == kYes ? "Yes" : "No";
  }

  std::string application_title_;
  std::deque<Step> script_;
  std::string boxes_;
};

// A session on a virtual clock with empty settings, the ZEP string table, English texts, and an
// application folder of its own. Its log is the file "application.log" there.
struct TestSession {
  explicit TestSession(std::string_view string_table = "ZEP")
      : strings(string_table, folder.Path()) {}

  TempFolder folder;
  platform::VirtualClock clock;
  TestUser user{"ZEP Download and Configuration Application"};
  platform::MemoryHive user_hive;
  platform::MemoryHive machine_hive;
  services::StringTable strings;
  services::Translation translation;
  services::ApplicationLog log{clock, folder.Path("application.log")};
  services::Settings settings{user_hive, machine_hive, strings, log};
  services::Session session{
      {.clock = clock,
       .user = user,
       .settings = settings,
       .strings = strings,
       .translation = translation,
       .log = log,
       .start_program = [](const std::string&) { return platform::SystemError{}; }},
      {.application_folder = folder.Path(), .program_folder = folder.Path()}};
};

}  // namespace zep::testing
