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
bool PortFailed(Job& job, int port, std::string_view procedure) {
  const platform::SystemError error = job.Port(port).TakeError();
  if (!error) return false;
  ReportError(job.session, error, procedure, port);
  return true;
}

// The waiting loop that all receiving goes through: a turn of the user interface, a look at the
// port, and, when there is nothing or too little, a nap that input ends. look says how it stands.
template <typename Look>
Ended WaitUntil(Job& job, int port, std::string_view procedure, Look look) {
  platform::SerialPort& serial = job.Port(port);
  if (job.Stopped()) return Ended::kStopped;
  job.timSerialTimeOut.Enable(job.session);
  while (!job.DownloadError) {
    job.session.PumpEvents();
    if (job.Stopped()) break;
    const Verdict verdict = look(serial);
    if (verdict == Verdict::kSkip) continue;
    if (verdict == Verdict::kNothing || verdict == Verdict::kTooLittle) {
      if (PortFailed(job, port, procedure)) {
        job.timSerialTimeOut.Disable();
        FailPort(job, port, Failure::kPort);
        return Ended::kFailed;
      }
      if (verdict == Verdict::kNothing) {
        serial.WaitForInput(kPass);
      } else {
        job.session.clock.Sleep(kPassWithInput);
      }
      continue;
    }
    // Kept: after an end on zero the time-out runs on; the caller talks to the radio before it
    // fires.
    if (verdict != Verdict::kAcceptZero) job.timSerialTimeOut.Disable();
    return verdict == Verdict::kErrorReply ? Ended::kErrorReply : Ended::kAccepted;
  }
  job.timSerialTimeOut.Disable();
  return job.DownloadError && !job.CancelRequested ? Ended::kFailed : Ended::kStopped;
}

// Takes byte after byte until judge says that the wait is over.
template <typename Judge>
Wait WaitForInput(Job& job, int port, std::string_view procedure, Judge judge) {
  Wait wait;
  wait.ended = WaitUntil(job, port, procedure, [&](platform::SerialPort& serial) {
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
void WaitForOutput(Job& job, int port, std::size_t most, Turns turns, std::string_view procedure) {
  platform::SerialPort& serial = job.Port(port);
  std::size_t pending = serial.OutputCount();
  platform::Duration deadline = job.session.clock.Now() + kOutputTimeOut;
  while (pending > most) {
    if (turns == Turns::kTaken) job.session.PumpEvents();
    serial.WaitForOutput(kDrainPass);
    const std::size_t left = serial.OutputCount();
    if (left != pending) deadline = job.session.clock.Now() + kOutputTimeOut;
    pending = left;
    if (job.session.clock.Now() < deadline) continue;
    ReportSilence(job);
    FailPort(job, port, Failure::kPort);
    return;
  }
  if (PortFailed(job, port, procedure)) FailPort(job, port, Failure::kPort);
}

bool IsOpenAndActive(Job& job, int port) { return job.IsActive(port) && job.Port(port).IsOpen(); }

void Write(Job& job, int port, Bytes bytes) { job.Port(port).Write(bytes); }

}  // namespace

std::uint8_t GetByteFromSpecficComms(Job& job, int port, std::uint8_t expected, bool end_on_zero) {
  if (!job.IsActive(port)) return 0;
  const Wait wait = WaitForInput(job, port, "GetByteFromSpecficComms ", [&](std::uint8_t byte) {
    if (byte == kErrorReplyStart) return Verdict::kErrorReply;
    if (byte == 0 && end_on_zero) return Verdict::kAcceptZero;
    const bool accepted = expected == 0 ? byte != 0 : byte == expected;
    return accepted ? Verdict::kAccept : Verdict::kSkip;
  });
  switch (wait.ended) {
    case Ended::kAccepted:
      return *wait.last;
    case Ended::kErrorReply:
      ReadRadioErrorReply(job, port);
      if (!job.CancelRequested) FailPort(job, port, Failure::kRadioError);
      return 0;
    case Ended::kFailed:
      // Kept: the code goes to the flash error table as the byte's decimal digits, which no row of
      // the table matches.
      if (expected != 0 && wait.last)
        FlashErrorReporter(job.session, std::to_string(*wait.last), port);
      FailPort(job, port, Failure::kNoAnswer);
      return 0;
    case Ended::kStopped:
      return 0;
  }
  return 0;
}

std::uint8_t GetAnyByte(Job& job, int port) {
  if (!job.IsActive(port)) return 0;
  const std::uint8_t byte = job.Port(port).Read().value_or(0);
  if (PortFailed(job, port, "GetAnyByte")) FailPort(job, port, Failure::kPort);
  return byte;
}

bool WaitForInputCount(Job& job, int port, std::size_t count, std::string_view procedure) {
  if (!job.IsActive(port)) return false;
  std::size_t received = 0;
  const Ended ended = WaitUntil(job, port, procedure, [&](platform::SerialPort& serial) {
    const std::size_t before = std::exchange(received, serial.InputCount());
    if (received == count) return Verdict::kAccept;
    if (received != before) job.timSerialTimeOut.Enable(job.session);
    return received == 0 ? Verdict::kNothing : Verdict::kTooLittle;
  });
  if (job.DownloadError) FailPort(job, port, Failure::kNoAnswer);
  return ended == Ended::kAccepted;
}

std::string GetStringFromSpecficComms(Job& job, int port, std::string_view expected) {
  if (!job.IsActive(port)) return {};
  const Wait wait = WaitForInput(job, port, "GetStringFromSpecficComms", [&](std::uint8_t byte) {
    if (byte == kErrorReplyStart) return Verdict::kErrorReply;
    return expected.empty() || Text(byte) == expected ? Verdict::kAccept : Verdict::kSkip;
  });
  switch (wait.ended) {
    case Ended::kAccepted:
      return Text(*wait.last);
    case Ended::kErrorReply:
      ReadRadioErrorReply(job, port);
      return {};
    case Ended::kFailed:
      if (!expected.empty() && wait.last) FlashErrorReporter(job.session, Text(*wait.last), port);
      FailPort(job, port, Failure::kNoAnswer);
      return {};
    case Ended::kStopped:
      return {};
  }
  return {};
}

std::string GetStringFromFirstActiveComms(Job& job, std::string_view expected) {
  const int port = FirstActivePort(job.CommStates);
  return port == 0 ? std::string() : GetStringFromSpecficComms(job, port, expected);
}

bool WaitForChar(Job& job, std::string_view expected, int port) {
  job.RadioErrorReply.clear();
  if (!job.IsActive(port)) return true;
  const Wait wait = WaitForInput(job, port, "WaitForChar Func", [&](std::uint8_t byte) {
    if (Text(byte) == expected) return Verdict::kAccept;
    return byte == kErrorReplyStart ? Verdict::kErrorReply : Verdict::kSkip;
  });
  if (wait.ended == Ended::kErrorReply) ReadRadioErrorReply(job, port);
  if (wait.ended == Ended::kFailed) FailPort(job, port, Failure::kNoAnswer);
  return true;
}

void ReadRadioErrorReply(Job& job, int port) {
  std::string& reply = job.RadioErrorReply;
  reply = Text(kErrorReplyStart);
  const Wait wait = WaitForInput(job, port, "ReadRadioErrorReply", [&reply](std::uint8_t byte) {
    const std::string text = Text(byte);
    if (text == kPrompt) return Verdict::kAccept;
    if (text != kCarriageReturn) reply += text;
    return Verdict::kSkip;
  });
  if (job.CancelRequested) return;
  RadioErrorReporter(job);
  if (wait.ended == Ended::kFailed) FailPort(job, port, Failure::kNoAnswer);
}

void SendByteToSpecificComms(Job& job, std::uint8_t byte, int port, bool wait_for_echo) {
  if (!job.IsActive(port) || job.DownloadError) return;
  Write(job, port, {&byte, 1});
  if (!wait_for_echo) {
    job.timSerialTimeOut.Disable();
    if (PortFailed(job, port, "SendByteToSpecificComms")) FailPort(job, port, Failure::kPort);
    return;
  }
  const Wait wait =
      WaitForInput(job, port, "SendByteToSpecificComms", [byte](std::uint8_t received) {
        return received == byte ? Verdict::kAccept : Verdict::kSkip;
      });
  if (wait.ended != Ended::kFailed) return;
  // Kept: as in GetByteFromSpecficComms, the code is handed over in a form that matches no row.
  if (wait.last) FlashErrorReporter(job.session, std::to_string(*wait.last), port);
  FailPort(job, port, Failure::kNoAnswer);
}

void SendByteToAllComms(Job& job, std::uint8_t byte, const SendOptions& options) {
  for (const int port : kAllPorts) {
    if (job.Stopped()) return;
    if (!job.IsActive(port)) continue;
    Write(job, port, {&byte, 1});
    if (options.wait || options.wait_too)
      GetByteFromSpecficComms(job, port, options.expected, options.end_on_zero);
  }
}

void SendByteToActiveComms(Job& job, std::uint8_t byte) {
  for (const int port : kAllPorts) {
    if (job.IsActive(port)) Write(job, port, {&byte, 1});
  }
}

void SendBytesToAllComms(Job& job, Bytes bytes) {
  for (const int port : kAllPorts) {
    if (job.Stopped()) return;
    if (!IsOpenAndActive(job, port)) continue;
    Write(job, port, bytes);
    WaitForOutput(job, port, 0, Turns::kNone, "SendBytesToAllComms");
  }
}

void SendBytesToAllCommsAtOnce(Job& job, Bytes bytes) {
  if (job.Stopped()) return;
  for (const int port : kAllPorts) {
    if (IsOpenAndActive(job, port)) Write(job, port, bytes);
  }
  for (const int port : kAllPorts) {
    if (IsOpenAndActive(job, port))
      WaitForOutput(job, port, 0, Turns::kNone, "SendBytesToAllCommsAtOnce");
  }
}

void SendStringToSpecificComms(Job& job, std::string_view text, int port) {
  if (!job.IsActive(port)) return;
  Write(job, port, std::vector<std::uint8_t>(text.begin(), text.end()));
}

void SendStringToFirstActiveComms(Job& job, std::string_view text) {
  if (const int port = FirstActivePort(job.CommStates); port != 0)
    SendStringToSpecificComms(job, text, port);
}

std::uint8_t WaitForDotFromActiveComms(Job& job) {
  std::uint8_t last = 0;
  for (const int port : kAllPorts) {
    if (job.IsActive(port)) last = GetByteFromSpecficComms(job, port, '.');
  }
  return last;
}

std::string ReadReplyFromComms(Job& job, int port, std::string_view mode) {
  job.RadioErrorReply.clear();
  std::string reply;
  std::string line;
  std::string character;
  while (character != kPrompt) {
    job.session.PumpEvents();
    if (job.Stopped()) break;
    character = GetStringFromSpecficComms(job, port, "");
    if (character.empty()) {
      const bool silent = job.RadioErrorReply.empty();
      if (!job.CancelRequested)
        job.SetDownloadError(silent ? Failure::kNoAnswer : Failure::kRadioError);
      break;
    }
    if (character != kCarriageReturn) {
      line += character;
      // Noise never ends a line, and each of its characters starts the time-out anew.
      if (line.size() > kLongestLine) ReportRadioError(job, "{C02}");
      continue;
    }
    const bool is_list = mode == "List";
    reply += is_list ? GetListData(line) : GetRecordData(line);
    if (!line.empty() && !(is_list ? IsIntactListLine(line) : Record::ParseReply(line).has_value()))
      ReportRadioError(job, "{C02}");
    line.clear();
  }
  return reply;
}

std::string ReadReplyFromActiveComms(Job& job, std::string_view mode) {
  std::string last;
  for (const int port : kAllPorts) {
    if (!job.IsActive(port)) continue;
    const std::string reply = ReadReplyFromComms(job, port, mode);
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

void SaveCommStates(Job& job) { job.link.CommStates = job.CommStates; }

void RestoreCommStates(Job& job) { job.CommStates = job.link.CommStates; }

void ShortenOutput(Job& job, int port, std::size_t most) {
  if (IsOpenAndActive(job, port)) WaitForOutput(job, port, most, Turns::kTaken, "ShortenOutput");
}

void ShortenOutput(Job& job, std::size_t most) {
  for (const int port : kAllPorts) ShortenOutput(job, port, most);
}

void DrainOutput(Job& job) { ShortenOutput(job, 0); }

void ReportSilence(Job& job) {
  job.SetDownloadError(Failure::kNoAnswer);
  NLSMsgBox(job.session, "The radio is not responding, please check the connections.");
}

bool CheckForNoResponse(Job& job) {
  if (job.DownloadError || FirstActivePort(job.CommStates) != 0) return false;
  NLSMsgBox(job.session, "There is no response from any of the communication ports.");
  job.SetDownloadError(Failure::kNoAnswer);
  return true;
}

void FailPort(Job& job, int port, Failure why) {
  if (job.State(port) == PortState::kErrorDetected) return;
  job.State(port) = PortState::kErrorDetected;
  job.KeepCause(why);
  if (job.others_go_on && !job.CancelRequested) job.DownloadError = false;
  CheckForNoResponse(job);
}

}  // namespace zep::link
