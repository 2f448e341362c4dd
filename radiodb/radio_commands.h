// The command line of the radio behind the first Active port: text commands that end with a
// carriage return, and what the radio answers.
//
// Nothing is sent or received once the session is stopped, and a radio that does not answer as it
// should stops the session. REQUIRES: no other port is Active.
#pragma once

#include <string>
#include <string_view>

#include "link/byte_exchange.h"
#include "link/port_set.h"

namespace zep::radiodb {

using link::kCarriageReturn;
using link::kPrompt;

// Sends the command and a carriage return.
void SendCommand(link::Link& link, std::string_view command);

// The same, then waits for the prompt. False when it did not come.
[[nodiscard]] bool ExecuteCommand(link::Link& link, std::string_view command);

// The next character, or the next expected one; empty when none came.
std::string ReceiveCharacter(link::Link& link, std::string_view expected = {});

// The data of the reply's lines up to the prompt. Mode "List": the item list, else item records.
std::string ReceiveReply(link::Link& link, std::string_view mode = {});

}  // namespace zep::radiodb
