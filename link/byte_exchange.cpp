#include "link/byte_exchange.h"

#include <optional>
#include <utility>
#include <vector>

#include "link/error_replies.h"
#include "link/list_line.h"
#include "link/record.h"
#include "services/messages.h"

namespace zep::link {
namespace {

using services::Failure;
using services::NLSMsgBox;
using services::Session;

// A pass of a waiting loop: the operating system wakes us for input, at the latest after this.
constexpr platform::Duration kPass = std::chrono::milliseconds(2);
// A pass while there is input, though not enough, which would end every wait for input at once.
constexpr platform::Duration kPassWithInput = std::chrono::milliseconds(1);
// A pass of a loop that waits for output to leave, which nothing wakes.
constexpr platform::Duration kDrainPass = std::chrono::microseconds(500);
constexpr platform::Duration kOutputTimeOut = std::chrono::milliseconds(4000);

// Longer than any line of a radio: a record of 255 bytes is 518 characters.
constexpr std::size_t kLongestLine = 2000;

constexpr std::uint8_t kErrorReplyStart = '{';

enum class Verdict {
  kNothing,     // no input
  kTooLittle,   // input, and more is needed
  kSkip,        // not what is waited for: wait on
  kAccept,      // the wait is over
  kAcceptZero,  // the wait is over and the time-out runs on
  kErrorReply,  // the start of an error reply: the wait is over
};

enum class Ended { kAccepted, kErrorReply, kStopped, kFailed };

struct Wait {
  Ended ended = Ended::kStopped;
  std::optional<std::uint8_t> last;  // the byte last received
};

std::string Text(std::uint8_t byte) { return {static_cast<char>(byte)}; }

// Reports a failure of the device itself. True when there was one.
bool PortFailed(Link& link, int port, std::string_view procedure) {
  const platform::SystemError error = link.Port(port).TakeError();
  if (!error) return false;
  ReportError(link.session, error, procedure, port);
  return true;
}

// The waiting loop that all receiving goes through: a turn of the user interface, a look at the
// port, and, when there is nothing or too little, a nap that input ends. look says how it stands.
template <typename Look>
Ended WaitUntil(Link& link, int port, std::string_view procedure, Look look) {
  Session& session = link.session;
  platform::SerialPort& serial = link.Port(port);
  if (session.Stopped()) return Ended::kStopped;
  link.timSerialTimeOut.Enable(session);
  while (!session.DownloadError) {
    session.PumpEvents();
    if (session.Stopped()) break;
    const Verdict verdict = look(serial);
    if (verdict == Verdict::kSkip) continue;
    if (verdict == Verdict::kNothing || verdict == Verdict::kTooLittle) {
      if (PortFailed(link, port, procedure)) {
        link.timSerialTimeOut.Disable();
        FailPort(link, port, Failure::kPort);
        return Ended::kFailed;
      }
      if (verdict == Verdict::kNothing) {
        serial.WaitForInput(kPass);
      } else {
        session.clock.Sleep(kPassWithInput);
      }
      continue;
    }
    // Kept: after an end on zero the time-out runs on; the caller talks to the radio before it
    // fires.
    if (verdict != Verdict::kAcceptZero) link.timSerialTimeOut.Disable();
    return verdict == Verdict::kErrorReply ? Ended::kErrorReply : Ended::kAccepted;
  }
  link.timSerialTimeOut.Disable();
  return session.DownloadError && !session.CancelRequested ? Ended::kFailed : Ended::kStopped;
}

// Takes byte after byte until judge says that the wait is over.
template <typename Judge>
Wait WaitForInput(Link& link, int port, std::string_view procedure, Judge judge) {
  Wait wait;
  wait.ended = WaitUntil(link, port, procedure, [&](platform::SerialPort& serial) {
    const std::optional<std::uint8_t> byte = serial.Read();
    if (!byte) return Verdict::kNothing;
    wait.last = byte;
    return judge(*byte);
  });
  return wait;
}

// Waits until at most so many bytes of the port's output are still to go out, with turns of the
// user interface or without. Fails the port when nothing goes out for too long.
enum class Turns { kTaken, kNone };
void WaitForOutput(Link& link, int port, std::size_t most, Turns turns,
                   std::string_view procedure) {
  Session& session = link.session;
  platform::SerialPort& serial = link.Port(port);
  std::size_t pending = serial.OutputCount();
  platform::Duration deadline = session.clock.Now() + kOutputTimeOut;
  while (pending > most) {
    if (turns == Turns::kTaken) session.PumpEvents();
    serial.WaitForOutput(kDrainPass);
    const std::size_t left = serial.OutputCount();
    if (left != pending) deadline = session.clock.Now() + kOutputTimeOut;
    pending = left;
    if (session.clock.Now() < deadline) continue;
    ReportSilence(session);
    FailPort(link, port, Failure::kPort);
    return;
  }
  if (PortFailed(link, port, procedure)) FailPort(link, port, Failure::kPort);
}

bool IsOpenAndActive(Link& link, int port) {
  return link.IsActive(port) && link.Port(port).IsOpen();
}

void Write(Link& link, int port, Bytes bytes) { link.Port(port).Write(bytes); }

}  // namespace

std::uint8_t GetByteFromSpecficComms(Link& link, int port, std::uint8_t expected,
                                     bool end_on_zero) {
  if (!link.IsActive(port)) return 0;
  const Wait wait = WaitForInput(link, port, "GetByteFromSpecficComms ", [&](std::uint8_t byte) {
    if (byte == kErrorReplyStart) return Verdict::kErrorReply;
    if (byte == 0 && end_on_zero) return Verdict::kAcceptZero;
    const bool accepted = expected == 0 ? byte != 0 : byte == expected;
    return accepted ? Verdict::kAccept : Verdict::kSkip;
  });
  switch (wait.ended) {
    case Ended::kAccepted:
      return *wait.last;
    case Ended::kErrorReply:
      ReadRadioErrorReply(link, port);
      if (!link.session.CancelRequested) FailPort(link, port, Failure::kRadioError);
      return 0;
    case Ended::kFailed:
      // Kept: the code goes to the flash error table as the byte's decimal digits, which no row of
      // the table matches.
      if (expected != 0 && wait.last)
        FlashErrorReporter(link.session, std::to_string(*wait.last), port);
      FailPort(link, port, Failure::kNoAnswer);
      return 0;
    case Ended::kStopped:
      return 0;
  }
  return 0;
}

std::uint8_t GetAnyByte(Link& link, int port) {
  if (!link.IsActive(port)) return 0;
  const std::uint8_t byte = link.Port(port).Read().value_or(0);
  if (PortFailed(link, port, "GetAnyByte")) FailPort(link, port, Failure::kPort);
  return byte;
}

bool WaitForInputCount(Link& link, int port, std::size_t count, std::string_view procedure) {
  if (!link.IsActive(port)) return false;
  std::size_t received = 0;
  const Ended ended = WaitUntil(link, port, procedure, [&](platform::SerialPort& serial) {
    const std::size_t before = std::exchange(received, serial.InputCount());
    if (received == count) return Verdict::kAccept;
    if (received != before) link.timSerialTimeOut.Enable(link.session);
    return received == 0 ? Verdict::kNothing : Verdict::kTooLittle;
  });
  if (link.session.DownloadError) FailPort(link, port, Failure::kNoAnswer);
  return ended == Ended::kAccepted;
}

std::string GetStringFromSpecficComms(Link& link, int port, std::string_view expected) {
  if (!link.IsActive(port)) return {};
  const Wait wait = WaitForInput(link, port, "GetStringFromSpecficComms", [&](std::uint8_t byte) {
    if (byte == kErrorReplyStart) return Verdict::kErrorReply;
    return expected.empty() || Text(byte) == expected ? Verdict::kAccept : Verdict::kSkip;
  });
  switch (wait.ended) {
    case Ended::kAccepted:
      return Text(*wait.last);
    case Ended::kErrorReply:
      ReadRadioErrorReply(link, port);
      return {};
    case Ended::kFailed:
      if (!expected.empty() && wait.last) FlashErrorReporter(link.session, Text(*wait.last), port);
      FailPort(link, port, Failure::kNoAnswer);
      return {};
    case Ended::kStopped:
      return {};
  }
  return {};
}

std::string GetStringFromFirstActiveComms(Link& link, std::string_view expected) {
  const int port = FirstActivePort(link);
  return port == 0 ? std::string() : GetStringFromSpecficComms(link, port, expected);
}

bool WaitForChar(Link& link, std::string_view expected, int port) {
  link.session.RadioErrorReply.clear();
  if (!link.IsActive(port)) return true;
  const Wait wait = WaitForInput(link, port, "WaitForChar Func", [&](std::uint8_t byte) {
    if (Text(byte) == expected) return Verdict::kAccept;
    return byte == kErrorReplyStart ? Verdict::kErrorReply : Verdict::kSkip;
  });
  if (wait.ended == Ended::kErrorReply) ReadRadioErrorReply(link, port);
  if (wait.ended == Ended::kFailed) FailPort(link, port, Failure::kNoAnswer);
  return true;
}

void ReadRadioErrorReply(Link& link, int port) {
  std::string& reply = link.session.RadioErrorReply;
  reply = Text(kErrorReplyStart);
  const Wait wait = WaitForInput(link, port, "ReadRadioErrorReply", [&reply](std::uint8_t byte) {
    const std::string text = Text(byte);
    if (text == kPrompt) return Verdict::kAccept;
    if (text != kCarriageReturn) reply += text;
    return Verdict::kSkip;
  });
  if (link.session.CancelRequested) return;
  RadioErrorReporter(link.session);
  if (wait.ended == Ended::kFailed) FailPort(link, port, Failure::kNoAnswer);
}

void SendByteToSpecificComms(Link& link, std::uint8_t byte, int port, bool wait_for_echo) {
  if (!link.IsActive(port) || link.session.DownloadError) return;
  Write(link, port, {&byte, 1});
  if (!wait_for_echo) {
    link.timSerialTimeOut.Disable();
    if (PortFailed(link, port, "SendByteToSpecificComms")) FailPort(link, port, Failure::kPort);
    return;
  }
  const Wait wait =
      WaitForInput(link, port, "SendByteToSpecificComms", [byte](std::uint8_t received) {
        return received == byte ? Verdict::kAccept : Verdict::kSkip;
      });
  if (wait.ended != Ended::kFailed) return;
  // Kept: as in GetByteFromSpecficComms, the code is handed over in a form that matches no row.
  if (wait.last) FlashErrorReporter(link.session, std::to_string(*wait.last), port);
  FailPort(link, port, Failure::kNoAnswer);
}

void SendByteToAllComms(Link& link, std::uint8_t byte, const SendOptions& options) {
  for (const int port : kAllPorts) {
    if (link.session.Stopped()) return;
    if (!link.IsActive(port)) continue;
    Write(link, port, {&byte, 1});
    if (options.wait || options.wait_too)
      GetByteFromSpecficComms(link, port, options.expected, options.end_on_zero);
  }
}

void SendByteToActiveComms(Link& link, std::uint8_t byte) {
  for (const int port : kAllPorts) {
    if (link.IsActive(port)) Write(link, port, {&byte, 1});
  }
}

void SendBytesToAllComms(Link& link, Bytes bytes) {
  for (const int port : kAllPorts) {
    if (link.session.Stopped()) return;
    if (!IsOpenAndActive(link, port)) continue;
    Write(link, port, bytes);
    WaitForOutput(link, port, 0, Turns::kNone, "SendBytesToAllComms");
  }
}

void SendBytesToAllCommsAtOnce(Link& link, Bytes bytes) {
  if (link.session.Stopped()) return;
  for (const int port : kAllPorts) {
    if (IsOpenAndActive(link, port)) Write(link, port, bytes);
  }
  for (const int port : kAllPorts) {
    if (IsOpenAndActive(link, port))
      WaitForOutput(link, port, 0, Turns::kNone, "SendBytesToAllCommsAtOnce");
  }
}

void SendStringToSpecificComms(Link& link, std::string_view text, int port) {
  if (!link.IsActive(port)) return;
  Write(link, port, std::vector<std::uint8_t>(text.begin(), text.end()));
}

void SendStringToFirstActiveComms(Link& link, std::string_view text) {
  if (const int port = FirstActivePort(link); port != 0)
    SendStringToSpecificComms(link, text, port);
}

std::uint8_t WaitForDotFromActiveComms(Link& link) {
  std::uint8_t last = 0;
  for (const int port : kAllPorts) {
    if (link.IsActive(port)) last = GetByteFromSpecficComms(link, port, '.');
  }
  return last;
}

std::string ReadReplyFromComms(Link& link, int port, std::string_view mode) {
  Session& session = link.session;
  session.RadioErrorReply.clear();
  std::string reply;
  std::string line;
  std::string character;
  while (character != kPrompt) {
    session.PumpEvents();
    if (session.Stopped()) break;
    character = GetStringFromSpecficComms(link, port, "");
    if (character.empty()) {
      const bool silent = session.RadioErrorReply.empty();
      if (!session.CancelRequested)
        session.SetDownloadError(silent ? Failure::kNoAnswer : Failure::kRadioError);
      break;
    }
    if (character != kCarriageReturn) {
      line += character;
      // Noise never ends a line, and each of its characters starts the time-out anew.
      if (line.size() > kLongestLine) ReportRadioError(session, "{C02}");
      continue;
    }
    const bool is_list = mode == "List";
    reply += is_list ? GetListData(line) : GetRecordData(line);
    if (!line.empty() && !(is_list ? IsIntactListLine(line) : Record::ParseReply(line).has_value()))
      ReportRadioError(session, "{C02}");
    line.clear();
  }
  return reply;
}

std::string ReadReplyFromActiveComms(Link& link, std::string_view mode) {
  std::string last;
  for (const int port : kAllPorts) {
    if (!link.IsActive(port)) continue;
    const std::string reply = ReadReplyFromComms(link, port, mode);
    if (!reply.empty()) last = reply;
  }
  return last;
}

void ClearInputBuffers(Link& link) {
  for (const auto& port : link.ports) {
    if (port->InputCount() > 0) port->ClearInput();
  }
}

void CloseAllComms(Link& link) {
  for (const auto& port : link.ports) {
    if (port->IsOpen()) port->Close();
  }
}

void SaveCommStates(Link& link) { link.SavedCommStates = link.CommStates; }

void RestoreCommStates(Link& link) { link.CommStates = link.SavedCommStates; }

void ShortenOutput(Link& link, int port, std::size_t most) {
  if (IsOpenAndActive(link, port)) WaitForOutput(link, port, most, Turns::kTaken, "ShortenOutput");
}

void ShortenOutput(Link& link, std::size_t most) {
  for (const int port : kAllPorts) ShortenOutput(link, port, most);
}

void DrainOutput(Link& link) { ShortenOutput(link, 0); }

void ReportSilence(Session& session) {
  session.SetDownloadError(Failure::kNoAnswer);
  NLSMsgBox(session, "The radio is not responding, please check the connections.");
}

bool CheckForNoResponse(Link& link) {
  if (link.session.DownloadError || FirstActivePort(link) != 0) return false;
  NLSMsgBox(link.session, "There is no response from any of the communication ports.");
  link.session.SetDownloadError(Failure::kNoAnswer);
  return true;
}

void FailPort(Link& link, int port, Failure why) {
  Session& session = link.session;
  if (link.State(port) == PortState::kErrorDetected) return;
  link.State(port) = PortState::kErrorDetected;
  session.KeepCause(why);
  if (link.others_go_on && !session.CancelRequested) session.DownloadError = false;
  CheckForNoResponse(link);
}

}  // namespace zep::link
