// The command line of the radio behind the first Active port: text commands that end with a
// carriage return, and what the radio answers.
//
// Nothing is sent or received once the job is stopped, and a radio that does not answer as it
// should stops the job. REQUIRES: no other port is Active.
#pragma once

#include <string>
#include <string_view>

#include "link/byte_exchange.h"
#include "link/job.h"

namespace zep::radiodb {

using link::kCarriageReturn;
using link::kPrompt;

// Sends the command and a carriage return.
void SendCommand(link::Job& job, std::string_view command);

// The same, then waits for the prompt. False when it did not come.
[[nodiscard]] bool ExecuteCommand(link::Job& job, std::string_view command);

// The next character, or the next expected one; empty when none came.
std::string ReceiveCharacter(link::Job& job, std::string_view expected = {});

// The data of the reply's lines up to the prompt. Mode "List": the item list, else item records.
std::string ReceiveReply(link::Job& job, std::string_view mode = {});

}  // namespace zep::radiodb
