#include "upgrade/personality_conversion.h"

#include "platform/files.h"
#include "radiodb/data_files.h"
#include "radiodb/radio_identity.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/paths.h"
#include "upgrade/firmware_selection.h"
#include "upgrade/personality_steps.h"
#include "upgrade/saved_data.h"

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

// Runs work on the data and appends what it changes.
template <typename Work>
void Watch(PersonalityData& data, const VersionChange& versions, const std::string& reason,
           std::vector<Change>* changes, Work work) {
  if (changes == nullptr) return work();
  const PersonalityData before = data;
  work();
  for (std::size_t at = 0; at < data.networks.size(); ++at) {
    for (ItemDifference& difference :
         CompareItems(static_cast<int>(at + 1), before.networks[at].items, versions.old_number,
                      data.networks[at].items, versions.new_number)) {
      changes->push_back({std::move(difference), reason});
    }
  }
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
  std::optional<PersonalityData> defaults = ReadDatabase(session, path);
  // Kept: the words by which support knows it.
  if (!defaults) log.Log("Could read default settings ");
  return defaults;
}

bool ConvertPersonalityData(Session& session, UpgradeLog& log, const PersonalityRequest& request) {
  const auto fail = [&](Failure why) {
    if (session.failure == Failure::kNone) session.failure = why;
    return false;
  };
  const VersionChange versions{radiodb::VersionNumber(request.old_version),
                               radiodb::VersionNumber(request.new_version), request.new_version};
  const std::string new_text = "v" + std::to_string(versions.new_number);
  log.Log("Upgrading personality data v" + std::to_string(versions.old_number) + " -> " + new_text);
  if (versions.new_number < kOldestDatabase || versions.new_number > kNewestDatabase) {
    log.Log(new_text + " is not supported");
    services::NLSMsgBox(
        session,
        NLSFmt(session,
               "Personality data cannot be converted to the database version %0:s. Please use a "
               "newer version of this application.",
               {std::to_string(versions.new_number)}),
        {.icon = services::Icon::kCritical});
    return fail(Failure::kRefused);
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
  const int current = ConvertDatabase(session, log, versions, defaults->networks.front().items,
                                      *data, request.changes);
  if (versions.old_number != versions.new_number) {
    log.Log("Personality data version is now v" + std::to_string(current));
  } else {
    log.Log("Personality data is up-to-date");
  }
  return request.changes != nullptr || WriteDatabase(session, *data, request.converted_file);
}

std::string FindDefaultSettings(const Session& session) {
  const std::string name = DefaultSettingsName(session);
  const services::Settings& settings = session.settings;
  const std::string given = settings.AppGetUserSetting(settings.OwnType(), "DefaultDataPath", "");
  const std::string path = platform::IsFolder(given) ? services::AppMakePath(given, name) : given;
  if (platform::FileExists(path)) return path;

  services::AppLocation location;
  settings.AppGetAppLocation(services::AppType::kConventional, location);
  const std::string program = services::AppMakePath(location.folder, location.executable);
  return services::FolderOf(program) + name;
}

std::string ConvertedFileOf(const Session& session, const std::string& saved_file) {
  return UpgradeFolder(session) + services::FileTitleOf(saved_file);
}

int ConvertDatabase(Session& session, UpgradeLog& log, const VersionChange& versions,
                    const ItemArray& defaults, PersonalityData& data,
                    std::vector<Change>* changes) {
  int current = versions.old_number;
  for (const PersonalityStep& step : PersonalitySteps()) {
    if (versions.new_number < step.version || current >= step.version) continue;
    const std::string reason =
        NLSFmt(session, "conversion to database version %0:s", {VersionText(step.version)});
    Watch(data, {current, step.version, {}}, reason, changes, [&] {
      if (step.convert == nullptr) return;
      for (PersonalityNetwork& network : data.networks) {
        step.convert({session, log, network.items, defaults});
      }
    });
    current = step.version;
  }
  if (versions.old_number == versions.new_number) return current;
  Watch(data, {current, current, {}}, NLSFmt(session, "the new database version"), changes,
        [&] { RecordVersion(data.networks.front().items, versions.new_version); });
  return current;
}

}  // namespace zep::upgrade
