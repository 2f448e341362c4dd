#include "services/settings.h"

#include <charconv>
#include <optional>

#include "platform/files.h"
#include "services/paths.h"
#include "services/resource_ids.h"

namespace zep::services {
namespace {

// Stands for a user's value that is missing, to tell it from the machine's.
constexpr std::string_view kNotDefined = "<<VALUENOTDEFINED>>";

bool IsApplication(AppType type) {
  return type >= AppType::kCalibration && type <= AppType::kTrunked;
}

std::optional<int> ReadNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

Settings::Settings(platform::SettingsHive& user_hive, platform::SettingsHive& machine_hive,
                   const StringTable& strings, ApplicationLog& log)
    : user_hive_(user_hive), machine_hive_(machine_hive), strings_(strings), log_(log) {}

std::string Settings::AppGetRegKey(AppType type) const {
  switch (type) {
    case AppType::kCalibration:
      return "Calibration";
    case AppType::kDownload:
      return "Download";
    case AppType::kConventional:
      return "Conventional";
    case AppType::kTrunked:
      return "Trunked";
    case AppType::kRoot:
      return "";
  }
  log_.Error("Application::AppGetRegKey - Invalid AppType");
  return "";
}

AppType Settings::OwnType() const {
  const auto number = static_cast<AppType>(ReadNumber(strings_.Get(kResOwnType)).value_or(-1));
  if (IsApplication(number)) return number;
  log_.Error("Application::AppGetRegKey - Invalid AppType");
  return AppType::kDownload;
}

std::string Settings::Key(AppType type) const {
  const std::string subkey = AppGetRegKey(type);
  const std::string& root = strings_.Get(kResRegistryRoot);
  return subkey.empty() ? root : root + "\\" + subkey;
}

std::string Settings::Lookup(const std::string& key, std::string_view name,
                             std::string_view default_value) const {
  std::string value = RegGetSetting(user_hive_, key, name, kNotDefined);
  if (value.empty() || value == kNotDefined)
    value = RegGetSetting(machine_hive_, key, name, default_value);
  return value.empty() ? std::string(default_value) : value;
}

std::string Settings::AppGetUserSetting(AppType type, std::string_view name,
                                        std::string_view default_value) const {
  return Lookup(Key(type), name, default_value);
}

std::string Settings::AppGetSharedUserSetting(std::string_view name,
                                              std::string_view default_value) const {
  return Lookup(Key(AppType::kRoot), name, default_value);
}

int Settings::AppGetUserNumber(AppType type, std::string_view name, int default_value) const {
  const std::string key = Key(type);
  for (const platform::SettingsHive* hive : {&user_hive_, &machine_hive_}) {
    if (const auto number = ReadNumber(RegGetSetting(*hive, key, name, ""))) return *number;
  }
  return default_value;
}

bool Settings::Save(const std::string& key, std::string_view name, std::string_view value) {
  return Lookup(key, name, kNotDefined) == value || RegSaveSetting(user_hive_, key, name, value);
}

bool Settings::AppSaveUserSetting(AppType type, std::string_view name, std::string_view value) {
  return Save(Key(type), name, value);
}

bool Settings::AppSaveSharedUserSetting(std::string_view name, std::string_view value) {
  return Save(Key(AppType::kRoot), name, value);
}

bool Settings::AppGetAppLocation(AppType type, AppLocation& location) const {
  if (type < AppType::kCalibration || type > AppType::kRoot) {
    log_.Error("Application::AppGetAppLocation - Invalid AppType");
    return false;
  }
#ifdef _WIN32
  constexpr int folder = kResSuiteFolderWindows;
  constexpr int relative_path = kResExecutableWindows;
#else
  constexpr int folder = kResSuiteFolder;
  constexpr int relative_path = kResExecutable;
#endif
  const std::string executable =
      IsApplication(type) ? strings_.Get(relative_path + static_cast<int>(type)) : "";
  location.folder = AppGetUserSetting(type, "ApplicationPath", strings_.Get(folder));
  location.executable = AppGetUserSetting(type, "Application", executable);
  return !location.executable.empty() &&
         platform::FileExists(AppMakePath(location.folder, location.executable));
}

void Settings::AppSaveAppLocation(AppType type, const AppLocation& location) {
  AppSaveUserSetting(type, "ApplicationPath", location.folder);
  AppSaveUserSetting(type, "Application", location.executable);
}

std::string Settings::RegGetSetting(const platform::SettingsHive& hive, std::string_view key,
                                    std::string_view name, std::string_view default_value) const {
  const std::optional<std::string> value = hive.Read(key, name);
  return value ? value->substr(0, value->find('\0')) : std::string(default_value);
}

bool Settings::RegSaveSetting(platform::SettingsHive& hive, std::string_view key,
                              std::string_view name, std::string_view value) {
  const platform::SystemError error = hive.Write(key, name, value);
  if (!error) return true;
  write_problem_ = error;
  log_.Error("Application::RegSaveSetting - " + std::string(name) + ": " +
             std::to_string(error.number) + " " + error.description);
  return false;
}

}  // namespace zep::services
