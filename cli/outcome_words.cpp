#include "cli/outcome_words.h"

namespace zep::cli {

std::string_view JsonWord(firmware::SlotOutcome outcome) {
  switch (outcome) {
    using enum firmware::SlotOutcome;
    case kNotUsed:
      return "not_used";
    case kDone:
      return "done";
    case kFailed:
      return "failed";
  }
  return {};
}

std::string_view JsonWord(upgrade::UpgradeOutcome outcome) {
  switch (outcome) {
    using enum upgrade::UpgradeOutcome;
    case kSucceeded:
      return "upgraded";
    case kUpToDate:
      return "up_to_date";
    case kAborted:
      return "aborted";
    case kCommsError:
      return "comms_error";
    case kFailed:
      return "failed";
  }
  return {};
}

}  // namespace zep::cli
