// The words for facts of firmware and for how work on it ended, in results for other programs (see
// json_words.h).
#pragma once

#include <string_view>

#include "firmware/transfer_engine.h"
#include "upgrade/automatic_upgrade.h"

namespace zep::cli {

std::string_view JsonWord(firmware::MicroType micro);
std::string_view JsonWord(firmware::FlashSize size);
std::string_view JsonWord(firmware::RadioOutcome outcome);
std::string_view JsonWord(upgrade::UpgradeOutcome outcome);

}  // namespace zep::cli
