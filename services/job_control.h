// The job that is running, as the windows and the terminal know it: they ask here before they start
// anything, and pass on the user's wish to stop. When a job may be cancelled, and whether it asks
// first, is the job's own business.
#pragma once

#include <functional>
#include <vector>

namespace zep::services {

class RunningJob {
 public:
  virtual ~RunningJob() = default;

  // The user's wish to cancel, in a turn of the user interface. The job may ask the user, or keep
  // the wish until it can be followed.
  virtual void Cancel() = 0;
  // The program is to end: the job stops at its next step, without a question.
  virtual void Stop() = 0;
  // It is on its way to its end, and a wish to cancel changes nothing any more.
  virtual bool IsStopping() const = 0;
};

class JobControl {
 public:
  // For as long as it lives the job is the innermost one: a step that is cancelled in another way
  // than the whole stands inside it.
  class Scope {
   public:
    Scope(JobControl& control, RunningJob& job);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    JobControl& control_;
  };

  bool IsRunning() const { return !jobs_.empty(); }

  // Both go to the innermost job; nothing happens when no job runs.
  void Cancel();
  void Stop();
  bool IsStopping() const { return IsRunning() && jobs_.back()->IsStopping(); }

  // Told when the first job begins and when the last one has ended.
  std::function<void(bool running)> on_change;

 private:
  std::vector<RunningJob*> jobs_;
};

}  // namespace zep::services
