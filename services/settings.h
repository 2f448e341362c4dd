// The user's settings: read per user with a machine-wide fallback, written per user and only when
// they change.
#pragma once

#include <string>
#include <string_view>

#include "platform/settings_hive.h"
#include "services/log.h"
#include "services/string_table.h"

namespace zep::services {

// The applications of the suite, and kRoot for the settings that they share.
enum class AppType { kCalibration = 0, kDownload = 1, kConventional = 2, kTrunked = 3, kRoot = 4 };

// Where an application of the suite is.
struct AppLocation {
  std::string folder;
  std::string executable;
};

class Settings {
 public:
  // All of them outlive the settings.
  Settings(platform::SettingsHive& user_hive, platform::SettingsHive& machine_hive,
           const StringTable& strings, ApplicationLog& log);

  // The subkey of an application below the suite's root key; empty for kRoot and, with a line in
  // the log, for any other value.
  std::string AppGetRegKey(AppType type) const;

  // This program's own application type, which its string table holds.
  AppType OwnType() const;

  // The user's value, else the machine's, else the default. An empty value counts as missing.
  std::string AppGetUserSetting(AppType type, std::string_view name,
                                std::string_view default_value) const;
  std::string AppGetSharedUserSetting(std::string_view name, std::string_view default_value) const;
  // The same as a number; a value that is no number counts as missing.
  int AppGetUserNumber(AppType type, std::string_view name, int default_value) const;

  // True when stored or unchanged.
  bool AppSaveUserSetting(AppType type, std::string_view name, std::string_view value);
  bool AppSaveSharedUserSetting(std::string_view name, std::string_view value);

  // Fills in location and returns true when the application's executable exists. False, with the
  // folder and executable where it was expected, when it does not.
  bool AppGetAppLocation(AppType type, AppLocation& location) const;
  // Keeps the place that the user has shown.
  void AppSaveAppLocation(AppType type, const AppLocation& location);

  // The string value of one hive, or the default when there is none; cut at the first NUL.
  std::string RegGetSetting(const platform::SettingsHive& hive, std::string_view key,
                            std::string_view name, std::string_view default_value) const;
  // True on success; a failure is logged.
  bool RegSaveSetting(platform::SettingsHive& hive, std::string_view key, std::string_view name,
                      std::string_view value);

  // The last write that failed, for the user to be told; number 0 when all went well.
  const platform::SystemError& WriteProblem() const { return write_problem_; }

 private:
  std::string Key(AppType type) const;
  std::string Lookup(const std::string& key, std::string_view name,
                     std::string_view default_value) const;
  bool Save(const std::string& key, std::string_view name, std::string_view value);

  platform::SettingsHive& user_hive_;
  platform::SettingsHive& machine_hive_;
  const StringTable& strings_;
  ApplicationLog& log_;
  platform::SystemError write_problem_;
};

}  // namespace zep::services
