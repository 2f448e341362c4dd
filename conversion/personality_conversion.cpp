#include "upgrade/personality_conversion.h"

#include "platform/files.h"
#include "radiodb/data_file_reader.h"
#include "radiodb/data_files.h"
#include "radiodb/radio_identity.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/paths.h"
#include "upgrade/checked_data_file.h"
#include "upgrade/firmware_selection.h"
#include "upgrade/personality_steps.h"
#include "upgrade/upgrade_notes.h"

namespace zep::upgrade {
namespace {

using services::Failure;
using services::NLSFmt;
using services::Session;

// "4.02"
std::string VersionText(int version) {
  return std::to_string(version / 100) + "." +
         services::PadString(std::to_string(version % 100), services::PadSide::kLeft, 2, "0");
}

std::string DefaultSettingsName(const Session& session) {
  return "default" + radiodb::DatabaseExtension(session, 1);
}

// What a step, or the recording of the version, has made of the data before it.
struct Stage {
  const PersonalityData& before;
  int old_version;
  int new_version;
  std::string reason;
};

void CollectChanges(const Stage& stage, const PersonalityData& data, std::vector<Change>& changes) {
  for (std::size_t at = 0; at < data.networks.size(); ++at) {
    for (ItemDifference& difference :
         CompareItems(static_cast<int>(at + 1), stage.before.networks[at].items, stage.old_version,
                      data.networks[at].items, stage.new_version)) {
      changes.push_back({std::move(difference), stage.reason});
    }
  }
}

void ApplyStep(Session& session, UpgradeLog& log, const PersonalityStep& step,
               const ItemArray& defaults, PersonalityData& data) {
  if (step.convert == nullptr) return;
  for (PersonalityNetwork& network : data.networks) {
    step.convert({session, log, network.items, defaults});
  }
}

bool RefuseVersion(Session& session, int version) {
  const std::string_view text =
      version < kOldestDatabase
          ? services::NLSText(
                "Personality data cannot be converted to the database version %0:s. "
                "There are the versions 205 to 405.")
          : services::NLSText(
                "Personality data cannot be converted to the database version %0:s. "
                "Please use a newer version of this application.");
  return Refuse(session, NLSFmt(session, text, {std::to_string(version)}), Failure::kRefused);
}

}  // namespace

std::optional<std::string> LocateDefaultSettings(Session& session, UpgradeLog& log,
                                                 const std::string& path) {
  std::string folder = services::FolderOf(path);
  std::string name = services::FileTitleOf(path);
  if (GetFile(session, folder, name, FindTitle(session, name))) return folder + name;
  log.Log("Could not locate " + DefaultSettingsName(session));
  return std::nullopt;
}

std::optional<PersonalityData> ReadDefaultSettings(Session& session, UpgradeLog& log,
                                                   const std::string& path) {
  const std::optional<radiodb::DataFile> file = ReadCheckedDataFile(session, path);
  const std::optional<radiodb::FileIdentity> identity =
      file ? radiodb::FindFileIdentity(*file) : std::nullopt;
  const bool is_calibration = identity && identity->is_calibration;
  if (is_calibration) {
    Refuse(session,
           NLSFmt(session,
                  "The file %0:s holds calibration data and no default settings. Please choose "
                  "another file.",
                  {path}),
           Failure::kFile);
  }
  if (file && !is_calibration) return ItemsOf(session, *file);
  // Kept: the words by which support knows it.
  log.Log("Could read default settings ");
  return std::nullopt;
}

bool ConvertPersonalityData(Session& session, UpgradeLog& log, const PersonalityRequest& request) {
  const auto fail = [&](Failure why) {
    session.KeepCause(why);
    return false;
  };
  const int old_version = radiodb::VersionNumber(request.old_version);
  const int new_version = radiodb::VersionNumber(request.new_version);
  const std::string new_text = "v" + std::to_string(new_version);
  log.Log("Upgrading personality data v" + std::to_string(old_version) + " -> " + new_text);
  if (new_version < kOldestDatabase || new_version > kNewestDatabase) {
    log.Log(new_text + " is not supported");
    return RefuseVersion(session, new_version);
  }
  const std::optional<std::string> default_file = LocateDefaultSettings(
      session, log,
      request.default_file.empty() ? FindDefaultSettings(session) : request.default_file);
  if (!default_file) return fail(Failure::kFile);
  const std::optional<PersonalityData> defaults = ReadDefaultSettings(session, log, *default_file);
  if (!defaults) return fail(Failure::kFile);
  log.Log("Default settings read from " + *default_file);

  std::optional<PersonalityData> data = ReadDatabase(session, request.saved_file);
  if (!data) {
    log.Log("Could not locate " + services::FolderOf(request.saved_file));
    return fail(Failure::kFile);
  }
  const int current = ConvertDatabase(session, log,
                                      {.old_version = old_version,
                                       .new_version = new_version,
                                       .version_text = request.new_version,
                                       .defaults = defaults->networks.front().items,
                                       .changes = request.changes},
                                      *data);
  log.Log(old_version != new_version ? "Personality data version is now v" + std::to_string(current)
                                     : "Personality data is up-to-date");
  if (request.changes != nullptr) return true;
  if (WriteDatabase(session, *data, request.converted_file)) return true;
  log.Log("Could not write " + request.converted_file);
  return false;
}

std::string FindDefaultSettings(const Session& session) {
  const std::string name = DefaultSettingsName(session);
  const services::Settings& settings = session.settings;
  const std::string given = settings.AppGetUserSetting(settings.OwnType(), "DefaultDataPath", "");
  std::string path = platform::IsFolder(given) ? services::AppMakePath(given, name) : given;
  if (platform::FileExists(path)) return path;

  services::AppLocation location;
  settings.AppGetAppLocation(services::AppType::kConventional, location);
  const std::string program = services::AppMakePath(location.folder, location.executable);
  return services::FolderOf(program) + name;
}

std::string ConvertedFileOf(const Session& session, const std::string& saved_file) {
  return UpgradeFolder(session) + services::FileTitleOf(saved_file);
}

int ConvertDatabase(Session& session, UpgradeLog& log, const DatabaseConversion& conversion,
                    PersonalityData& data) {
  // Only a trial run compares.
  PersonalityData before;
  const auto begin = [&] {
    if (conversion.changes != nullptr) before = data;
  };
  const auto end = [&](int from, int to, const std::string& reason) {
    if (conversion.changes == nullptr) return;
    CollectChanges({before, from, to, reason}, data, *conversion.changes);
  };
  int current = conversion.old_version;
  for (const PersonalityStep& step : PersonalitySteps()) {
    if (conversion.new_version < step.version || current >= step.version) continue;
    begin();
    ApplyStep(session, log, step, conversion.defaults, data);
    end(current, step.version,
        NLSFmt(session, "conversion to database version %0:s", {VersionText(step.version)}));
    current = step.version;
  }
  if (conversion.old_version != conversion.new_version) {
    begin();
    RecordVersion(data.networks.front().items, conversion.version_text);
    end(current, current, NLSFmt(session, "the new database version"));
  }
  return current;
}

}  // namespace zep::upgrade
