// The words that stand for facts in results for other programs: in lower case with underscores, the
// same in every language. The manual page names them all. How firmware went is in outcome_words.h,
// so that what knows no firmware needs none.
#pragma once

#include <cstdint>
#include <string_view>

#include "conversion/data_file_differences.h"
#include "link/port_set.h"
#include "platform/serial_list.h"
#include "radiodb/radio_models.h"
#include "services/user.h"

namespace zep::cli {

enum class DataFileKind;

std::string_view JsonWord(platform::SerialDeviceState state);
std::string_view JsonWord(link::PortState state);
std::string_view JsonWord(radiodb::RadioType type);
std::string_view JsonWord(services::Icon icon);
std::string_view JsonWord(DataFileKind kind);
std::string_view JsonWord(conversion::FileFact fact);
std::string_view JsonWord(conversion::ChangeReason::Kind reason);

// These are "unknown" for anything but what they name.

// The radio type that the second digit of a model code tells.
std::string_view RadioTypeWord(std::string_view model_code);
// The micro type of a radio, "A1" or "E1".
std::string_view MicroWord(std::string_view micro);
// The micro type of an image, 1 for A1 and 2 for E1.
std::string_view MicroWord(std::int32_t micro_type);
// The size of a flash memory or an image, 1 or 2 Mbit.
std::string_view FlashSizeWord(std::int32_t size);

}  // namespace zep::cli
