// The serial port set: the up to four ports through which radios are served side by side, and what
// is known of each. Every other serial procedure works only on the ports that are Active.
//
// Ports are numbered 1 to 4.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/io_ports.h"
#include "platform/serial_port.h"
#include "services/session.h"

namespace zep::link {

inline constexpr int kPortCount = 4;
inline constexpr std::array<int, kPortCount> kAllPorts = {1, 2, 3, 4};

enum class PortState : std::int32_t {
  kActive = 1,         // chosen by the user and can be opened
  kAvailable = 2,      // can be opened
  kNotAvailable = 3,   // missing, or in use elsewhere
  kErrorDetected = 4,  // an operation on it failed
};

// The state's name as the user sees it, untranslated.
std::string_view PortStateText(PortState state);

// By port.
using PortStates = std::array<PortState, kPortCount>;

// The lowest Active port, or 0 when there is none. And how many are Active.
int FirstActivePort(const PortStates& states);
int ActivePorts(const PortStates& states);

struct Link;
class Job;

// The windows that serial procedures ask for. A terminal answers from its options instead.
class LinkWindows {
 public:
  virtual ~LinkWindows() = default;

  // Lets the user choose which ports are Active (see ApplyPreferences). states: a job's, or those
  // of the link; they are tried and shown.
  virtual void ShowPreferences(Link& link, PortStates& states) = 0;
  // Lets the user choose one of a job's Active ports (see SelectPort), or all of them.
  virtual void ShowPortSelection(Job& job) = 0;
};

using Ports = std::array<std::unique_ptr<platform::SerialPort>, kPortCount>;

// The ports and what the user wants of them. It outlives all jobs.
struct Link {
  Link(services::Session& program_session, Ports serial_ports, LinkWindows& link_windows,
       platform::IoPorts& io);
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  services::Session& session;
  Ports ports;
  LinkWindows& windows;
  platform::IoPorts& io_ports;  // used by the high-speed card only

  // What the user has chosen, as far as the ports can be opened. A job has states of its own.
  PortStates CommStates{};

  // Gives the port another device. Not while the port is open.
  void ReplacePort(int port, std::unique_ptr<platform::SerialPort> replacement);

  platform::SerialPort& Port(int port) { return *ports[Index(port)]; }
  PortState& State(int port) { return CommStates[Index(port)]; }
  bool IsActive(int port) const { return CommStates[Index(port)] == PortState::kActive; }

  static std::size_t Index(int port) { return static_cast<std::size_t>(port - 1); }
};

// The state that the user's settings hold for the port. Values out of range, as a damaged settings
// file may hold them, count as Available.
PortState StateOfSettings(const Link& link, int port);

// Opens and closes every port to find out which can be opened, and sets the states accordingly: one
// that cannot is Not Available, one that can is Available unless it was Active. Returns how many
// can. While a job holds ports open no port is touched and no state changes.
int TryPorts(Link& link, PortStates& states);

// The same for the user's choice, which with read_settings is read first.
int CheckCommPorts(Link& link, bool read_settings);

// Before an operation on one radio: tries the ports, has the user activate one when none is Active,
// or choose one of several. True when exactly one port is Active then.
bool SelectSinglePort(Job& job);

// The choice of the port-selection window: only this port stays Active in the job.
void SelectPort(Job& job, int port);

// The ticks of the preferences window: a ticked port becomes Active, an unticked one Available; a
// port without a tick box (nothing) keeps its state. They go into the user's choice and, in a job,
// into its states; these are saved as the user's settings.
void ApplyPreferences(Link& link, PortStates& states,
                      const std::array<std::optional<bool>, kPortCount>& ticked);

// Opens every Active port and discards what is pending on it. True when the last Active port is
// open. With no Active port the user is asked for one first. A port that cannot be opened is
// reported and becomes Not Available.
bool InitialiseComms(Job& job);

// Sets the line speed of every Active port: 1200 or 9600 baud; 125000 with the high-speed card
// only. What was received is discarded, and what was written goes out first.
void SelectBaudRate(Job& job, std::int32_t baud);

// Discards the input of the first Active port and sets how it is read.
void SelectInputMode(Link& link, const PortStates& states, platform::InputMode mode);

// Prepares the four-port high-speed card and points the four port objects at its ports. High-speed
// mode only.
void InitHighSpeedCard(Link& link);

}  // namespace zep::link
