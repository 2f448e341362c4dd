#include <windows.h>

#include "platform/system_error.h"
#include "platform/system_version.h"

namespace zep::platform {

SystemVersion GetSystemVersion() {
  SystemVersion version;
  // The system tells its true version only through the library that every process has loaded.
  using RtlGetVersion = LONG(WINAPI*)(OSVERSIONINFOW*);
  const HMODULE library = GetModuleHandleW(L"ntdll.dll");
  const auto get_version = reinterpret_cast<RtlGetVersion>(
      reinterpret_cast<void*>(GetProcAddress(library, "RtlGetVersion")));
  OSVERSIONINFOW info{};
  info.dwOSVersionInfoSize = sizeof info;
  if (get_version == nullptr || get_version(&info) != 0) {
    version.error = MakeSystemError(ERROR_PROC_NOT_FOUND, "RtlGetVersion");
    return version;
  }
  version.family = static_cast<SystemFamily>(info.dwPlatformId);
  version.description = "Windows " + std::to_string(info.dwMajorVersion) + "." +
                        std::to_string(info.dwMinorVersion) + "." +
                        std::to_string(info.dwBuildNumber);
  SYSTEM_INFO system{};
  GetNativeSystemInfo(&system);
  if (system.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_INTEL)
    version.processor_type = static_cast<int>(system.dwProcessorType);
  return version;
}

}  // namespace zep::platform
