#include "services/job_control.h"

namespace zep::services {

JobControl::Scope::Scope(JobControl& control, RunningJob& job) : control_(control) {
  control_.jobs_.push_back(&job);
  if (control_.jobs_.size() == 1 && control_.on_change) control_.on_change(true);
}

JobControl::Scope::~Scope() {
  control_.jobs_.pop_back();
  if (control_.jobs_.empty() && control_.on_change) control_.on_change(false);
}

void JobControl::Cancel() {
  if (IsRunning()) jobs_.back()->Cancel();
}

void JobControl::Stop() {
  if (IsRunning()) jobs_.back()->Stop();
}

}  // namespace zep::services
