// The user at a terminal: message boxes become lines of the standard error, questions are asked
// there or answered by an option, and Ctrl-C is the wish to cancel the running job.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/console.h"
#include "services/session.h"

namespace zep::cli {

class ProgressMeter;

// A box that was shown.
struct ShownMessage {
  services::Icon icon{};
  std::string text;
  std::optional<services::Answer> answer;  // of a question
};

class TerminalUser final : public services::User {
 public:
  // Whoever cannot be asked, because there is no terminal, answers No or Cancel unless
  // answer_to_all says otherwise.
  TerminalUser(Console& console, std::optional<bool> answer_to_all)
      : console_(console), answer_to_all_(answer_to_all) {}

  // What came to be after the user. Both must live until the last call.
  void Attach(services::Session& session, ProgressMeter& progress);

  // The file that the next file dialogs give.
  void SetFile(std::string file) { file_ = std::move(file); }

  // Whether Ctrl-C has ended the program's work where no job ran.
  bool WasInterrupted() const { return was_interrupted_; }

  const std::vector<ShownMessage>& Messages() const { return messages_; }

  void PumpEvents() override;
  services::Answer ShowMessage(const services::MessageRequest& request) override;
  std::optional<std::string> AskOpenFile(const services::FileRequest& request) override;
  std::optional<std::string> AskSaveFile(const services::FileRequest& request) override;

  // Whether the program's questions get an answer: from a person, or by an option.
  bool CanAnswer() const { return console_.CanAsk() || answer_to_all_; }

  // A line on the standard error, in the user's language, broken between words on a terminal.
  void Say(const std::string& text);
  // Asks for a line of text; nothing when there is nobody to ask, or the user has cancelled.
  std::optional<std::string> AskLine(const std::string& prompt);

 private:
  services::Answer Ask(const services::MessageRequest& request);
  void WaitForEnter();

  Console& console_;
  std::optional<bool> answer_to_all_;
  services::Session* session_ = nullptr;
  ProgressMeter* progress_ = nullptr;
  std::string file_;
  bool was_interrupted_ = false;
  std::vector<ShownMessage> messages_;
};

}  // namespace zep::cli
