// A saved data file brought from its database version to the one that a radio has now, with values
// that the newer database defines taken from a file of default settings.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "services/session.h"
#include "upgrade/item_differences.h"
#include "upgrade/personality_data.h"
#include "upgrade/upgrade_log.h"

namespace zep::upgrade {

// The oldest and the newest database version that data can be converted to.
inline constexpr int kOldestDatabase = 205;
inline constexpr int kNewestDatabase = 405;

struct PersonalityRequest {
  // As a radio reports them: four characters, "0402" is 4.02.
  std::string old_version;
  std::string new_version;
  // Full names.
  std::string saved_file;
  std::string converted_file;
  // Where the default settings are; empty: where the suite keeps them (FindDefaultSettings).
  std::string default_file;
  // A trial run: gets what would change, and nothing is written.
  std::vector<Change>* changes = nullptr;
};

// Converts the file. Each outcome is logged; false when there is no converted file, with
// session.failure set.
bool ConvertPersonalityData(services::Session& session, UpgradeLog& log,
                            const PersonalityRequest& request);

// The file that the user's setting DefaultDataPath names (or default.ops in the folder that it
// names), when it exists; else default.ops in the folder of the programming application.
std::string FindDefaultSettings(const services::Session& session);

// The file at path, or the one that the user shows when it is not there. Nothing, with a line in
// the log, when there is none.
std::optional<std::string> LocateDefaultSettings(services::Session& session, UpgradeLog& log,
                                                 const std::string& path);

// Reads default settings. Nothing, with a line in the log, when they cannot be used.
std::optional<PersonalityData> ReadDefaultSettings(services::Session& session, UpgradeLog& log,
                                                   const std::string& path);

// Where a saved data file's converted twin is: under its name in the folder "upgrade" of the
// application folder.
std::string ConvertedFileOf(const services::Session& session, const std::string& saved_file);

struct DatabaseConversion {
  int old_version;  // numbers: 402 is 4.02
  int new_version;
  std::string version_text;  // of the new one, as a radio reports it
  const ItemArray& defaults;
  std::vector<Change>* changes = nullptr;  // gets what changes
};

// Takes the data through the steps from one version to the other and records the new one in its
// item 0. Returns the version that the steps have led to.
int ConvertDatabase(services::Session& session, UpgradeLog& log,
                    const DatabaseConversion& conversion, PersonalityData& data);

}  // namespace zep::upgrade
