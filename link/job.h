// A job: one action of the user that talks with radios, from the click or the command to its end.
// It owns everything that is true only meanwhile, and is handed down to whatever works for it.
//
// Procedures that wait give the user interface a turn on every pass and give up, with an empty
// result, once the job is Stopped(). How it ended is told once, by Ended().
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "link/port_set.h"
#include "platform/system_error.h"
#include "services/job_control.h"
#include "services/outcome.h"
#include "services/problem.h"
#include "services/session.h"

namespace zep::link {

// Which way firmware or data flows.
enum class Transfer { kRead = 1, kProgram = 2 };

// Whether error replies of a radio are shown, or only kept in RadioErrorReply.
enum class ReportErrors { kShow = 1, kSilent = 2 };

// What the user's wish to cancel comes to.
enum class Cancelling {
  kAtOnce,     // the job stops
  kAsksFirst,  // the radio would be left in an undefined state: the user is asked
  kWaits,      // the step must come to its end: the wish is kept until then
  kTooLate,    // there is nothing left to be stopped
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

class Job final : public services::RunningJob {
 public:
  // Begins with the ports that the user has chosen. The link outlives the job.
  explicit Job(Link& program_link);
  // Releases the radios from programming mode and closes the ports. The user's choice of ports is
  // untouched by what became of them, so that a failed one can be tried again at once.
  ~Job() override;
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  Link& link;
  services::Session& session;

  bool CancelRequested = false;    // set by Cancel and by fatal file errors
  bool DownloadError = false;      // the comms error flag
  bool DownloadSucceeded = false;  // the last firmware run finished
  // For which way the user is asked to choose a port.
  Transfer TransferMode = Transfer::kRead;
  // The last error reply collected, beginning with "{"; empty when there is none.
  std::string RadioErrorReply;
  ReportErrors ReportRadioErrors = ReportErrors::kShow;

  PortStates CommStates;
  SerialTimeOut timSerialTimeOut;
  // A run that serves several radios: one that fails is marked and left behind, and the others go
  // on.
  bool others_go_on = false;
  // Ports that were asked into programming mode and have not been released with "^" yet.
  std::array<bool, kPortCount> in_programming_mode{};

  platform::SerialPort& Port(int port) { return link.Port(port); }
  PortState& State(int port) { return CommStates[Link::Index(port)]; }
  bool IsActive(int port) const { return CommStates[Link::Index(port)] == PortState::kActive; }

  bool Stopped() const { return CancelRequested || DownloadError; }

  // Makes this the cause of the job's end unless there is one already.
  void KeepCause(services::Failure why);
  // Sets DownloadError, or CancelRequested, and keeps the first cause.
  void SetDownloadError(services::Failure why);
  void RequestCancel(services::Failure why = services::Failure::kCancelled);
  // Clears both flags and the cause.
  void ClearFlags();
  // How the job ended, or stands. complete: all that it should do is done; a job that has no other
  // cause for not being complete was refused.
  services::Outcome Ended(bool complete) const;
  // The same for a part of the job: one that is complete is done, whatever failed before it.
  services::Outcome PartEnded(bool complete) const;

  void Cancel() override;
  void Stop() override { RequestCancel(); }
  bool IsStopping() const override { return Stopped(); }
  // The user is being asked whether to cancel.
  bool Asks() const { return asks_; }

  // A part of the job in which it is cancelled in another way than before. A wish that has waited
  // is followed when the part is over.
  class Step {
   public:
    Step(Job& job, Cancelling how) : job_(job), before_(job.cancelling_) { job.cancelling_ = how; }
    ~Step();
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

   private:
    Job& job_;
    Cancelling before_;
  };

 private:
  services::Outcome outcome_{.failure = services::Failure::kNone};
  Cancelling cancelling_ = Cancelling::kAtOnce;
  bool asks_ = false;
  bool wish_is_waiting_ = false;  // the user has wished to cancel a step that waits
  std::function<void()> turn_before_;
  services::JobControl::Scope running_;
};

// How a procedure tells that its job does not go on: shows the text (translated already, or a text
// of the dictionary), keeps the cause when it is the first one, and returns false. Likewise for a
// problem that another procedure has met.
bool Refuse(Job& job, std::string_view text, services::Failure why);
bool Refuse(Job& job, const services::Problem& problem);

}  // namespace zep::link
