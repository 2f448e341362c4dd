#include <windows.h>
#include <array>
#include <shlobj.h>

#include "platform/program_paths.h"
#include "platform/wide_text.h"

namespace zep::platform {
namespace {

std::string KnownFolder(int number) {
  std::array<wchar_t, MAX_PATH> path{};
  if (SHGetFolderPathW(nullptr, number, nullptr, SHGFP_TYPE_CURRENT, path.data()) != S_OK)
    return {};
  return Narrow(path.data()) + "\\zepdlca";
}

}  // namespace

std::string ProgramFolder() {
  std::array<wchar_t, 4096> path{};
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  const std::string program = Narrow({path.data(), length});
  return program.substr(0, program.rfind('\\'));
}

std::string UserConfigFolder() { return KnownFolder(CSIDL_APPDATA); }

std::string UserDataFolder() { return KnownFolder(CSIDL_LOCAL_APPDATA); }

std::string UserStateFolder() { return KnownFolder(CSIDL_LOCAL_APPDATA); }

std::string MachineConfigFolder() { return KnownFolder(CSIDL_COMMON_APPDATA); }

std::string TemporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> path{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
  std::string folder = Narrow({path.data(), length});
  if (!folder.empty() && folder.back() == '\\') folder.pop_back();
  return folder;
}

}  // namespace zep::platform
