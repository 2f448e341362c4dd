// The transfer of the image itself, row by row of the memory map.
#pragma once

#include "firmware/transfer_engine.h"

namespace zep::firmware {

// The rows of the memory map, in either direction: writes the chosen image into the radios' flash,
// or the flash of one radio into the file.
//
//   sends    bank, start address (high, low), blocks (high, low)   expects each byte back
//   download sends 128 bytes                                       expects "."
//   upload   sends "."                                             expects 128 bytes
//
// An upload writes 0xFF for the rows that are not transferred, and gives up when a radio is silent
// for 4000 ms inside a block.
void WriteRadioSoftware(TransferRun& run);

// Removes the file of an upload that has not finished, so that nobody takes it for an image.
void DiscardUpload(TransferRun& run);

}  // namespace zep::firmware
