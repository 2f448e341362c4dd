// How zepctl ends.
#pragma once

#include "services/outcome.h"

namespace zep::cli {

enum class ExitStatus {
  kDone = 0,
  kRefused = 1,  // or failed for a reason that has no status of its own
  kUsage = 2,
  kPort = 3,  // missing, busy or none active
  kNoAnswer = 4,
  kRadioError = 5,
  kFile = 6,  // missing or invalid
  kCancelled = 130,
};

// The status of a job that stopped for this reason; kDone when there is none.
constexpr ExitStatus StatusOf(services::Failure failure) {
  switch (failure) {
    case services::Failure::kNone:
      return ExitStatus::kDone;
    case services::Failure::kRefused:
      return ExitStatus::kRefused;
    case services::Failure::kPort:
      return ExitStatus::kPort;
    case services::Failure::kNoAnswer:
      return ExitStatus::kNoAnswer;
    case services::Failure::kRadioError:
      return ExitStatus::kRadioError;
    case services::Failure::kFile:
      return ExitStatus::kFile;
    case services::Failure::kCancelled:
      return ExitStatus::kCancelled;
  }
  return ExitStatus::kRefused;
}

}  // namespace zep::cli
