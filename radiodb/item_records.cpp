#include "radiodb/item_records.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <vector>

#include "link/error_replies.h"
#include "radiodb/radio_commands.h"
#include "services/messages.h"

namespace zep::radiodb {
namespace {

using services::Failure;
using services::NLSFmt;
using services::NLSText;
using services::Session;

constexpr std::array<std::string_view, 4> kLeftOutOfConventional = {"28", "29", "2D", "2E"};
constexpr std::array<std::string_view, 7> kLeftOutOfTrunked = {"2F", "3D", "3E", "3F",
                                                               "45", "46", "48"};

template <std::size_t kCount>
bool Contains(const std::array<std::string_view, kCount>& items, std::string_view item) {
  return std::ranges::find(items, item) != items.end();
}

// As the radio has it, whatever its tier.
std::string_view CalibrationItem(RadioType type) {
  return CalibrationItemsOf({.type = type}).in_radio;
}

class Progress {
 public:
  explicit Progress(ReadWriteView& view) : view_(view) { view_.SetProgress(0); }

  // The value stays, at most the new maximum.
  void SetMaximum(std::size_t maximum) {
    maximum_ = static_cast<int>(maximum);
    value_ = std::min(value_, maximum_);
    view_.SetProgressMaximum(maximum_);
    view_.SetProgress(value_);
  }
  void Step() {
    value_ = std::min(value_ + 1, maximum_);
    view_.SetProgress(value_);
  }
  void Fill() { view_.SetProgress(value_ = maximum_); }

 private:
  ReadWriteView& view_;
  int value_ = 0;
  int maximum_ = 0;
};

bool HasSeveralNetworks(const RadioDb& db) {
  return db.identity.IsTrunked() && db.number_of_networks > 1;
}

std::string NetworkStatus(const RadioDb& db, std::string_view text) {
  return NLSFmt(db.link.session, text,
                {std::to_string(db.current_network), std::to_string(db.number_of_networks)});
}

void LeaveForLastNetwork(RadioDb& db, std::string_view item, ReadFiles& files) {
  db.common_dynamic_item_skipped = true;
  if (item == "32") files.database.Add(kCommonDynamicItemLine);
}

// Receives characters until the buffer holds length of them. False when they did not come.
bool ReceiveUpTo(link::Link& link, std::string& buffer, std::size_t length) {
  while (buffer.size() < length) {
    const std::string character = ReceiveCharacter(link);
    if (character.empty()) return false;
    buffer += character;
  }
  return true;
}

// Receives a record whose first character has come, with its carriage return. Nothing when it did
// not come whole.
std::optional<std::string> ReceiveRecord(RadioDb& db, ReadWriteView& view, std::string record) {
  Session& session = db.link.session;
  if (!ReceiveUpTo(db.link, record, link::kRecordHeader)) return std::nullopt;
  UpdateStatusBar(session, view,
                  db.number_of_networks > 1
                      ? NetworkStatus(db, NLSText("Reading Radio database %0:s of %1:s"))
                      : NLSFmt(session, "Reading Items"));
  if (!ReceiveUpTo(db.link, record, link::RecordLength(record))) return std::nullopt;
  // A corrupted record is kept all the same.
  if (!Record::ParseReply(record)) link::ReportRadioError(session, "{C02}");
  ReceiveCharacter(db.link, kCarriageReturn);
  return record;
}

void StoreRecord(const RadioDb& db, const std::string& record, ReadFiles& files) {
  if (link::IsEmptyRecord(record)) return;
  if (record.starts_with(CalibrationItem(db.identity.type))) {
    // All networks of a radio share its calibration: once is enough.
    if (files.calibration_network == 0) files.calibration_network = db.current_network;
    if (files.calibration_network != db.current_network) return;
    files.calibration.Add(record);
  } else {
    files.database.Add(record);
  }
}

// Receives the records of an item and writes them to the files. False when it ended early.
bool ReadItem(RadioDb& db, ReadWriteView& view, ReadFiles& files) {
  std::string first = ReceiveCharacter(db.link);
  while (first != kPrompt) {
    const std::optional<std::string> record = ReceiveRecord(db, view, first);
    if (!record) return false;
    StoreRecord(db, *record, files);
    first = ReceiveCharacter(db.link);
    if (first.empty()) return false;
  }
  return true;
}

// Tells the user why the read is given up.
bool GiveUp(Session& session, const std::string& text) {
  session.SetDownloadError(Failure::kRadioError);
  return Refuse(session, text, Failure::kRadioError);
}

bool GiveUpForNothing(Session& session) {
  return GiveUp(session, NLSFmt(session,
                                "The radio reports no items that could be saved. Please check the "
                                "radio's model configuration."));
}

// Lists and reads the items of the current network, or of a radio that has but one.
bool ReadNetwork(RadioDb& db, ReadWriteView& view, ReadFiles& files) {
  link::Link& link = db.link;
  const std::optional<std::string> item_list = ListItems(db, db.current_network);
  if (!item_list) return false;
  view.ShowStatus(HasSeveralNetworks(db)
                      ? NetworkStatus(db, NLSText("Reading Items from Network %0:s ..."))
                      : NLSFmt(link.session, "Reading Items..."));
  ReadItemList(db, view, *item_list, files);
  return !link.session.Stopped();
}

using Lines = std::span<const DataFileLine>;

bool IsSeparator(const DataFileLine& line) { return line.IsSeparator(); }

// The lines of each network, separators left out.
std::vector<Lines> SplitNetworks(const DataFile& file) {
  std::vector<Lines> networks;
  auto begin = file.Lines().begin();
  auto end = std::find_if(begin, file.Lines().end(), IsSeparator);
  networks.emplace_back(begin, end);
  while (end != file.Lines().end()) {
    begin = end + 1;
    end = std::find_if(begin, file.Lines().end(), IsSeparator);
    networks.emplace_back(begin, end);
  }
  return networks;
}

// The record that is sent for a line; null when it is none.
const Record* RecordToSend(const RadioDb& db, const DataFileLine& line) {
  const Record* record = line.AsRecord();
  const bool is_sent = record != nullptr && !record->IsEmpty() &&
                       IsItemSelected(db.identity.type, db.transfer_kind, record->Item());
  return is_sent ? record : nullptr;
}

bool WriteNetwork(RadioDb& db, ReadWriteView& view, Lines lines, Progress& progress) {
  link::Link& link = db.link;
  if (db.identity.IsTrunked() && !ExecuteCommand(link, "d0" + std::to_string(db.current_network)))
    return false;
  if (!ExecuteCommand(link, "b")) return false;
  db.writing_begun = true;
  for (const DataFileLine& line : lines) {
    link.session.PumpEvents();
    if (link.session.Stopped()) return false;
    const Record* record = RecordToSend(db, line);
    if (record != nullptr && !ExecuteCommand(link, std::string("w").append(record->Line())))
      return false;
    UpdateStatusBar(link.session, view,
                    db.number_of_networks > 1
                        ? NetworkStatus(db, NLSText("Writing Radio database %0:s of %1:s"))
                        : NLSFmt(link.session, "Writing Items"));
    progress.Step();
  }
  return ExecuteCommand(link, "e");
}

}  // namespace

bool IsLeftForLastNetwork(const RadioDb& db, int network, std::string_view item) {
  constexpr int kFirstSoftware = 309;
  constexpr int kFirstSeparateDatabase = 312;
  if (item != "32" && item != "33") return false;
  const RadioIdentity& radio = db.identity;
  return radio.IsTrunked() && (radio.tier == 1 || radio.tier == 2) &&
         VersionNumber(radio.software_version) >= kFirstSoftware &&
         VersionNumber(radio.database_version.substr(0, 4)) < kFirstSeparateDatabase &&
         network < db.number_of_networks;
}

std::optional<std::string> ListItems(const RadioDb& db, int network) {
  link::Link& link = db.link;
  if (HasSeveralNetworks(db) && !ExecuteCommand(link, "d0" + std::to_string(network))) {
    return std::nullopt;
  }
  SendCommand(link, "l");
  std::string list = ReceiveReply(link, "List");
  if (link.session.Stopped()) return std::nullopt;
  return list;
}

bool IsItemSelected(RadioType type, TransferKind kind, std::string_view item) {
  const bool is_trunked = type == RadioType::kTrunked;
  const bool is_calibration = item == CalibrationItem(type);
  switch (kind) {
    case TransferKind::kCalibration:
      return is_calibration;
    case TransferKind::kChosenFile:
    case TransferKind::kAutoSave:
      if (is_calibration) return false;
      break;
    case TransferKind::kBoth:
      break;
  }
  return is_trunked ? !Contains(kLeftOutOfTrunked, item) : !Contains(kLeftOutOfConventional, item);
}

void UpdateStatusBar(Session& session, ReadWriteView& view, std::string text) {
  constexpr int kSteps = 6;
  text.append(static_cast<std::size_t>(session.status_dots) + 1, '.');
  session.status_dots = (session.status_dots + 1) % kSteps;
  view.ShowStatus(text);
}

bool ReadAllItems(RadioDb& db, ReadWriteView& view, ReadFiles& files) {
  Session& session = db.link.session;
  const int networks = db.number_of_networks;
  for (db.current_network = 1; db.current_network <= networks; ++db.current_network) {
    if (!ReadNetwork(db, view, files)) return false;
    if (db.current_network < networks) files.database.Add(kNetworkSeparator);
  }
  db.current_network = networks;
  if (files.database.out.IsOpen() && files.database.Items() == 0) return GiveUpForNothing(session);
  if (files.calibration.out.IsOpen() && files.calibration_network == 0) {
    return GiveUp(session,
                  NLSFmt(session,
                         "The radio holds no calibration data (item %0:s). Please check the "
                         "radio's model configuration.",
                         {CalibrationItem(db.identity.type)}));
  }
  return !session.Stopped();
}

void ReadItemList(RadioDb& db, ReadWriteView& view, std::string_view item_list, ReadFiles& files) {
  Progress progress(view);
  progress.SetMaximum(item_list.size() / 2);
  for (std::size_t at = 0; at < item_list.size(); at += 2) {
    const std::string_view item = item_list.substr(at, 2);
    if (!IsItemSelected(db.identity.type, db.transfer_kind, item)) continue;
    if (IsLeftForLastNetwork(db, db.current_network, item)) {
      LeaveForLastNetwork(db, item, files);
      continue;
    }
    SendCommand(db.link, "r" + std::string(item));
    progress.Step();
    if (!ReadItem(db, view, files)) return;
  }
  progress.Fill();
}

bool WriteItems(RadioDb& db, ReadWriteView& view, const DataFile& file) {
  Session& session = db.link.session;
  const std::vector<Lines> networks = SplitNetworks(file);
  if (networks.size() > static_cast<std::size_t>(kMostNetworks)) {
    return Refuse(session, NLSFmt(session, TooManyNetworks(static_cast<int>(networks.size()))),
                  Failure::kFile);
  }
  Progress progress(view);
  db.number_of_networks = static_cast<int>(networks.size());
  db.current_network = 0;
  for (const Lines& lines : networks) {
    ++db.current_network;
    // The separator counts with the network behind it.
    progress.SetMaximum(lines.size() + (db.current_network > 1 ? 1 : 0));
    if (!WriteNetwork(db, view, lines, progress)) return false;
  }
  return !session.Stopped();
}

}  // namespace zep::radiodb
