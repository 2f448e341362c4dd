// The serial port set: the up to four ports through which radios are served side by side, what is
// known of each, and the serial time-out. Every other serial procedure works only on the ports that
// are Active.
//
// Ports are numbered 1 to 4. A procedure that waits gives the user interface a turn on every pass
// and ends early when session.Stopped().
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

struct Link;

// The windows that serial procedures ask for. A terminal answers from its options instead.
class LinkWindows {
 public:
  virtual ~LinkWindows() = default;

  // Lets the user choose which ports are Active (see ApplyPreferences).
  virtual void ShowPreferences(Link& link) = 0;
  // Lets the user choose one of several Active ports (see SelectPort), or all of them.
  virtual void ShowPortSelection(Link& link) = 0;
};

// The timer timSerialTimeOut: 4000 ms without an answer. It fires in a turn of the user interface;
// the time that a question to the user takes is not the radio's.
class SerialTimeOut {
 public:
  // Starts the 4000 ms, anew when they run already.
  void Enable(const services::Session& session);
  void Disable() { deadline_.reset(); }
  bool IsEnabled() const { return deadline_.has_value(); }
  bool IsDue(const services::Session& session) const;

 private:
  std::optional<platform::Duration> deadline_;  // on a clock that stands still during questions
};

using Ports = std::array<std::unique_ptr<platform::SerialPort>, kPortCount>;

// The link as a whole. It hooks itself into the session's turns, so it must not outlive the
// session.
struct Link {
  Link(services::Session& program_session, Ports serial_ports, LinkWindows& link_windows,
       platform::IoPorts& io);
  ~Link();
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  services::Session& session;
  Ports ports;
  LinkWindows& windows;
  platform::IoPorts& io_ports;  // used by the high-speed card only

  std::array<PortState, kPortCount> CommStates{};
  std::array<PortState, kPortCount> SavedCommStates{};
  SerialTimeOut timSerialTimeOut;

  // A run that serves several radios: one that fails is marked and left behind, and the others go
  // on.
  bool others_go_on = false;
  // Ports that were asked into programming mode and have not been released with "^" yet.
  std::array<bool, kPortCount> in_programming_mode{};

  // Gives the slot another port object. Not while a job runs.
  void ReplacePort(int port, std::unique_ptr<platform::SerialPort> replacement);

  platform::SerialPort& Port(int port) { return *ports[Index(port)]; }
  PortState& State(int port) { return CommStates[Index(port)]; }
  bool IsActive(int port) const { return CommStates[Index(port)] == PortState::kActive; }

  static std::size_t Index(int port) { return static_cast<std::size_t>(port - 1); }
};

// The state that the user's settings hold for the port. Values out of range, as a damaged settings
// file may hold them, count as Available.
PortState StateOfSettings(const Link& link, int port);

// Finds out which ports can be opened and sets the states accordingly; with read_settings the
// user's choice is read first. Returns how many can be opened. While a job holds ports open no port
// is touched and no state changes.
int CheckCommPorts(Link& link, bool read_settings);

// How many ports are Active, after a look at all of them.
int CountActivePorts(Link& link);

// The lowest Active port, or 0 when there is none. Looks at the states only.
int FirstActivePort(const Link& link);

// Before an operation on one radio: has the user activate a port when none is Active, or choose one
// of several. True when exactly one port is Active then.
bool SelectSinglePort(Link& link);

// The choice of the port-selection window: only this port stays Active.
void SelectPort(Link& link, int port);

// The ticks of the preferences window: a ticked port becomes Active, an unticked one Available; a
// port without a tick box (nothing) keeps its state. Saves the four states as the user's settings.
void ApplyPreferences(Link& link, const std::array<std::optional<bool>, kPortCount>& ticked);

// Opens every Active port and discards what is pending on it. True when the last Active port is
// open. With no Active port the user is asked for one first. A port that cannot be opened is
// reported and becomes Not Available.
bool InitialiseComms(Link& link);

// Sets the line speed of every Active port: 1200 or 9600 baud; 125000 with the high-speed card
// only. What was received is discarded, and what was written goes out first.
void SelectBaudRate(Link& link, std::int32_t baud);

// Discards the input of the first Active port and sets how it is read.
void SelectInputMode(Link& link, platform::InputMode mode);

// Prepares the four-port high-speed card and points the four port objects at its ports. High-speed
// mode only.
void InitHighSpeedCard(Link& link);

// What a user's action does at its start and its end: clears the flags and remembers the states;
// then releases the radios from programming mode, closes the ports and restores the states, so that
// a failed port can be tried again at once.
class Job {
 public:
  explicit Job(Link& link);
  ~Job();
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

 private:
  Link& link_;
};

}  // namespace zep::link
