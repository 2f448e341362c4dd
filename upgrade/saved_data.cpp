#include "upgrade/saved_data.h"

#include <algorithm>

#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "platform/files.h"
#include "radiodb/data_file_reader.h"
#include "radiodb/data_files.h"
#include "radiodb/item_records.h"
#include "radiodb/radio_commands.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/paths.h"
#include "services/text_lines.h"
#include "upgrade/checked_data_file.h"
#include "upgrade/personality_data.h"

namespace zep::upgrade {
namespace {

using services::NLSFmt;
using services::NLSMsgBox;
using services::Session;

// Notes and copies are called after what they are about: "NAME.unfinished", "NAME.unfinished2".
// Copies of converted files are in the folder of the notes, so they are called otherwise.
constexpr std::string_view kUnfinished = ".unfinished";
constexpr std::string_view kConverted = ".converted";

bool IsCalled(std::string_view name, std::string_view extension) {
  name = name.substr(0, name.find_last_not_of("0123456789") + 1);
  return name.ends_with(extension);
}

// The names that a note or a copy may have, one after the other.
std::string UnfinishedName(const std::string& path, int number) {
  return path + std::string(kUnfinished) + (number > 1 ? std::to_string(number) : std::string());
}

bool IsTaken(const std::string& path) {
  return platform::FileExists(path) || platform::IsFolder(path);
}

// The file after which the note is called: the only one, or the data file.
const std::string& MainFile(const SavedData& saved) {
  return saved.data_file.empty() ? saved.calibration_file : saved.data_file;
}

// What an unfinished run has left behind.
struct Note {
  bool is_running = false;      // the run that made it goes on
  platform::SystemError error;  // why it cannot be read
  SavedData saved;
};

std::string LockOf(const std::string& note) { return note + ".lock"; }

// Whether the run that has made the note goes on, in this program or another.
bool IsRunning(const std::string& note) {
  platform::LockFile lock;
  return platform::FileExists(LockOf(note)) &&
         lock.TryAcquire(LockOf(note)) == platform::LockState::kHeldByAnother;
}

Note ReadNote(const std::string& path) {
  const platform::FileContents contents = platform::ReadWholeFile(path);
  Note note{
      IsRunning(path), contents.error, {.data_file = {}, .calibration_file = {}, .note = path}};
  services::ForEachLine(contents.bytes, [&note](std::string_view line, int number) {
    if (number == 1) note.saved.data_file = line;
    if (number == 2) note.saved.calibration_file = line;
    if (number == 3) note.saved.converted_file = line;
    if (number == 4) note.saved.converted_calibration = line;
  });
  return note;
}

std::vector<Note> FindNotes(const Session& session, bool running = false) {
  std::vector<Note> notes;
  const std::string folder = UpgradeFolder(session);
  for (const std::string& name : platform::ListFolder(folder)) {
    if (!IsCalled(name, kUnfinished)) continue;
    Note note = ReadNote(folder + name);
    if (note.is_running == running) notes.push_back(std::move(note));
  }
  return notes;
}

// Whether the note has nothing to tell any more. What cannot be reached may well come back.
bool IsOver(const Note& note) {
  const auto is_gone = [](const std::string& file) {
    return file.empty() || platform::IsGone(file);
  };
  return !note.error && is_gone(note.saved.data_file) && is_gone(note.saved.calibration_file);
}

// Of a radio, or of the data files that were read from it.
struct Origin {
  std::string model_string;
  std::string database_version;  // not in a calibration file
  std::string serial_number;     // not in a data file
  int networks;                  // likewise 1 in a calibration file
  int records;

  bool operator==(const Origin&) const = default;
};

Origin OriginOf(const radiodb::RadioDb& db, bool is_calibration) {
  const radiodb::RadioIdentity& radio = db.identity;
  if (is_calibration) {
    return {radio.model_string, "", radio.serial_number, 1, db.calibration_records};
  }
  return {radio.model_string, radio.database_version, "", db.number_of_networks,
          db.database_records};
}

Origin OriginOf(const radiodb::DataFileCheck& check) {
  const radiodb::FileIdentity& identity = *check.identity;
  // The identity record is not one of those that the radio was asked for.
  return {identity.model_string, identity.database_version, identity.serial_number, check.networks,
          check.records - 1};
}

bool SecureFile(const radiodb::RadioDb& db, const std::string& path, bool is_calibration) {
  Session& session = db.link.session;
  const platform::FileContents contents = platform::ReadWholeFile(path);
  // Written again in the way that survives a power cut.
  const platform::SystemError error =
      contents.error ? contents.error : platform::WriteWholeFile(path, contents.bytes);
  if (error) {
    services::ReportError(session, error, "SecureSavedData");
    return false;
  }
  const std::optional<radiodb::DataFile> file = ReadCheckedDataFile(session, path);
  if (!file) return false;
  const Origin origin = OriginOf(radiodb::CheckDataFile(session, *file));
  const Origin radio = OriginOf(db, is_calibration);
  if (origin == radio) return true;
  NLSMsgBox(session,
            NLSFmt(session,
                   "The file %0:s does not hold what the radio has sent: %1:s of %2:s records. "
                   "Please check the disk.",
                   {path, std::to_string(origin.records), std::to_string(radio.records)}),
            {.icon = services::Icon::kCritical});
  return false;
}

// Item 0 of a further network is carried along as a line.
bool HasOtherLine(const PersonalityNetwork& saved, std::string_view item) {
  return std::any_of(saved.lines.begin(), saved.lines.end(), [item](const PersonalityLine& line) {
    return line.other_text.starts_with(item);
  });
}

// The radio's items of a network that are not among those saved, each two digits long. A list of
// items carries no checksum, so the one that was used for the read may have been cut short.
std::string MissingItems(const radiodb::RadioDb& db, int network, const PersonalityNetwork& saved) {
  link::Link& link = db.link;
  const radiodb::RadioType type = db.identity.type;
  const std::string list = radiodb::ListItems(db, network).value_or("");
  std::string missing;
  for (std::size_t at = 0; at + 2 <= list.size() && !link.session.Stopped(); at += 2) {
    const std::string item = list.substr(at, 2);
    const auto number = static_cast<std::size_t>(services::ConHexByteToInt(link.session, item));
    if (number < kItemCount && !saved.items[number].empty()) continue;
    if (HasOtherLine(saved, item)) continue;
    if (item == radiodb::CalibrationItem(type) ||
        radiodb::IsLeftForLastNetwork(db, network, item) ||
        !radiodb::IsItemSelected(type, db.transfer_kind, item)) {
      continue;
    }
    // Empty ones are not saved.
    radiodb::SendCommand(link, "r" + item);
    if (!radiodb::ReceiveReply(link).empty()) missing += item;
  }
  return missing;
}

bool HoldsAllItems(const radiodb::RadioDb& db, const std::string& path) {
  Session& session = db.link.session;
  const std::optional<PersonalityData> data = ReadDatabase(session, path);
  radiodb::RadioIdentity radio;
  if (!data || !radiodb::ReadRadioIdentity(db.link, radiodb::IdentityUse::kView, radio)) {
    return false;
  }
  std::string missing;
  for (std::size_t at = 0; at < data->networks.size(); ++at) {
    missing += MissingItems(db, static_cast<int>(at + 1), data->networks[at]);
  }
  link::ReleaseFromProgMode(db.link);
  link::CloseAllComms(db.link);
  const bool same_radio = radio.model_string == db.identity.model_string &&
                          radio.serial_number == db.identity.serial_number &&
                          radio.database_version == db.identity.database_version &&
                          radio.calibration_version == db.identity.calibration_version;
  if (missing.empty() && same_radio) return !session.Stopped();
  NLSMsgBox(session,
            NLSFmt(session,
                   "The radio, asked once more, gives other answers than those in %0:s. Please "
                   "check the lead and its plugs.",
                   {path}),
            {.icon = services::Icon::kCritical});
  return false;
}

platform::SystemError WriteNote(const SavedData& saved) {
  std::string text;
  for (const std::string& path : {saved.data_file, saved.calibration_file, saved.converted_file,
                                  saved.converted_calibration}) {
    text += (path.empty() ? path : platform::AbsolutePath(path)) + "\n";
  }
  return platform::WriteWholeFile(saved.note, text);
}

// Under a name of its own: the notes of earlier runs stay.
bool MakeNote(Session& session, SavedData& saved) {
  const std::string path = UpgradeFolder(session) + services::FileTitleOf(MainFile(saved));
  platform::SystemError error = platform::MakeFolders(UpgradeFolder(session));
  saved.running = std::make_shared<platform::LockFile>();
  for (int number = 1; !error; ++number) {
    saved.note = UnfinishedName(path, number);
    if (!IsTaken(saved.note) &&
        saved.running->TryAcquire(LockOf(saved.note)) != platform::LockState::kHeldByAnother) {
      break;
    }
  }
  if (!error) error = WriteNote(saved);
  if (!error) return true;
  LeaveNote(saved);
  saved.note.clear();
  return RefuseFile(session, error, "SecureSavedData");
}

// Copies the file, unless there is such a copy already; path is the copy's then.
bool KeepCopy(Session& session, UpgradeLog& log, std::string_view extension, std::string& path) {
  if (IsCalled(path, extension)) return true;
  const platform::FileCopy copy = platform::KeepCopy(path, path + std::string(extension));
  if (!copy.error) {
    log.Log("The data of the unfinished upgrade is kept in " + copy.path);
    path = copy.path;
    return true;
  }
  services::ReportError(session, copy.error, "PrepareToSave");
  log.Log("The data of the unfinished upgrade could not be copied: " + path);
  return Refuse(session,
                NLSFmt(session,
                       "The data of an unfinished upgrade in %0:s could not be copied to "
                       "%1:s, so the radio was not read. Please check the disk, or move "
                       "the file to a safe place yourself.",
                       {path, copy.path}),
                services::Failure::kFile);
}

bool AreSameFiles(const SavedData& a, const SavedData& b) {
  return a.data_file == b.data_file && a.calibration_file == b.calibration_file &&
         a.converted_file == b.converted_file && a.converted_calibration == b.converted_calibration;
}

// Puts the data that a note speaks of where nothing replaces it.
bool PutAside(Session& session, UpgradeLog& log, const SavedData& saved) {
  SavedData kept = saved;
  std::string copies;
  for (std::string SavedData::*file :
       {&SavedData::data_file, &SavedData::calibration_file, &SavedData::converted_file,
        &SavedData::converted_calibration}) {
    if (!platform::FileExists(kept.*file)) continue;
    const bool is_converted =
        file == &SavedData::converted_file || file == &SavedData::converted_calibration;
    if (!KeepCopy(session, log, is_converted ? kConverted : kUnfinished, kept.*file)) return false;
    if (kept.*file != saved.*file) copies += "\n" + kept.*file;
  }
  if (copies.empty()) return true;
  if (WriteNote(kept)) {
    // Another user's: there is to be one about the copies in its place, or beside it.
    const std::vector<Note> notes = FindNotes(session);
    if (std::ranges::any_of(notes,
                            [&](const Note& note) { return AreSameFiles(note.saved, kept); }))
      return true;
    if (!MakeNote(session, kept)) return false;
    LeaveNote(kept);
    platform::RemoveFile(saved.note);
  }
  NLSMsgBox(session, NLSFmt(session,
                            "The data of the unfinished upgrade was copied, so that this upgrade "
                            "does not replace it. Please keep the copies:%0:s",
                            {copies}));
  return true;
}

bool Secure(const radiodb::RadioDb& db, SavedData& saved) {
  return (saved.data_file.empty() || SecureFile(db, saved.data_file, false)) &&
         (saved.calibration_file.empty() || SecureFile(db, saved.calibration_file, true)) &&
         (saved.data_file.empty() || HoldsAllItems(db, saved.data_file)) &&
         MakeNote(db.link.session, saved);
}

// A further sentence about data that was converted already, also for the log.
std::string WhatToProgram(const Session& session, UpgradeLog& log, const SavedData& saved) {
  std::string files;
  for (const std::string& file : {saved.converted_file, saved.converted_calibration}) {
    if (!file.empty() && platform::FileExists(file)) files += (files.empty() ? "" : ", ") + file;
  }
  if (files.empty()) return {};
  log.Log("The data converted for its new firmware is in " + files);
  return "\n" + NLSFmt(session,
                       "When the radio has its new firmware, please program the data converted for "
                       "it: %0:s.",
                       {files});
}

}  // namespace

std::string UpgradeFolder(const Session& session) {
  return services::WithSeparator(
      services::AppMakePath(session.paths.application_folder, "upgrade"));
}

bool SecureSavedData(const radiodb::RadioDb& db, SavedData& saved) {
  Session& session = db.link.session;
  if (Secure(db, saved)) return true;
  if (session.failure == services::Failure::kCancelled) return false;
  return Refuse(session,
                services::NLSText("The radio's data could not be saved safely, so the radio keeps "
                                  "its firmware. Please try again."),
                services::Failure::kFile);
}

void NoteConvertedFiles(UpgradeLog& log, const SavedData& saved) {
  if (const platform::SystemError error = WriteNote(saved)) {
    log.Log("The note of this upgrade stays as it was: " + error.description);
  }
}

void LeaveNote(SavedData& saved) {
  if (!saved.running) return;
  saved.running.reset();
  platform::RemoveFile(LockOf(saved.note));
}

void DropNote(SavedData& saved) {
  if (saved.note.empty()) return;
  // First the note, so that nobody takes it for one of an unfinished run.
  platform::RemoveFile(saved.note);
  saved.running.reset();
  platform::RemoveFile(LockOf(saved.note));
}

void EndNotes(const Session& session, SavedData& saved) {
  // A data file's name begins with the radio's serial number, a copy's with that of the file. A
  // file that is not a copy was read anew by this run.
  const auto is_back = [](const std::string& noted, const std::string& file) {
    return noted.empty() ||
           (!platform::IsSameFile(noted, file) &&
            services::FileTitleOf(noted).starts_with(services::FileTitleOf(file)) &&
            platform::HaveSameContents(noted, file));
  };
  DropNote(saved);
  for (Note& note : FindNotes(session)) {
    if (!note.error && is_back(note.saved.data_file, saved.data_file) &&
        is_back(note.saved.calibration_file, saved.calibration_file)) {
      DropNote(note.saved);
    }
  }
}

void TellOfUnfinishedUpgrades(Session& session, UpgradeLog& log) {
  for (Note& note : FindNotes(session)) {
    const std::string& data_file = note.saved.data_file;
    const std::string& calibration_file = note.saved.calibration_file;
    const std::string& path = note.saved.note;
    if (note.error) {
      log.Log("The note of an unfinished upgrade cannot be read: " + path);
      services::ReportError(session, note.error, "TellOfUnfinishedUpgrades");
    } else if (IsOver(note)) {
      DropNote(note.saved);
      const bool removed = !platform::FileExists(path);
      log.Log("The data of an unfinished upgrade is gone" +
              std::string(removed ? ", and its note is removed: " : ": ") + path);
    } else if (data_file.empty() || calibration_file.empty()) {
      const std::string& file = MainFile(note.saved);
      log.Log("An earlier upgrade did not finish. Its data is in " + file);
      NLSMsgBox(session,
                NLSFmt(session,
                       "An earlier upgrade did not finish. The data of that radio is in %0:s. "
                       "Please keep this file until the radio has its data back, then delete "
                       "%1:s.",
                       {file, path}) +
                    WhatToProgram(session, log, note.saved));
    } else {
      log.Log("An earlier upgrade did not finish. Its data is in " + data_file + " and " +
              calibration_file);
      NLSMsgBox(session,
                NLSFmt(session,
                       "An earlier upgrade did not finish. The data of that radio is in %0:s and "
                       "%1:s. Please keep these files until the radio has its data back, then "
                       "delete %2:s.",
                       {data_file, calibration_file, path}) +
                    WhatToProgram(session, log, note.saved));
    }
  }
}

bool PrepareToSave(radiodb::RadioDb& db, UpgradeLog& log) {
  Session& session = db.link.session;
  const std::string upgrade_folder = UpgradeFolder(session);
  for (const std::string& folder : {db.database_folder, db.calibration_folder}) {
    if (!platform::IsSameFile(folder, upgrade_folder)) continue;
    log.Log("The saved data would be in the folder of the converted data: " + upgrade_folder);
    return Refuse(session,
                  NLSFmt(session,
                         "The radio's data cannot be saved in %0:s: the converted data, "
                         "which goes there, would replace it. Please choose another "
                         "folder for data files and calibration files.",
                         {upgrade_folder}),
                  services::Failure::kFile);
  }
  for (const Note& note : FindNotes(session)) {
    if (!note.error && !PutAside(session, log, note.saved)) return false;
  }
  db.files_in_use.clear();
  for (const Note& note : FindNotes(session, true)) {
    for (const std::string& file : {note.saved.data_file, note.saved.calibration_file}) {
      if (!file.empty()) db.files_in_use.push_back(file);
    }
  }
  return true;
}

void TellOfSavedData(Session& session, UpgradeLog& log, const SavedData& saved) {
  if (saved.data_file.empty() || saved.calibration_file.empty()) {
    log.Log("The radio's data is in " + MainFile(saved));
    return radiodb::TellOfSavedFile(session, MainFile(saved), WhatToProgram(session, log, saved));
  }
  log.Log("The radio's data is in " + saved.data_file + " and " + saved.calibration_file);
  NLSMsgBox(session, NLSFmt(session,
                            "The data of this radio is in %0:s and %1:s. Please keep these files "
                            "until the radio has its data back.",
                            {saved.data_file, saved.calibration_file}) +
                         WhatToProgram(session, log, saved));
}

bool MayBeSameRadio(Session& session, const std::string& saved_serial_number,
                    const std::string& serial_number) {
  const auto is_set = [](const std::string& number) {
    return !number.empty() && number != "NOT SET";
  };
  if (!is_set(saved_serial_number) || !is_set(serial_number) ||
      saved_serial_number == serial_number) {
    return true;
  }
  const std::string question =
      NLSFmt(session,
             "The saved data is of the radio with the serial number %0:s, but the radio now has "
             "the serial number %1:s. Program the data nevertheless?",
             {saved_serial_number, serial_number});
  if (NLSMsgBox(session, question,
                {.icon = services::Icon::kQuestion,
                 .buttons = services::Buttons::kYesNo,
                 .cautious = true}) == services::Answer::kYes) {
    return true;
  }
  session.KeepCause(services::Failure::kRefused);
  return false;
}

}  // namespace zep::upgrade
