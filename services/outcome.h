// How a job ended.
#pragma once

#include <string>

namespace zep::services {

// Why a job stopped. Becomes the exit status of zepctl.
enum class Failure { kNone, kRefused, kPort, kNoAnswer, kRadioError, kFile, kCancelled };

// Done, or the first cause that stopped the job. Until a job has told how it ended, it has not done
// what it should.
struct Outcome {
  Failure failure = Failure::kRefused;
  std::string radio_reply{};  // the radio's error reply that ended the job, "{C04}"; may be empty

  bool Done() const { return failure == Failure::kNone; }
  bool WasCancelled() const { return failure == Failure::kCancelled; }
};

}  // namespace zep::services
