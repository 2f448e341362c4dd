// Getting a radio to listen: the handshake that asks its running software into programming mode.
#pragma once

#include "link/job.h"

namespace zep::link {

// Asks the radio on every Active port, one after the other, into programming mode.
//
//   sends "^"  expects "v"
//   sends "#"  expects ">"
//
// Ends at the first port that does not answer. An error reply is kept in RadioErrorReply; callers
// set ReportRadioErrors to kSilent before and decide by it afterwards.
void PutActiveCommsInProgMode(Job& job);

// Sends "^" to every Active port and waits for nothing: the end of an exchange.
void SendCaretToActiveComms(Job& job);

// Sends "^" to every port that was asked into programming mode and not released yet, failed ones
// included.
void ReleaseFromProgMode(Job& job);

}  // namespace zep::link
