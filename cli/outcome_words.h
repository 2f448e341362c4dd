// The words for how work on firmware ended, in results for other programs (see json_words.h).
#pragma once

#include <string_view>

#include "firmware/transfer_engine.h"
#include "upgrade/automatic_upgrade.h"

namespace zep::cli {

std::string_view JsonWord(firmware::SlotOutcome outcome);
std::string_view JsonWord(upgrade::UpgradeOutcome outcome);

}  // namespace zep::cli
