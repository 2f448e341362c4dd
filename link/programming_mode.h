// Getting a radio to listen: the first-stage loader for a radio in its bootstrap mode, and the
// handshake that asks a radio's running software into programming mode.
#pragma once

#include "link/port_set.h"
#include "link/transfer_view.h"

namespace zep::link {

// Sends the first-stage loader bs.tsk, 256 bytes behind a leading 0xFF, to every Active port. The
// ports are at 1200 baud and the radios in bootstrap mode; nothing answers. A file of another
// length is refused and nothing is sent.
void SendBootStrap1ToAllComms(Link& link, TransferView& view);

// Asks the radio on every Active port, one after the other, into programming mode.
//
//   sends "^"  expects "v"
//   sends "#"  expects ">"
//
// Ends at the first port that does not answer. An error reply is kept in RadioErrorReply; callers
// set ReportRadioErrors to kSilent before and decide by it afterwards.
void PutActiveCommsInProgMode(Link& link);

// Sends "^" to every Active port and waits for nothing: the end of an exchange.
void SendCaretToActiveComms(Link& link);

// Sends "^" to every port that was asked into programming mode and not released yet, failed ones
// included.
void ReleaseFromProgMode(Link& link);

}  // namespace zep::link
