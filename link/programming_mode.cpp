#include "link/programming_mode.h"

#include <string>

#include "link/byte_exchange.h"

namespace zep::link {
namespace {

// Sends one character of the handshake and waits for its answer. False when the handshake is over.
bool Handshake(Link& link, int port, std::string_view character, std::string_view answer) {
  SendStringToSpecificComms(link, character, port);
  WaitForChar(link, answer, port);
  return !link.session.Stopped() && link.IsActive(port);
}

}  // namespace

void PutActiveCommsInProgMode(Link& link) {
  for (const int port : kAllPorts) {
    if (!link.IsActive(port)) continue;
    link.in_programming_mode[Link::Index(port)] = true;
    if (!Handshake(link, port, "^", "v")) return;
    if (!Handshake(link, port, "#", ">")) return;
  }
}

void SendCaretToActiveComms(Link& link) {
  for (const int port : kAllPorts) {
    if (!link.IsActive(port)) continue;
    SendStringToSpecificComms(link, "^", port);
    link.in_programming_mode[Link::Index(port)] = false;
  }
}

void ReleaseFromProgMode(Link& link) {
  constexpr std::uint8_t kCaret = '^';
  for (const int port : kAllPorts) {
    bool& in_programming_mode = link.in_programming_mode[Link::Index(port)];
    if (in_programming_mode && link.Port(port).IsOpen()) link.Port(port).Write({&kCaret, 1});
    in_programming_mode = false;
  }
}

}  // namespace zep::link
