#include "radiodb/radio_commands.h"

#include "link/byte_exchange.h"

namespace zep::radiodb {

void SendCommand(link::Job& job, std::string_view command) {
  if (job.Stopped()) return;
  SendStringToFirstActiveComms(job, std::string(command).append(kCarriageReturn));
}

bool ExecuteCommand(link::Job& job, std::string_view command) {
  SendCommand(job, command);
  return !ReceiveCharacter(job, kPrompt).empty();
}

std::string ReceiveCharacter(link::Job& job, std::string_view expected) {
  return GetStringFromFirstActiveComms(job, expected);
}

std::string ReceiveReply(link::Job& job, std::string_view mode) {
  const int port = link::FirstActivePort(job.CommStates);
  if (port == 0 || job.Stopped()) return {};
  return ReadReplyFromComms(job, port, mode);
}

}  // namespace zep::radiodb
