// Byte and character exchange: the procedures that put bytes on the serial lines and take them off.
// Everything else that talks with a radio is built from them; only the release from programming
// mode, which is meant for ports that have failed as well, writes by itself.
//
// They work on Active ports, one by its number or all in port order 1 to 4, and wait for a reply by
// looking at the port once a pass. One read takes one byte. A wait ends early, with the empty
// result (0 or ""), when the job is stopped, when the radio is silent for 4000 ms (the time-out
// has told the user then and set DownloadError), or when it sends an error reply in braces, which
// is collected and reported. A port that fails while it is waited for becomes Error Detected.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "link/job.h"

namespace zep::link {

// What ends the answer to a command, and a command.
inline constexpr std::string_view kPrompt = ">";
inline constexpr std::string_view kCarriageReturn = "\r";

using Bytes = std::span<const std::uint8_t>;

// Waits for a byte from the port. expected 0: any byte but 0, which is skipped; otherwise bytes
// other than the expected one are skipped. end_on_zero: a 0 byte ends the wait. Returns the byte, 0
// if none came.
std::uint8_t GetByteFromSpecficComms(Job& job, int port, std::uint8_t expected,
                                     bool end_on_zero = false);

// The next byte received on an Active port, without waiting; 0 if none.
std::uint8_t GetAnyByte(Job& job, int port);

// Waits until exactly so many bytes have come from an Active port and leaves them there. Each that
// comes starts the time-out anew. procedure: in whose name a failure of the port is reported. False
// when the wait ended early.
bool WaitForInputCount(Job& job, int port, std::size_t count, std::string_view procedure);

// Waits for a character from the port: any when expected is empty, otherwise others are skipped. ""
// if none came.
std::string GetStringFromSpecficComms(Job& job, int port, std::string_view expected);

// The same on the first Active port; "" when there is none.
std::string GetStringFromFirstActiveComms(Job& job, std::string_view expected);

// Waits until the expected character or an error reply came. Always true: how it went is told by
// DownloadError, CancelRequested and RadioErrorReply, which is cleared first.
bool WaitForChar(Job& job, std::string_view expected, int port);

// Sends a byte to an Active port unless DownloadError is set; with wait_for_echo, waits until it
// comes back.
void SendByteToSpecificComms(Job& job, std::uint8_t byte, int port, bool wait_for_echo = false);

struct SendOptions {
  bool wait = false;
  std::uint8_t expected = 0;
  bool wait_too = false;
  bool end_on_zero = false;
};

// Sends a byte to every Active port; with wait or wait_too, each port must have answered with the
// expected byte before the next one is sent to.
void SendByteToAllComms(Job& job, std::uint8_t byte, const SendOptions& options = {});

// Sends a byte to every Active port without waiting.
void SendByteToActiveComms(Job& job, std::uint8_t byte);

// Sends bytes to every open Active port, one after the other; a port's output has gone out before
// the next one's turn. Does not give the user interface a turn.
void SendBytesToAllComms(Job& job, Bytes bytes);

// The same for all ports together: the bytes are written to every port before any output is waited
// for.
void SendBytesToAllCommsAtOnce(Job& job, Bytes bytes);

// Sends text to one Active port, or to the first Active one.
void SendStringToSpecificComms(Job& job, std::string_view text, int port);
void SendStringToFirstActiveComms(Job& job, std::string_view text);

// Waits for the acknowledgement "." from every Active port in turn. The last byte received.
std::uint8_t WaitForDotFromActiveComms(Job& job);

// Reads a reply of text lines up to the prompt ">" and returns the data of its lines, joined. Mode
// "List": a line is two characters, a count, the data; any other mode: an item record. A
// corrupted one is reported as "{C02}". Silence sets DownloadError and returns what came.
std::string ReadReplyFromComms(Job& job, int port, std::string_view mode);

// The same from every Active port in turn; the last reply that is not empty. Only tests call it.
std::string ReadReplyFromActiveComms(Job& job, std::string_view mode);

// Collects an error reply, whose "{" has been read, up to the prompt into RadioErrorReply and
// reports it.
void ReadRadioErrorReply(Job& job, int port);

void ClearInputBuffers(Link& link);
void CloseAllComms(Link& link);
// Makes the job's port states the user's choice; and takes that choice again.
void SaveCommStates(Job& job);
void RestoreCommStates(Job& job);

// Bytes of a loader that may wait on a port: enough to keep the line fed, few enough for a true
// progress bar and for Cancel to stop the loader.
inline constexpr std::size_t kBytesAhead = 32;

// Waits, with turns of the user interface, until at most so many bytes of a port's output, or of
// every open Active port's, are still to go out. A port that sends nothing for 4000 ms has failed.
// Kept above 0 while there is more to send, the line is never idle.
void ShortenOutput(Job& job, int port, std::size_t most);
void ShortenOutput(Job& job, std::size_t most);
// The same until all is on the line.
void DrainOutput(Job& job);

// Tells the user that a radio does not answer and sets DownloadError.
void ReportSilence(Job& job);

// When no port is Active any longer and DownloadError is not set yet: tells the user, sets it and
// returns true.
bool CheckForNoResponse(Job& job);

// Marks a port as failed, once. In a run that serves several radios DownloadError is taken back, as
// long as others are left.
void FailPort(Job& job, int port, services::Failure why);

}  // namespace zep::link
