#include "radiodb/radio_commands.h"

#include "link/byte_exchange.h"

namespace zep::radiodb {

void SendCommand(link::Link& link, std::string_view command) {
  if (link.session.Stopped()) return;
  SendStringToFirstActiveComms(link, std::string(command).append(kCarriageReturn));
}

bool ExecuteCommand(link::Link& link, std::string_view command) {
  SendCommand(link, command);
  return !ReceiveCharacter(link, kPrompt).empty();
}

std::string ReceiveCharacter(link::Link& link, std::string_view expected) {
  return GetStringFromFirstActiveComms(link, expected);
}

std::string ReceiveReply(link::Link& link, std::string_view mode) {
  const int port = FirstActivePort(link);
  if (port == 0 || link.session.Stopped()) return {};
  return ReadReplyFromComms(link, port, mode);
}

}  // namespace zep::radiodb
