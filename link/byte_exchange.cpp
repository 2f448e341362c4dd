#include "link/byte_exchange.h"

#include <optional>
#include <vector>

#include "link/error_replies.h"
#include "link/record_text.h"
#include "services/messages.h"

namespace zep::link {
namespace {

using services::Failure;
using services::NLSMsgBox;
using services::Session;

// A pass of a waiting loop: the operating system wakes us for input, at the latest after this.
constexpr platform::Duration kPass = std::chrono::milliseconds(2);
// A pass of a loop that waits for output to leave, which nothing wakes.
constexpr platform::Duration kDrainPass = std::chrono::microseconds(500);
constexpr platform::Duration kOutputTimeOut = std::chrono::milliseconds(4000);

constexpr std::uint8_t kErrorReplyStart = '{';
constexpr std::string_view kPrompt = ">";
constexpr std::string_view kCarriageReturn = "\r";

enum class Verdict {
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
// port, and, when nothing is there, a nap that input ends. judge says what a byte means.
template <typename Judge>
Wait WaitForInput(Link& link, int port, std::string_view procedure, Judge judge) {
  Session& session = link.session;
  platform::SerialPort& serial = link.Port(port);
  Wait wait;
  link.timSerialTimeOut.Enable(session.clock.Now());
  while (!session.DownloadError) {
    session.PumpEvents();
    if (session.Stopped()) break;
    const std::optional<std::uint8_t> byte = serial.Read();
    if (!byte) {
      if (PortFailed(link, port, procedure)) {
        link.timSerialTimeOut.Disable();
        FailPort(link, port, Failure::kPort);
        wait.ended = Ended::kFailed;
        return wait;
      }
      serial.WaitForInput(kPass);
      continue;
    }
    wait.last = byte;
    const Verdict verdict = judge(*byte);
    if (verdict == Verdict::kSkip) continue;
    // Kept: after an end on zero the time-out runs on; the caller talks to the radio before it
    // fires.
    if (verdict != Verdict::kAcceptZero) link.timSerialTimeOut.Disable();
    wait.ended = verdict == Verdict::kErrorReply ? Ended::kErrorReply : Ended::kAccepted;
    return wait;
  }
  link.timSerialTimeOut.Disable();
  if (session.DownloadError && !session.CancelRequested) wait.ended = Ended::kFailed;
  return wait;
}

// Waits until the port's output is on the line. False, with the port failed, when it takes nothing
// for too long.
bool DrainPort(Link& link, int port, std::string_view procedure) {
  platform::SerialPort& serial = link.Port(port);
  std::size_t pending = serial.OutputCount();
  platform::Duration deadline = link.session.clock.Now() + kOutputTimeOut;
  while (pending > 0) {
    serial.WaitForOutput(kDrainPass);
    const std::size_t left = serial.OutputCount();
    if (left != pending) deadline = link.session.clock.Now() + kOutputTimeOut;
    pending = left;
    if (link.session.clock.Now() >= deadline) {
      FailPort(link, port, Failure::kPort);
      return false;
    }
  }
  if (!PortFailed(link, port, procedure)) return true;
  FailPort(link, port, Failure::kPort);
  return false;
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
      FailPort(link, port, Failure::kRadioError);
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
  if (wait.ended == Ended::kFailed) FailPort(link, port, Failure::kNoAnswer);
  RadioErrorReporter(link.session);
}

void SendByteToSpecificComms(Link& link, std::uint8_t byte, int port, bool wait_for_echo) {
  if (!link.IsActive(port) || link.session.DownloadError) return;
  Write(link, port, {&byte, 1});
  if (!wait_for_echo) {
    if (PortFailed(link, port, "SendByteToSpecificComms")) FailPort(link, port, Failure::kPort);
    return;
  }
  const Wait wait =
      WaitForInput(link, port, "SendByteToSpecificComms", [byte](std::uint8_t received) {
        return received == byte ? Verdict::kAccept : Verdict::kSkip;
      });
  if (wait.ended != Ended::kFailed) return;
  // Kept: the code is the raw byte.
  if (wait.last) FlashErrorReporter(link.session, Text(*wait.last), port);
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
    DrainPort(link, port, "SendBytesToAllComms");
  }
}

void SendBytesToAllCommsAtOnce(Link& link, Bytes bytes) {
  if (link.session.Stopped()) return;
  for (const int port : kAllPorts) {
    if (IsOpenAndActive(link, port)) Write(link, port, bytes);
  }
  for (const int port : kAllPorts) {
    if (IsOpenAndActive(link, port)) DrainPort(link, port, "SendBytesToAllComms");
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
  std::string reply;
  std::string line;
  std::string character;
  while (character != kPrompt) {
    link.session.PumpEvents();
    if (link.session.Stopped()) break;
    character = GetStringFromSpecficComms(link, port, "");
    if (character.empty()) {
      if (!link.session.CancelRequested) link.session.SetDownloadError(Failure::kNoAnswer);
      break;
    }
    if (character != kCarriageReturn) {
      line += character;
      continue;
    }
    const bool is_list = mode == "List";
    reply += is_list ? GetListData(link.session, line) : GetRecordData(link.session, line);
    const bool is_intact =
        is_list ? IsIntactListLine(link.session, line) : IsIntactRecord(link.session, line);
    if (!is_intact) ReportRadioError(link.session, "{C02}");
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

void DrainOutput(Link& link) {
  for (const int port : kAllPorts) {
    if (IsOpenAndActive(link, port)) DrainPort(link, port, "DrainOutput");
  }
}

bool CheckForNoResponse(Link& link) {
  if (link.session.DownloadError || FirstActivePort(link) != 0) return false;
  NLSMsgBox(link.session, "There is no response from any of the communication ports.");
  link.session.SetDownloadError(Failure::kNoAnswer);
  return true;
}

void FailPort(Link& link, int port, Failure why) {
  Session& session = link.session;
  link.State(port) = PortState::kErrorDetected;
  if (session.failure == Failure::kNone) session.failure = why;
  if (link.others_go_on && !session.CancelRequested) session.DownloadError = false;
  CheckForNoResponse(link);
}

}  // namespace zep::link
