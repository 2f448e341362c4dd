#include "services/messages.h"

#include "platform/files.h"
#include "services/fill_in.h"
#include "services/resource_ids.h"
#include "services/text_layout.h"

namespace zep::services {
namespace {

constexpr int kNarrowestMessage = 85;  // characters

std::string ErrorText(const Session& session, const platform::SystemError& error,
                      std::string_view procedure, int port) {
  switch (error.number) {
    case platform::kPortDoesNotExist:
      return NLSFmt(session,
                    "A communication port has been selected that does not exist on the PC, please "
                    "select another port "
                    "from menu File->Preferences.");
    case platform::kPortInUse:
      return NLSFmt(session,
                    "Communication port %0:s already in use, please select another port from menu "
                    "File->Preferences.",
                    {std::to_string(port)});
    default:
      break;
  }
  return NLSFmt(session, "Error: ") + std::to_string(error.number) + " " + error.description + "[" +
         std::string(procedure) + "]";
}

// Shows the box and takes the time; that of a box inside another box's turns is part of the outer
// one's.
Answer Ask(Session& session, const MessageRequest& request) {
  const platform::Duration before = session.clock.Now();
  ++session.open_questions;
  const Answer answer = session.user.ShowMessage(request);
  if (--session.open_questions == 0) session.time_in_questions += session.clock.Now() - before;
  return answer;
}

}  // namespace

std::string NLSFmt(const Session& session, std::string_view text,
                   std::initializer_list<std::string_view> arguments) {
  return FillIn(session.translation.Translate(text),
                std::span(arguments.begin(), arguments.size()));
}

std::string NLSFmt(const Session& session, std::string_view text,
                   std::span<const std::string> arguments) {
  return FillIn(session.translation.Translate(text), arguments);
}

std::string NLSFmt(const Session& session, const Text& text) {
  std::vector<std::string> arguments = text.arguments;
  for (const Text& part : text.texts) arguments.push_back(NLSFmt(session, part));
  return NLSFmt(session, text.english, arguments);
}

Answer NLSMsgBox(Session& session, std::string_view text, const BoxOptions& options) {
  MessageRequest request;
  request.text = session.translation.Translate(text);
  request.title = session.translation.Translate(
      options.title.empty() ? session.strings.Get(kResApplicationTitle) : options.title);
  request.icon = options.icon;
  request.buttons = options.buttons;
  request.notice = options.notice;
  request.purpose = options.purpose;
  request.cautious = options.cautious;
  return Ask(session, request);
}

bool MayWriteFile(Session& session, const std::string& file) {
  if (!platform::FileExists(file)) return true;
  return NLSMsgBox(session, "File exists overwrite?",
                   {.icon = Icon::kQuestion, .buttons = Buttons::kYesNo, .cautious = true}) ==
         Answer::kYes;
}

bool AskToCancel(Session& session) {
  return NLSMsgBox(session, "This action will leave the radio in an undefined state. Cancel?",
                   {.icon = Icon::kQuestion,
                    .buttons = Buttons::kYesNo,
                    .purpose = Purpose::kCancel,
                    .cautious = true}) != Answer::kNo;
}

std::string PadMessage(std::string text) {
  const int missing = kNarrowestMessage - CountCharacters(text);
  if (missing > 0) text.append(static_cast<std::size_t>(missing), ' ');
  return text;
}

void ReportError(Session& session, const platform::SystemError& error, std::string_view procedure,
                 int port) {
  session.log.Error(std::to_string(error.number) + " " + error.description + "[" +
                    std::string(procedure) + "] " + error.subject);
  std::string text = ErrorText(session, error, procedure, port);
  if (!error.advice.empty()) text += "\n" + NLSFmt(session, error.advice, error.advice_arguments);
  NLSMsgBox(session, text, {.icon = Icon::kCritical});
}

Failure TellRefusal(Session& session, std::string_view text, Failure why) {
  NLSMsgBox(session, text, {.icon = Icon::kCritical});
  return why;
}

Failure TellRefusal(Session& session, const Problem& problem) {
  if (!problem.error) return TellRefusal(session, ProblemText(session, problem), problem.why);
  ReportError(session, problem.error, problem.procedure);
  return problem.why;
}

std::string ProblemText(const Session& session, const Problem& problem) {
  std::string text;
  for (const Text& line : problem.lines) {
    if (!text.empty()) text += "\n";
    text += NLSFmt(session, line);
  }
  return text;
}

std::string ErrorNote(const Session& session, const platform::SystemError& error) {
  if (!error.advice.empty()) return NLSFmt(session, error.advice, error.advice_arguments);
  return error.subject + ": " + error.description + ".";
}

}  // namespace zep::services
