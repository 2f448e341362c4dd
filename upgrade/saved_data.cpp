#include "upgrade/saved_data.h"

#include <algorithm>

#include "conversion/checked_data.h"
#include "conversion/personality_data.h"
#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "platform/files.h"
#include "radiodb/item_records.h"
#include "radiodb/radio_commands.h"
#include "services/hex_text.h"
#include "services/messages.h"

namespace zep::upgrade {
namespace {

using services::NLSFmt;
using services::NLSMsgBox;
using services::Session;

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
    return {radio.model_string, "", radio.serial_number, 1, db.calibration.Records() - 1};
  }
  return {radio.model_string, radio.database_version, "", db.number_of_networks,
          db.data.Records() - 1};
}

Origin OriginOf(const radiodb::DataFile& file) {
  const radiodb::FileIdentity& identity = *file.Identity();
  // The identity record is not one of those that the radio was asked for.
  return {identity.model_string, identity.database_version, identity.serial_number, file.Networks(),
          file.Records() - 1};
}

// Reads the file back from the disk and compares it with what the radio has sent.
bool SecureFile(const radiodb::RadioDb& db, const radiodb::DataFile& sent, bool is_calibration) {
  Session& session = db.job.session;
  const platform::FileContents contents = platform::ReadWholeFile(sent.Path());
  if (contents.error) {
    services::ReportError(session, contents.error, "SecureSavedData");
    return false;
  }
  const tl::expected<radiodb::DataFile, services::Problem> file =
      radiodb::DataFile::Parse(sent.Path(), contents.bytes).and_then(conversion::CheckedData);
  if (!file) return Refuse(db.job, file.error());
  const Origin origin = OriginOf(*file);
  const Origin radio = OriginOf(db, is_calibration);
  if (origin == radio && contents.bytes == sent.Print()) return true;
  NLSMsgBox(session,
            NLSFmt(session,
                   "The file %0:s does not hold what the radio has sent: %1:s of %2:s records. "
                   "Please check the disk.",
                   {sent.Path(), std::to_string(origin.records), std::to_string(radio.records)}),
            {.icon = services::Icon::kCritical});
  return false;
}

// Item 0 of a further network is carried along as a line.
bool HasOtherLine(const conversion::PersonalityNetwork& saved, std::string_view item) {
  return std::any_of(saved.lines.begin(), saved.lines.end(),
                     [item](const conversion::PersonalityLine& line) {
                       return line.other_text.starts_with(item);
                     });
}

// The radio's items of a network that are not among those saved, each two digits long. A list of
// items carries no checksum, so the one that was used for the read may have been cut short.
std::string MissingItems(const radiodb::RadioDb& db, int network,
                         const conversion::PersonalityNetwork& saved) {
  link::Job& job = db.job;
  const radiodb::RadioType type = db.identity.type;
  const std::string list = radiodb::ListItems(db, network).value_or("");
  std::string missing;
  for (std::size_t at = 0; at + 2 <= list.size() && !job.Stopped(); at += 2) {
    const std::string item = list.substr(at, 2);
    const auto number = static_cast<std::size_t>(services::HexByte(item));
    if (number < conversion::kItemCount && !saved.items[number].empty()) continue;
    if (HasOtherLine(saved, item)) continue;
    if (item == radiodb::CalibrationItemsOf({.type = type}).in_radio ||
        radiodb::IsLeftForLastNetwork(db, network, item) ||
        !radiodb::IsItemSelected(type, db.transfer_kind, item)) {
      continue;
    }
    // Empty ones are not saved.
    radiodb::SendCommand(job, "r" + item);
    if (!radiodb::ReceiveReply(job).empty()) missing += item;
  }
  return missing;
}

bool HoldsAllItems(const radiodb::RadioDb& db) {
  Session& session = db.job.session;
  const tl::expected<conversion::PersonalityData, services::Problem> data =
      conversion::ReadDatabase(db.data);
  radiodb::RadioIdentity radio;
  if (!data || !radiodb::ReadRadioIdentity(db.job, radiodb::IdentityUse::kView, radio)) {
    return false;
  }
  std::string missing;
  for (std::size_t at = 0; at < data->networks.size(); ++at) {
    missing += MissingItems(db, static_cast<int>(at + 1), data->networks[at]);
  }
  link::ReleaseFromProgMode(db.job);
  link::CloseAllComms(db.job.link);
  const bool same_radio = radio.model_string == db.identity.model_string &&
                          radio.serial_number == db.identity.serial_number &&
                          radio.database_version == db.identity.database_version &&
                          radio.calibration_version == db.identity.calibration_version;
  if (missing.empty() && same_radio) return !db.job.Stopped();
  NLSMsgBox(session,
            NLSFmt(session,
                   "The radio, asked once more, gives other answers than those in %0:s. Please "
                   "check the lead and its plugs.",
                   {db.data.Path()}),
            {.icon = services::Icon::kCritical});
  return false;
}

bool Secure(const radiodb::RadioDb& db, SavedData& saved) {
  return (saved.data_file.empty() || SecureFile(db, db.data, false)) &&
         (saved.calibration_file.empty() || SecureFile(db, db.calibration, true)) &&
         (saved.data_file.empty() || HoldsAllItems(db)) && MakeNote(db.job, saved);
}

}  // namespace

bool SecureSavedData(const radiodb::RadioDb& db, SavedData& saved) {
  if (Secure(db, saved)) return true;
  if (db.job.Ended(false).WasCancelled()) return false;
  return Refuse(db.job,
                services::NLSText("The radio's data could not be saved safely, so the radio keeps "
                                  "its firmware. Please try again."),
                services::Failure::kFile);
}

bool MayBeSameRadio(link::Job& job, const std::string& saved_serial_number,
                    const std::string& serial_number) {
  const auto is_set = [](const std::string& number) {
    return !number.empty() && number != "NOT SET";
  };
  if (!is_set(saved_serial_number) || !is_set(serial_number) ||
      saved_serial_number == serial_number) {
    return true;
  }
  Session& session = job.session;
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
  job.KeepCause(services::Failure::kRefused);
  return false;
}

}  // namespace zep::upgrade
