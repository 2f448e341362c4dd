#include "link/programming_mode.h"

#include <string>

#include "link/byte_exchange.h"

namespace zep::link {
namespace {

// Sends one character of the handshake and waits for its answer. False when the handshake is over.
bool Handshake(Job& job, int port, std::string_view character, std::string_view answer) {
  SendStringToSpecificComms(job, character, port);
  WaitForChar(job, answer, port);
  return !job.Stopped() && job.IsActive(port);
}

}  // namespace

void PutActiveCommsInProgMode(Job& job) {
  for (const int port : kAllPorts) {
    if (!job.IsActive(port)) continue;
    job.in_programming_mode[Link::Index(port)] = true;
    if (!Handshake(job, port, "^", "v")) return;
    if (!Handshake(job, port, "#", ">")) return;
  }
}

void SendCaretToActiveComms(Job& job) {
  for (const int port : kAllPorts) {
    if (!job.IsActive(port)) continue;
    SendStringToSpecificComms(job, "^", port);
    job.in_programming_mode[Link::Index(port)] = false;
  }
}

void ReleaseFromProgMode(Job& job) {
  constexpr std::uint8_t kCaret = '^';
  for (const int port : kAllPorts) {
    bool& in_programming_mode = job.in_programming_mode[Link::Index(port)];
    if (in_programming_mode && job.Port(port).IsOpen()) job.Port(port).Write({&kCaret, 1});
    in_programming_mode = false;
  }
}

}  // namespace zep::link
