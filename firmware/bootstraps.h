// The two loaders that a radio is given before its flash can be written or read: the first one by
// the radio's own ROM, in bootstrap mode, and the flash downloader by the first.
#pragma once

#include "firmware/transfer_engine.h"

namespace zep::firmware {

// Sends the first-stage loader bs.tsk, 256 bytes behind a leading 0xFF, to every Active port. The
// ports are at 1200 baud and the radios in bootstrap mode; nothing answers. A file of another
// length is refused and nothing is sent.
void SendBootStrap1ToAllComms(link::Job& job, TransferView& view);

// Has the user put the radios into bootstrap mode, sends the first loader at 1200 baud and looks at
// the configuration registers. A wish to cancel waits meanwhile.
//
//   sends    0xFF, bs.tsk   expects nothing; a radio may send its configuration register by itself
void RunBootstrap1(TransferRun& run);

// Sends the flash downloader, finds out what the radios carry, refuses what cannot work and chooses
// the direction.
//
//   sends    "0"                              at 1200 baud, everything that follows at 9600
//   sends    "B", dl.tsk, "E"                 expects manufacturer, device, micro type
//   sends    "r" (download) or "t" (upload)   expects the same byte
//   sends    "0"                              expects the same byte
void RunBootstrap2(TransferRun& run);

}  // namespace zep::firmware
