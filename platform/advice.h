// Every cause and next step that an error of platform/ can bring along. English, to be translated
// where it is shown.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system_error.h"

namespace zep::platform {

enum class Advice {
  kPortMissing,        // %0 device
  kPortNoHardware,     // %0 device
  kPortIsConsole,      // %0 device
  kInUse,              // %0 device or file
  kPortBusyWith,       // %0 device, %1 program
  kPortJoinGroup,      // %0 device, %1 group, %2 user
  kPortLogInAgain,     // %0 device, %1 group
  kPortForbidden,      // %0 device
  kNotSerialDevice,    // %0 device
  kPortSettings,       // %0 device, %1 line settings
  kPortGone,           // %0 device
  kFileMissing,        // %0 file
  kFolderMissing,      // %0 folder
  kIsFolder,           // %0 folder
  kNotOrdinaryFile,    // %0 file
  kFileTooLong,        // %0 file, %1 the most bytes allowed
  kFileForbidden,      // %0 file
  kFolderForbidden,    // %0 folder
  kDiskFull,           // %0 file
  kDiskReadOnly,       // %0 file
  kSettingsDamaged,    // %0 file, %1 the name under which the damaged file is kept
  kSettingsLocked,     // %0 file
  kSettingName,        // %0 key, %1 name
  kProgramMissing,     // %0 program
  kOpenAddressByHand,  // %0 web address
  kCount
};

// The text, with placeholders.
std::string_view AdviceText(Advice advice);

// All the texts, for a check that each has its translations.
std::span<const std::string_view> AdviceTexts();

// The error with this advice.
SystemError WithAdvice(SystemError error, Advice advice, std::vector<std::string> arguments = {});

}  // namespace zep::platform
