#include "cli/terminal_user.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "cli/progress.h"
#include "services/messages.h"
#include "services/resource_ids.h"
#include "services/text_layout.h"

namespace zep::cli {
namespace {

using services::Answer;
using services::Buttons;
using services::MessageRequest;
using services::NLSFmt;
using services::Wrap;

Answer Yes(Buttons buttons) { return buttons == Buttons::kYesNo ? Answer::kYes : Answer::kOk; }
Answer No(Buttons buttons) { return buttons == Buttons::kYesNo ? Answer::kNo : Answer::kCancel; }

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char character) { return std::tolower(character); });
  return text;
}

// Whether the typed answer says yes, in English or in the user's language: the word or its
// beginning.
bool SaysYes(const std::string& typed, const std::string& yes) {
  const std::string answer = LowerCase(typed);
  return !answer.empty() &&
         (std::string("yes").starts_with(answer) || LowerCase(yes).starts_with(answer));
}

}  // namespace

void TerminalUser::Attach(services::Session& session, ProgressMeter& progress) {
  session_ = &session;
  progress_ = &progress;
}

void TerminalUser::PumpEvents() {
  if (console_.TakeInterrupts() > 0) session_->jobs.Cancel();
  progress_->Tick();
}

Answer TerminalUser::ShowMessage(const MessageRequest& request) {
  std::string text = request.text;
  if (request.title !=
      session_->translation.Translate(session_->strings.Get(services::kResApplicationTitle))) {
    text = request.title + ": " + text;
  }
  messages_.push_back({request.icon, text, {}});
  if (request.buttons != Buttons::kOk) {
    const Answer answer = Ask(request);
    messages_.back().answer = answer;
    return answer;
  }
  Say(text);
  if (request.notice == services::Notice::kAwaitsAction) WaitForEnter();
  return Answer::kOk;
}

Answer TerminalUser::Ask(const MessageRequest& request) {
  const std::string yes = NLSFmt(*session_, "yes");
  const std::string no = NLSFmt(*session_, "no");
  const std::string question = messages_.back().text + " [" + NLSFmt(*session_, "y/N") + "] ";
  std::optional<bool> answer = answer_to_all_;
  if (request.purpose == services::Purpose::kCancel) {
    // The user's own wish is not answered with the No that is meant for the program's questions.
    if (!console_.CanAsk()) answer = true;
    if (answer == false) answer.reset();
  } else if (!CanAnswer()) {
    Say(question + no);
    Say(NLSFmt(*session_, "Nobody can be asked here. --yes answers such questions with Yes."));
    return No(request.buttons);
  }
  if (answer) {
    Say(question + (*answer ? yes : no));
    return *answer ? Yes(request.buttons) : No(request.buttons);
  }
  if (const std::optional<std::string> line = AskLine(question))
    return SaysYes(*line, yes) ? Yes(request.buttons) : No(request.buttons);
  return No(request.buttons);
}

std::optional<std::string> TerminalUser::AskLine(const std::string& prompt) {
  if (!console_.CanAsk()) return std::nullopt;
  progress_->StepAside();
  console_.DropTypedAhead();
  console_.WriteError(Wrap(prompt, console_.Width() - 1));
  std::optional<std::string> line = console_.ReadLine();
  if (line) return line;
  console_.WriteError("\n");
  if (console_.TakeInterrupts() == 0) return std::nullopt;
  // At the question whether to cancel a second Ctrl-C means Yes.
  was_interrupted_ = !session_->jobs.IsRunning();
  session_->jobs.Stop();
  return std::nullopt;
}

void TerminalUser::WaitForEnter() {
  if (answer_to_all_ != true)
    AskLine(NLSFmt(*session_, "Press Enter when that is done, or Ctrl-C to cancel."));
}

std::optional<std::string> TerminalUser::AskOpenFile(const services::FileRequest&) {
  return file_.empty() ? std::nullopt : std::optional(file_);
}

std::optional<std::string> TerminalUser::AskSaveFile(const services::FileRequest&) {
  return file_.empty() ? std::nullopt : std::optional(file_);
}

void TerminalUser::Say(const std::string& text) {
  progress_->StepAside();
  const bool wraps = console_.ShowsToPerson();
  console_.WriteError((wraps ? Wrap(text, console_.Width() - 1) : text) + "\n");
}

}  // namespace zep::cli
