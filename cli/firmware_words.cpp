#include "cli/firmware_words.h"

namespace zep::cli {

std::string_view JsonWord(firmware::MicroType micro) {
  switch (micro) {
    case firmware::MicroType::kA1:
      return "a1";
    case firmware::MicroType::kE1:
      return "e1";
    case firmware::MicroType::kUnknown:
      break;
  }
  return "unknown";
}

std::string_view JsonWord(firmware::FlashSize size) {
  switch (size) {
    case firmware::FlashSize::k1Mbit:
      return "1_mbit";
    case firmware::FlashSize::k2Mbit:
      return "2_mbit";
    case firmware::FlashSize::kNone:
    case firmware::FlashSize::kUnknown:
      break;
  }
  return "unknown";
}

std::string_view JsonWord(firmware::RadioOutcome outcome) {
  switch (outcome) {
    case firmware::RadioOutcome::kNone:
      return "not_used";
    case firmware::RadioOutcome::kDone:
      return "done";
    case firmware::RadioOutcome::kFailed:
      break;
  }
  return "failed";
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
