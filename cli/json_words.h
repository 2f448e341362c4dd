// The words that stand for facts in results for other programs: in lower case with underscores, the
// same in every language. The manual page names them all. Those of firmware are in
// firmware_words.h, so that what knows no firmware needs none.
#pragma once

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

// The radio type that the second digit of a model code tells; "unknown" for any other digit.
std::string_view RadioTypeWord(std::string_view model_code);

}  // namespace zep::cli
