#include "radiodb/data_files.h"

#include <algorithm>

#include "services/messages.h"
#include "services/resource_ids.h"

namespace zep::radiodb {
namespace {

using services::Failure;
using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;
using services::Session;

constexpr std::string_view kDataPathSetting = "DefaultDataFilePath";

bool WritesDatabase(TransferKind kind) { return kind != TransferKind::kCalibration; }

bool WritesCalibration(TransferKind kind) {
  return kind == TransferKind::kCalibration || kind == TransferKind::kBoth;
}

// A folder setting is relative to the application folder, also when it begins with a backslash, as
// it does by default.
std::string FolderSetting(const Session& session, std::string_view name,
                          std::string_view default_value) {
  std::string folder =
      session.settings.AppGetUserSetting(session.settings.OwnType(), name, default_value);
  if (services::IsAbsolute(folder)) return services::WithSeparator(folder);
  std::ranges::replace(folder, '\\', services::kPathSeparator);
  folder.erase(0, folder.find_first_not_of("\\/"));
  return services::WithSeparator(services::AppMakePath(session.paths.application_folder, folder));
}

// The texts of a radio are its own; only what no file name may hold is replaced.
std::string FileNameOf(std::string text) {
  std::ranges::replace_if(
      text,
      [](char character) {
        constexpr std::string_view kForbidden = "\\/:*?\"<>|\x7F";
        return static_cast<unsigned char>(character) < ' ' ||
               kForbidden.find(character) != std::string_view::npos;
      },
      '_');
  return text;
}

std::vector<std::string> Header(const Session& session, std::vector<std::string> titles) {
  const services::StringTable& strings = session.strings;
  std::vector<std::string> lines = {std::string(kHeaderStart)};
  lines.insert(lines.end(), titles.begin(), titles.end());
  lines.push_back("Saved with the " + strings.Get(services::kResApplicationTitle) + " " +
                  strings.Get(services::kResVersion));
  lines.insert(lines.end(), {"###", std::string(kHeaderEnd)});
  return lines;
}

bool UserSaysYes(Session& session, std::string_view question) {
  const services::Answer answer =
      NLSMsgBox(session, question,
                {.icon = Icon::kQuestion, .buttons = services::Buttons::kYesNo, .cautious = true});
  if (answer == services::Answer::kYes) return true;
  session.RequestCancel(Failure::kRefused);
  return false;
}

// The user's choice; empty when there was none.
std::string ChooseDataFile(const RadioDb& db) {
  Session& session = db.link.session;
  const bool several = db.number_of_networks > 1;
  const std::optional<std::string> file = session.user.AskSaveFile(
      {.title = NLSFmt(session, several ? NLSText("Select Multiple Network Data File to save to")
                                        : NLSText("Select Data File to save to")),
       .filter = NLSFmt(session, session.strings.Get(several ? services::kResMultiNetworkFileFilter
                                                             : services::kResDataFileFilter)),
       .folder = DefaultDataFilePath(session),
       .name = DefaultDatabaseName(session, db.identity)});
  return file.value_or("");
}

bool ChooseFileWithUser(RadioDb& db) {
  Session& session = db.link.session;
  const std::string file = ChooseDataFile(db);
  if (file.empty()) {
    session.RequestCancel();
    return false;
  }
  SaveDefaultDataFilePath(session, file);
  if (platform::FileExists(file) && !UserSaysYes(session, NLSText("File exists overwrite?")))
    return false;
  db.data_file = file;
  return true;
}

// The full name in a folder that is made when missing; empty when that is not possible.
std::string PathInFolder(Session& session, const std::string& folder, const std::string& name) {
  if (const platform::SystemError error = platform::MakeFolders(folder)) {
    ReportError(session, error, "MakeFolders");
    session.RequestCancel(Failure::kFile);
    return {};
  }
  return services::AppMakePath(folder, name);
}

// Whether the file may be made, or made anew.
bool MayMake(const RadioDb& db, const std::string& path, std::string_view question) {
  if (path.empty()) return false;
  const bool is_in_use = std::ranges::any_of(
      db.files_in_use, [&](const std::string& file) { return platform::IsSameFile(file, path); });
  if (is_in_use) {
    return Refuse(
        db.link.session,
        NLSFmt(db.link.session,
               "An upgrade that is running uses %0:s. Please wait until it has ended.", {path}),
        Failure::kRefused);
  }
  return db.overwrite_allowed || !platform::FileExists(path) ||
         UserSaysYes(db.link.session, question);
}

bool ChooseDefaultDatabase(RadioDb& db) {
  Session& session = db.link.session;
  db.data_file = PathInFolder(
      session, db.database_folder.empty() ? DatabaseFolder(session) : db.database_folder,
      DefaultDatabaseName(session, db.identity));
  return MayMake(db, db.data_file, NLSText("Database file for this radio exists, overwrite?"));
}

bool ChooseDefaultCalibration(RadioDb& db) {
  Session& session = db.link.session;
  db.calibration_file = db.chosen_calibration_file;
  if (db.calibration_file.empty()) {
    db.calibration_file = PathInFolder(
        session, db.calibration_folder.empty() ? CalibrationFolder(session) : db.calibration_folder,
        DefaultCalibrationName(session, db.identity));
  }
  return MayMake(db, db.calibration_file,
                 NLSText("Calibration file for this radio exists, overwrite?"));
}

// All questions come before the first file is made.
bool ChooseFiles(RadioDb& db) {
  if (db.transfer_kind == TransferKind::kChosenFile) return ChooseFileWithUser(db);
  if (WritesDatabase(db.transfer_kind) && !ChooseDefaultDatabase(db)) return false;
  return !WritesCalibration(db.transfer_kind) || ChooseDefaultCalibration(db);
}

bool TellOfFile(Session& session, const platform::SystemError& error, std::string_view procedure) {
  ReportError(session, error, procedure);
  session.RequestCancel(Failure::kFile);
  return false;
}

bool Begin(Session& session, FileToMake& file, const std::string& path,
           const std::vector<std::string>& header, const std::optional<Record>& identity_record) {
  file.data = DataFile(path, header);
  if (identity_record) file.data.Add(*identity_record);
  const platform::SystemError error = file.out.Open(path);
  return !error || TellOfFile(session, error, "OpenReadFiles");
}

// Writes the file; nothing where there is none. What is to be told when it is not complete goes
// into incomplete. False when it could not be stored.
bool End(Session& session, FileToMake& file, bool complete, std::string& incomplete) {
  if (!file.out.IsOpen()) return true;
  const tl::expected<std::string, services::Problem> former =
      WriteDataFile(file.data, file.out, "EndReadFiles");
  if (!former) return TellOfFile(session, former.error().error, former.error().procedure);
  if (complete) return true;
  if (!incomplete.empty()) incomplete += "\n";
  incomplete += NLSFmt(session,
                       "%0:s is incomplete, because reading the radio ended early. Please "
                       "read the radio again.",
                       {file.data.Path()});
  if (!former->empty())
    incomplete += " " + NLSFmt(session, "What it held before is kept in %0:s.", {*former});
  return true;
}

// What a file's or a radio's type is called where the two are compared: here the conventional
// generations differ.
std::string TypeText(const Session& session, int type) {
  return NLSFmt(session, type == 3 ? NLSText("Conventional II") : ReturnTypeStringFromEnum(type));
}

bool RefuseAsCorrupt(Session& session, const std::string& reason) {
  return Refuse(session, NLSFmt(session, "Data file is corrupt.") + "\n" + reason, Failure::kFile);
}

bool CheckModel(const RadioDb& db, const FileIdentity& file) {
  Session& session = db.link.session;
  const int type = file.type_digit - '0';
  if (type != static_cast<int>(db.identity.type)) {
    return Refuse(
        session,
        NLSFmt(session, "Can not program a %0:s file into a %1:s radio.",
               {TypeText(session, type), TypeText(session, static_cast<int>(db.identity.type))}),
        Failure::kRefused);
  }
  const int tier = LookUpRadioModel(session, file.model_code).value_or(RadioModel{}).tier;
  if (tier == db.identity.tier) return true;
  return Refuse(
      session,
      NLSFmt(session, "Can not program a %0:s as a %1:s",
             {AppGetRadioModel(session, tier), AppGetRadioModel(session, db.identity.tier)}),
      Failure::kRefused);
}

// A calibration file is for calibration transfers; it knows no database version.
bool CheckVersion(const RadioDb& db, const DataFile& file, const FileIdentity& identity) {
  Session& session = db.link.session;
  if (identity.is_calibration) {
    if (db.transfer_kind == TransferKind::kCalibration) return true;
    return Refuse(
        session,
        NLSFmt(session, "%0:s is a calibration file. Please choose a data file of the radio.",
               {file.Path()}),
        Failure::kRefused);
  }
  if (VersionNumber(identity.database_version) == VersionNumber(db.identity.database_version))
    return true;
  return Refuse(
      session,
      NLSFmt(session, "Database versions incompatible. Please use the Programming Application"),
      Failure::kRefused);
}

// A radio that refuses a record in the middle of its database would be left half programmed.
bool CheckRecords(Session& session, const DataFile& file) {
  const std::vector<Finding> findings = file.Findings();
  if (findings.empty()) return true;
  std::string text = NLSFmt(
      session, "%0:s is damaged and is not programmed. Please choose another file.", {file.Path()});
  text += "\n" + NLSFmt(session, FindingText(findings.front()));
  if (const std::size_t more = findings.size() - 1; more > 0)
    text += "\n" + NLSFmt(session, "Faults besides this one: %0:s.", {std::to_string(more)});
  return Refuse(session, text, Failure::kFile);
}

}  // namespace

std::string DatabaseFolder(const Session& session) {
  return FolderSetting(session, "MainDBLocation", R"(\database\)");
}

std::string CalibrationFolder(const Session& session) {
  return FolderSetting(session, "CalibrationDBLocation", R"(\calibration\)");
}

std::string DefaultDataFilePath(const Session& session) {
  return services::WithSeparator(session.settings.AppGetUserSetting(
      session.settings.OwnType(), kDataPathSetting,
      services::AppMakePath(session.paths.application_folder, "Data Files")));
}

void SaveDefaultDataFilePath(Session& session, const std::string& file) {
  const std::string folder = services::FolderOf(file);
  if (folder.empty()) return;
  session.settings.AppSaveUserSetting(session.settings.OwnType(), kDataPathSetting, folder);
}

const std::string& DatabaseExtension(const Session& session, int networks) {
  return session.strings.Get(networks > 1 ? services::kResMultiNetworkFileExtension
                                          : services::kResDataFileExtension);
}

std::string DefaultDatabaseName(const Session& session, const RadioIdentity& identity) {
  return FileNameOf(identity.serial_number + "v" + identity.database_version) +
         DatabaseExtension(session, identity.networks);
}

std::string DefaultCalibrationName(const Session& session, const RadioIdentity& identity) {
  return FileNameOf(identity.serial_number + "v" + identity.calibration_version) +
         session.strings.Get(services::kResCalibrationFileExtension);
}

std::vector<std::string> DatabaseHeader(const Session& session, int networks) {
  const services::StringTable& strings = session.strings;
  if (networks < 2) return Header(session, {strings.Get(services::kResDataFileTitle)});
  return Header(session, {strings.Get(services::kResMultiNetworkFileTitle),
                          "Contains data for " + std::to_string(networks) + " networks"});
}

std::vector<std::string> CalibrationHeader(const Session& session) { return Header(session, {}); }

bool OpenReadFiles(RadioDb& db, ReadFiles& files) {
  Session& session = db.link.session;
  if (!ChooseFiles(db)) return false;
  if (WritesDatabase(db.transfer_kind) &&
      !Begin(session, files.database, db.data_file, DatabaseHeader(session, db.number_of_networks),
             DatabaseIdentityRecord(db.identity))) {
    return false;
  }
  return !WritesCalibration(db.transfer_kind) ||
         Begin(session, files.calibration, db.calibration_file, CalibrationHeader(session),
               CalibrationIdentityRecord(db.identity));
}

bool EndReadFiles(RadioDb& db, ReadFiles& files, bool complete) {
  Session& session = db.link.session;
  std::string incomplete;
  const bool database = End(session, files.database, complete, incomplete);
  const bool calibration = End(session, files.calibration, complete, incomplete);
  if (!incomplete.empty()) NLSMsgBox(session, incomplete, {.icon = Icon::kCritical});
  db.data = std::move(files.database.data);
  db.calibration = std::move(files.calibration.data);
  return complete && database && calibration;
}

bool CheckFileAgainstRadio(const RadioDb& db, const DataFile& file) {
  Session& session = db.link.session;
  if (file.Size() < kSmallestDataFile) {
    return RefuseAsCorrupt(
        session, NLSFmt(session, "%0:s is too short for a data file. Please choose another file.",
                        {file.Path()}));
  }
  const std::optional<FileIdentity>& identity = file.Identity();
  if (!identity || identity->type_digit < '0' || identity->type_digit > '9') {
    return RefuseAsCorrupt(
        session,
        NLSFmt(session,
               "%0:s holds no identity record (item 00) that can be read. Please choose another "
               "file.",
               {file.Path()}));
  }
  return CheckModel(db, *identity) && CheckVersion(db, file, *identity) &&
         CheckRecords(session, file);
}

void TellOfSavedFile(Session& session, const std::string& file, std::string_view further) {
  NLSMsgBox(session, NLSFmt(session,
                            "The data of this radio is in %0:s. Please keep this file until the "
                            "radio has its data back.",
                            {file})
                         .append(further));
}

}  // namespace zep::radiodb
