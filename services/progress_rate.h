// How fast a long job runs and how long it will still take, as the user sees it beside a progress
// bar: "958 B/s  0:42 left".
#pragma once

#include <cstdint>
#include <string>

#include "services/session.h"

namespace zep::services {

// A run of a progress value from 0 to its maximum.
class ProgressRate {
 public:
  // bytes_on_the_wire is what the rate is taken from. Both outlive this.
  ProgressRate(const Session& session, const std::uint64_t& bytes_on_the_wire)
      : session_(session), bytes_on_the_wire_(bytes_on_the_wire) {}

  // A new run begins; a maximum of 0 means that nothing is counted.
  void Restart(int maximum);
  // Values outside of 0 to the maximum count as the nearest of them.
  void SetValue(int value);

  int Maximum() const { return maximum_; }
  int Value() const { return value_; }
  bool IsMoving() const { return maximum_ > 0 && value_ > 0; }
  int Percent() const;

  // Rate and time left; at the end of the run how long it took. Empty while there is nothing to
  // tell yet.
  std::string Text(bool at_the_end) const;

 private:
  // Time that the user takes for an answer is not the job's.
  platform::Duration Now() const { return session_.clock.Now() - session_.time_in_questions; }

  const Session& session_;
  const std::uint64_t& bytes_on_the_wire_;
  int maximum_ = 0;
  int value_ = 0;
  platform::Duration started_{};
  std::uint64_t bytes_at_start_ = 0;
  platform::Duration last_step_{};  // of the value
  std::uint64_t bytes_at_last_step_ = 0;
};

}  // namespace zep::services
