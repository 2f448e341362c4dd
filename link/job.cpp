#include "link/job.h"

#include <utility>

#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "services/messages.h"

namespace zep::link {
namespace {

using services::Failure;
using services::Session;

constexpr platform::Duration kSerialTimeOut = std::chrono::milliseconds(4000);

}  // namespace

void SerialTimeOut::Enable(const Session& session) {
  deadline_ = session.clock.Now() - session.time_in_questions + kSerialTimeOut;
}

bool SerialTimeOut::IsDue(const Session& session) const {
  return deadline_ && session.clock.Now() - session.time_in_questions >= *deadline_;
}

Job::Job(Link& program_link)
    : link(program_link),
      session(program_link.session),
      CommStates(program_link.CommStates),
      running_(session.jobs, *this) {
  turn_before_ = std::exchange(session.on_turn, [this] {
    if (turn_before_) turn_before_();
    if (!timSerialTimeOut.IsDue(session)) return;
    timSerialTimeOut.Disable();
    ReportSilence(*this);
  });
}

Job::~Job() {
  ReleaseFromProgMode(*this);
  CloseAllComms(link);
  session.on_turn = std::move(turn_before_);
}

void Job::KeepCause(Failure why) {
  if (!outcome_.Done()) return;
  outcome_.failure = why;
  if (why == Failure::kRadioError) outcome_.radio_reply = RadioErrorReply;
}

void Job::SetDownloadError(Failure why) {
  DownloadError = true;
  KeepCause(why);
}

void Job::RequestCancel(Failure why) {
  CancelRequested = true;
  KeepCause(why);
}

void Job::ClearFlags() {
  CancelRequested = false;
  DownloadError = false;
  outcome_ = {.failure = Failure::kNone};
}

services::Outcome Job::Ended(bool complete) const {
  services::Outcome ended = outcome_;
  if (!complete && ended.Done()) ended.failure = Failure::kRefused;
  return ended;
}

services::Outcome Job::PartEnded(bool complete) const {
  return complete ? services::Outcome{.failure = Failure::kNone} : Ended(false);
}

void Job::Cancel() {
  if (asks_ || Stopped() || cancelling_ == Cancelling::kTooLate) return;
  if (cancelling_ == Cancelling::kWaits) {
    wish_is_waiting_ = true;
    return;
  }
  if (cancelling_ == Cancelling::kAsksFirst) {
    asks_ = true;
    const bool stops = AskToCancel(session);
    asks_ = false;
    if (!stops) return;
  }
  RequestCancel();
}

Job::Step::~Step() {
  job_.cancelling_ = before_;
  if (before_ != Cancelling::kWaits && std::exchange(job_.wish_is_waiting_, false)) job_.Cancel();
}

bool Refuse(Job& job, std::string_view text, Failure why) {
  job.KeepCause(TellRefusal(job.session, text, why));
  return false;
}

bool Refuse(Job& job, const services::Problem& problem) {
  job.KeepCause(TellRefusal(job.session, problem));
  return false;
}

}  // namespace zep::link
