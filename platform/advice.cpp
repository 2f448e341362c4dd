#include "platform/advice.h"

#include <array>
#include <cstddef>

namespace zep::platform {
namespace {

struct Row {
  Advice advice;
  std::string_view text;
};

constexpr std::array kRows = {
    Row{Advice::kPortMissing,
        "There is no serial device %0:s on this computer. Please plug in the adapter of the "
        "programming lead, or choose a device from the list of ports."},
    Row{Advice::kPortNoHardware,
        "There is no hardware behind the name %0:s. Please choose another device from the list "
        "of ports."},
    Row{Advice::kPortIsConsole,
        "%0:s is the console of this computer. Please choose another device from the list of "
        "ports."},
    Row{Advice::kInUse,
        "Another program is using %0:s. Please close that program, then try again."},
    Row{Advice::kPortBusyWith,
        "%0:s is in use by %1:s. Please close that program, then try again."},
    Row{Advice::kPortJoinGroup,
        "%0:s is for members of the group %1:s. Please run \"sudo usermod -a -G %1:s %2:s\", then "
        "log out and log in again."},
    Row{Advice::kPortLogInAgain,
        "%0:s is for members of the group %1:s, which you joined after you had logged in. Please "
        "log out and log in again."},
    Row{Advice::kPortForbidden,
        "You are not allowed to use %0:s. Please ask the administrator of this computer for the "
        "right to read and write it."},
    Row{Advice::kNotSerialDevice,
        "%0:s is not a serial device. Please choose a device from the list of ports."},
    Row{Advice::kPortSettings,
        "%0:s does not accept the line settings \"%1:s\". Please use another adapter."},
    Row{Advice::kPortGone,
        "%0:s is gone: its adapter was unplugged or failed. Please plug it in again and repeat "
        "the job."},
    Row{Advice::kFileMissing,
        "There is no file %0:s. Please check its name and folder, or choose another file."},
    Row{Advice::kFolderMissing,
        "There is no folder %0:s. Please make the folder, or choose another one."},
    Row{Advice::kIsFolder, "%0:s is a folder. Please choose a file."},
    Row{Advice::kNotOrdinaryFile, "%0:s is not an ordinary file. Please choose another file."},
    Row{Advice::kFileTooLong,
        "%0:s is longer than %1:s bytes, so it cannot be the right file. Please choose another "
        "file."},
    Row{Advice::kFileForbidden,
        "You do not have the permission that this needs for %0:s. Please change the permissions "
        "of the file, or choose another file."},
    Row{Advice::kFolderForbidden,
        "You are not allowed to make files in the folder %0:s. Please change the permissions of "
        "the folder, or choose another one."},
    Row{Advice::kDiskFull,
        "There is no space left for %0:s. Please delete files that are not needed, or choose a "
        "folder on another disk."},
    Row{Advice::kDiskReadOnly,
        "The disk of %0:s can only be read. Please choose a folder on another disk."},
    Row{Advice::kSettingsDamaged,
        "The settings file %0:s is damaged. The settings that can be read are used; the damaged "
        "file is kept as %1:s when a setting is saved."},
    Row{Advice::kSettingsLocked,
        "Another program has been saving settings in %0:s for too long. Please close that program, "
        "then save the settings again."},
    Row{Advice::kSettingName,
        "The setting %1:s of %0:s has a name that cannot be stored. Please use letters and digits "
        "only."},
    Row{Advice::kProgramMissing,
        "The program %0:s cannot be started. Please check that it is installed."},
    Row{Advice::kOpenAddressByHand, "Please open %0:s in a web browser yourself."},
};
static_assert(kRows.size() == static_cast<std::size_t>(Advice::kCount));

// In the order of the enumeration.
constexpr auto kTexts = [] {
  std::array<std::string_view, kRows.size()> texts{};
  for (const Row& row : kRows) texts[static_cast<std::size_t>(row.advice)] = row.text;
  return texts;
}();

}  // namespace

std::string_view AdviceText(Advice advice) { return kTexts[static_cast<std::size_t>(advice)]; }

std::span<const std::string_view> AdviceTexts() { return kTexts; }

SystemError WithAdvice(SystemError error, Advice advice, std::vector<std::string> arguments) {
  error.advice = AdviceText(advice);
  error.advice_arguments = std::move(arguments);
  return error;
}

}  // namespace zep::platform
