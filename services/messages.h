// Messages to the user: translated, with numbered placeholders "%0:s", "%1:s" filled in.
//
// Texts are written in English where they are used. Those that reach these procedures as a variable
// (a row of a table, a member) are marked with NLSText where they are written, so that a check
// finds them all in the dictionary.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "platform/system_error.h"
#include "services/problem.h"
#include "services/session.h"
#include "services/text.h"

namespace zep::services {

// The text in the interface language, with %N:s replaced by argument N. A placeholder without an
// argument stays.
std::string NLSFmt(const Session& session, std::string_view text,
                   std::initializer_list<std::string_view> arguments = {});
std::string NLSFmt(const Session& session, std::string_view text,
                   std::span<const std::string> arguments);
std::string NLSFmt(const Session& session, const Text& text);

struct BoxOptions {
  Icon icon = Icon::kInformation;
  Buttons buttons = Buttons::kOk;
  std::string_view title = {};  // empty: the application's title
  Notice notice = Notice::kPlain;
  Purpose purpose = Purpose::kAsks;
  bool cautious = false;  // a hasty Enter must not mean Yes
};

// Shows a message box and returns the button pressed. The text is translated when the dictionary
// has it, so both a plain text and one from NLSFmt may be given.
Answer NLSMsgBox(Session& session, std::string_view text, const BoxOptions& options = {});

// Whether a file may be written: there is none of that name yet, or the user says Yes.
bool MayWriteFile(Session& session, const std::string& file);

// The question before a job that works on a radio is stopped: true unless the answer is No.
bool AskToCancel(Session& session);

// A box that reads well is never narrow: a message shorter than 85 characters is padded with blanks
// on the right. Done by the windows, where the box is shown.
std::string PadMessage(std::string text);

// The common error reporter: tells the user what failed in which procedure. A missing and a busy
// port have texts of their own, for which port (1 to 4) is needed; cause and next step follow on a
// line of their own when known.
void ReportError(Session& session, const platform::SystemError& error, std::string_view procedure,
                 int port = 0);

// Tells the user why something is not done, in a text (translated already, or one of the
// dictionary) or as a problem says. Returns the cause.
Failure TellRefusal(Session& session, std::string_view text, Failure why);
Failure TellRefusal(Session& session, const Problem& problem);
// The lines of a problem in the interface language, in one text.
std::string ProblemText(const Session& session, const Problem& problem);

// The error in a sentence: cause and next step when known, else what it is about and the system's
// words.
std::string ErrorNote(const Session& session, const platform::SystemError& error);

}  // namespace zep::services
