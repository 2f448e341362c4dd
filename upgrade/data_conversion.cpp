#include "upgrade/data_conversion.h"

#include <utility>

#include "conversion/checked_data.h"
#include "platform/files.h"
#include "radiodb/data_files.h"
#include "services/locate_file.h"
#include "services/messages.h"
#include "services/paths.h"
#include "upgrade/upgrade_notes.h"

namespace zep::upgrade {
namespace {

using conversion::CalibrationProblem;
using conversion::CalibrationResult;
using conversion::PersonalityData;
using radiodb::DataFile;
using services::Failure;
using services::NLSFmt;
using services::NLSMsgBox;
using services::Problem;
using services::Session;

std::string DefaultSettingsName(const Session& session) {
  return "default" + radiodb::DatabaseExtension(session, 1);
}

// The file at path, or the one that the user shows when it is not there. Nothing, with a line in
// the log, when there is none.
std::optional<std::string> LocateDefaultSettings(Session& session, UpgradeLog& log,
                                                 const std::string& path) {
  std::string folder = services::FolderOf(path);
  std::string name = services::FileTitleOf(path);
  if (GetFile(session, folder, name, services::FindTitle(session, name))) return folder + name;
  log.Log("Could not locate " + DefaultSettingsName(session));
  return std::nullopt;
}

Failure RefuseVersion(Session& session, int version) {
  const std::string_view text =
      version < conversion::kOldestDatabase
          ? services::NLSText(
                "Personality data cannot be converted to the database version %0:s. "
                "There are the versions 205 to 405.")
          : services::NLSText(
                "Personality data cannot be converted to the database version %0:s. "
                "Please use a newer version of this application.");
  return TellRefusal(session, NLSFmt(session, text, {std::to_string(version)}), Failure::kRefused);
}

// Logs what was found in the data and shows what asks for a box.
void Tell(Session& session, UpgradeLog& log, const std::vector<conversion::Remark>& remarks) {
  for (const conversion::Remark& remark : remarks) {
    log.Log(English(remark.text));
    if (remark.needs_box) NLSMsgBox(session, NLSFmt(session, remark.text));
  }
}

void TellProblem(Session& session, const CalibrationProblem& problem) {
  if (problem.step != nullptr) {
    NLSMsgBox(session, NLSFmt(session, "Conversion Error") + std::string(problem.step->error_text));
  } else {
    NLSMsgBox(session, NLSFmt(session, problem.text), {.title = "Conversion Error"});
  }
}

}  // namespace

Expected<DataFile> ReadCheckedDataFile(Session& session, const std::string& path) {
  return radiodb::ReadDataFile(path)
      .and_then(conversion::CheckedData)
      .map_error([&session](const Problem& problem) { return TellRefusal(session, problem); });
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

Expected<DefaultSettings> ReadDefaultSettings(Session& session, UpgradeLog& log,
                                              const std::string& path) {
  const std::optional<std::string> found =
      LocateDefaultSettings(session, log, path.empty() ? FindDefaultSettings(session) : path);
  if (!found) return tl::unexpected(Failure::kFile);
  const Expected<DataFile> file = ReadCheckedDataFile(session, *found);
  if (file && !file->IsCalibration())
    return DefaultSettings{*found, *conversion::ReadDatabase(*file)};
  if (file) {
    TellRefusal(session,
                NLSFmt(session,
                       "The file %0:s holds calibration data and no default settings. Please "
                       "choose another file.",
                       {*found}),
                Failure::kFile);
  }
  // Kept: the words by which support knows it.
  log.Log("Could read default settings ");
  return tl::unexpected(Failure::kFile);
}

std::string ConvertedFileOf(const Session& session, const std::string& saved_file) {
  return UpgradeFolder(session) + services::FileTitleOf(saved_file);
}

Expected<ConvertedPersonality> ConvertPersonalityData(Session& session, UpgradeLog& log,
                                                      const PersonalityRequest& request) {
  const int old_version = radiodb::VersionNumber(request.old_version);
  const int new_version = radiodb::VersionNumber(request.new_version);
  const std::string new_text = "v" + std::to_string(new_version);
  log.Log("Upgrading personality data v" + std::to_string(old_version) + " -> " + new_text);
  if (new_version < conversion::kOldestDatabase || new_version > conversion::kNewestDatabase) {
    log.Log(new_text + " is not supported");
    return tl::unexpected(RefuseVersion(session, new_version));
  }
  Expected<DefaultSettings> own_defaults;
  const DefaultSettings* defaults = request.defaults;
  if (defaults == nullptr) {
    own_defaults = ReadDefaultSettings(session, log, request.default_file);
    if (!own_defaults) return tl::unexpected(own_defaults.error());
    defaults = &*own_defaults;
  }
  log.Log("Default settings read from " + defaults->path);

  tl::expected<PersonalityData, Problem> data = conversion::ReadDatabase(request.saved);
  if (!data) {
    const Failure why = TellRefusal(session, data.error());
    log.Log("Could not locate " + services::FolderOf(request.saved.Path()));
    return tl::unexpected(why);
  }
  conversion::DatabaseResult result =
      ConvertDatabase({.old_version = old_version,
                       .new_version = new_version,
                       .version_text = request.new_version,
                       .defaults = defaults->data.networks.front().items,
                       .collect_changes = request.collect_changes},
                      *data);
  Tell(session, log, result.remarks);
  log.Log(old_version != new_version
              ? "Personality data version is now v" + std::to_string(result.version)
              : "Personality data is up-to-date");
  return ConvertedPersonality{
      WriteDatabase(*data, request.converted_file,
                    radiodb::DatabaseHeader(session, static_cast<int>(data->networks.size()))),
      std::move(result.remarks), std::move(result.changes)};
}

Expected<CalibrationResult> ConvertCalibrationFile(Session& session,
                                                   conversion::CalibrationConversion request,
                                                   const DataFile& saved) {
  request.header = radiodb::CalibrationHeader(session);
  return ConvertCalibration(request, saved)
      .map_error([&session](const CalibrationProblem& problem) {
        TellProblem(session, problem);
        return Failure::kFile;
      });
}

Expected<void> WriteConvertedFile(Session& session, const DataFile& file,
                                  std::string_view procedure) {
  platform::SystemError error = platform::MakeFolders(services::FolderOf(file.Path()));
  if (!error) error = platform::WriteWholeFile(file.Path(), file.Print());
  if (!error) return {};
  return tl::unexpected(TellRefusal(session, Problem{.error = error, .procedure = procedure}));
}

Expected<CalibrationResult> ConvertAndWriteCalibration(
    Session& session, const conversion::CalibrationConversion& request, const DataFile& saved) {
  Expected<CalibrationResult> converted = ConvertCalibrationFile(session, request, saved);
  if (!converted) return converted;
  if (const auto written = WriteConvertedFile(session, converted->file, "ConvertCalibrationFile");
      !written) {
    return tl::unexpected(written.error());
  }
  return converted;
}

}  // namespace zep::upgrade
