// What became of a firmware transfer, port by port.
#pragma once

#include <string>
#include <vector>

#include "firmware/transfer_engine.h"

namespace zep::firmware {

// Tells, port by port, how a firmware transfer ended: a box for each Active and each failed port.
void TransferReport(TransferRun& run);

// A port that took part and its radio.
struct PortReport {
  int port = 0;
  std::string device;
  PortFacts facts;
};

// In the order of the ports.
std::vector<PortReport> PortReports(const link::Link& link, const TransferResult& result);

// The flash device as it is shown; empty for a radio that was not identified.
std::string FlashText(const services::Session& session, const PortFacts& facts);

// The same as lines for the user, and how much was transferred in what time. Empty when no port
// took part.
std::string TransferReportText(const link::Link& link, const TransferResult& result);

// Where a flash memory that was read is saved, in a sentence for the user.
std::string SavedFlashText(const services::Session& session, const std::string& file);

}  // namespace zep::firmware
