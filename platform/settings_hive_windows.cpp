#include <windows.h>
#include <vector>

#include "platform/settings_hive.h"
#include "platform/wide_text.h"

namespace zep::platform {
namespace {

class RegistryHive final : public SettingsHive {
 public:
  explicit RegistryHive(HKEY root) : root_(root) {}

  // Older applications of the suite are 32-bit ones, whose values for all users Windows keeps in a
  // view of their own.
  std::optional<std::string> Read(std::string_view key, std::string_view name) const override {
    std::optional<std::string> value = Read(key, name, KEY_WOW64_64KEY);
    return value ? value : Read(key, name, KEY_WOW64_32KEY);
  }

  SystemError Write(std::string_view key, std::string_view name, std::string_view value) override {
    HKEY opened = nullptr;
    LSTATUS status = RegCreateKeyExW(root_, Widen(key).c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                                     nullptr, &opened, nullptr);
    if (status == ERROR_SUCCESS) {
      const std::wstring text = Widen(value);
      status = RegSetValueExW(opened, Widen(name).c_str(), 0, REG_SZ,
                              reinterpret_cast<const BYTE*>(text.c_str()),
                              static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
      RegCloseKey(opened);
    }
    if (status == ERROR_SUCCESS) return {};
    return MakeSystemError(static_cast<int>(status), std::string(key) + "\\" + std::string(name));
  }

 private:
  std::optional<std::string> Read(std::string_view key, std::string_view name, REGSAM view) const {
    HKEY opened = nullptr;
    const std::wstring value_name = Widen(name);
    if (RegOpenKeyExW(root_, Widen(key).c_str(), 0, KEY_QUERY_VALUE | view, &opened) !=
        ERROR_SUCCESS) {
      return std::nullopt;
    }
    DWORD type = 0;
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(opened, value_name.c_str(), nullptr, &type, nullptr, &size);
    std::vector<wchar_t> text(size / sizeof(wchar_t) + 1);
    if (status == ERROR_SUCCESS) {
      status = RegQueryValueExW(opened, value_name.c_str(), nullptr, nullptr,
                                reinterpret_cast<BYTE*>(text.data()), &size);
    }
    RegCloseKey(opened);
    if (status != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) return std::nullopt;
    return Narrow(text.data());
  }

  HKEY root_;
};

}  // namespace

std::unique_ptr<SettingsHive> OpenUserHive() {
  return std::make_unique<RegistryHive>(HKEY_CURRENT_USER);
}

std::unique_ptr<SettingsHive> OpenMachineHive() {
  return std::make_unique<RegistryHive>(HKEY_LOCAL_MACHINE);
}

}  // namespace zep::platform
