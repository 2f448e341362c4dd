// What became of a firmware transfer, slot by slot.
#pragma once

#include <string>
#include <vector>

#include "firmware/firmware.h"
#include "firmware/transfer_engine.h"

namespace zep::firmware {

// Tells, port by port, how a firmware transfer ended: a box for each Active and each failed port.
void TransferReport(link::Link& link, TransferView& view);

struct SlotReport {
  int slot = 0;
  std::string device;
  std::string micro;  // "A1" or "E1"; empty when the radio has not told it, like the next
  std::string flash;
  SlotOutcome outcome = SlotOutcome::kNotUsed;
};

// The slots that took part, in their order. Of the last run, until the next one begins.
std::vector<SlotReport> SlotReports(const Firmware& firmware, const TransferResult& result);

// The same as lines for the user, and how much was transferred in what time. Empty when no slot
// took part.
std::string TransferReportText(const Firmware& firmware, const TransferResult& result);

// Where a flash memory that was read is saved, in a sentence for the user.
std::string SavedFlashText(const services::Session& session, const std::string& file);

}  // namespace zep::firmware
