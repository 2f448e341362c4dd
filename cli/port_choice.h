// The serial ports that a command works on: those named with -p, else those of the settings.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "link/job.h"

namespace zep::cli {

class TerminalUser;

// Devices by port; empty: none.
using PortDevices = std::array<std::string, link::kPortCount>;

// Fills in what the values of -p say: "N=DEVICE" is port N, "DEVICE" the next free one.
// Returns what is wrong with them, translated; empty when nothing is.
std::string ParsePorts(const services::Session& session, const std::vector<std::string>& values,
                       PortDevices& devices);

// Makes the named ports Active and leaves all others alone. False when one of them cannot be
// opened; the user has been told why and what to do.
bool ActivateNamedPorts(link::Link& link, const PortDevices& devices);

// Tells why ports that the settings choose cannot be opened. False when none is Active: the user
// has been told how to name one.
bool FindActivePorts(link::Link& link);

// Stands in for the windows of the link.
class TerminalLinkWindows final : public link::LinkWindows {
 public:
  explicit TerminalLinkWindows(TerminalUser& user) : user_(user) {}

  // There is no such window: the user is told which of the chosen ports are gone, or what to type.
  void ShowPreferences(link::Link& link, link::PortStates& states) override;
  // Asks which port. Who cannot be asked is told the choices, and several ports stay Active.
  void ShowPortSelection(link::Job& job) override;

 private:
  TerminalUser& user_;
};

}  // namespace zep::cli
