#include "upgrade/calibration_conversion.h"

#include <algorithm>
#include <cctype>

#include "link/record_text.h"
#include "platform/files.h"
#include "radiodb/data_files.h"
#include "radiodb/item_records.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/paths.h"
#include "upgrade/calibration_steps.h"
#include "upgrade/checked_data_file.h"
#include "upgrade/personality_data.h"

namespace zep::upgrade {
namespace {

using services::Failure;
using services::NLSFmt;
using services::NLSMsgBox;
using services::Session;

constexpr std::size_t kChecksumCharacters = 4;
constexpr std::string_view kNoChecksum = "0000";

bool Fail(Session& session, const std::string& text) {
  session.KeepCause(Failure::kFile);
  NLSMsgBox(session, text, {.title = "Conversion Error"});
  return false;
}

bool FailStep(Session& session, const CalibrationStep& step) {
  session.KeepCause(Failure::kFile);
  NLSMsgBox(session, NLSFmt(session, "Conversion Error") + std::string(step.error_text));
  return false;
}

bool IsSameText(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
    return std::toupper(x) == std::toupper(y);
  });
}

// What a step takes out of the data and puts into it, but for the checksum.
void CollectChanges(const CalibrationStep& step, std::string_view data,
                    std::vector<Change>& changes) {
  const std::string reason(step.error_text.substr(2));
  const auto add = [&](std::size_t at, std::string_view before, std::string_view after) {
    if (before.empty() && after.empty()) return;
    changes.push_back(
        {{.byte = at / 2, .before = std::string(before), .after = std::string(after)}, reason});
  };
  std::size_t old_at = 0;
  std::size_t new_at = 0;
  for (const CalibrationPiece& piece : step.pieces.first(step.pieces.size() - 1)) {
    if (piece.literal.empty()) {
      add(old_at, data.substr(old_at, piece.from - 1 - old_at), "");
      old_at = piece.from - 1 + piece.count;
      new_at += piece.count;
    } else {
      add(new_at, "", piece.literal);
      new_at += piece.literal.size();
    }
  }
  add(old_at, data.substr(old_at, data.size() - kChecksumCharacters - old_at), "");
}

// Renews the checksum; the data ends in one, whatever it is.
void RenewChecksum(Session& session, std::string& data) {
  const std::size_t at = data.size() - kChecksumCharacters;
  data.replace(at, kChecksumCharacters, kNoChecksum);
  data.replace(at, kChecksumCharacters, CalibrationChecksum(session, data));
}

radiodb::RadioModel ModelOf(const radiodb::DataFile& file) {
  const std::optional<radiodb::FileIdentity> identity = radiodb::FindFileIdentity(file);
  if (!identity) return {};
  return radiodb::FindRadioModel(identity->model_code).value_or(radiodb::RadioModel{});
}

bool WriteFile(Session& session, const std::string& path, std::string_view text,
               std::string_view procedure) {
  const platform::SystemError error = platform::WriteWholeFile(path, text);
  if (!error) return true;
  return RefuseFile(session, error, procedure);
}

}  // namespace

bool ConvertCalibrationDatabase(Session& session, std::string& data, int current, int wanted,
                                std::vector<Change>* changes) {
  const std::string old_data = data;
  const CalibrationStep* step = NextCalibrationStep(current, wanted);
  for (; step != nullptr; step = NextCalibrationStep(current, wanted)) {
    if (data.size() != step->required_length) return FailStep(session, *step);
    if (changes != nullptr) CollectChanges(*step, data, *changes);
    data = ApplyCalibrationStep(*step, data);
    if (data.size() != step->resulting_length) return FailStep(session, *step);
    current = step->to;
  }
  if (current != wanted || data.size() < kChecksumCharacters) {
    return Fail(session,
                NLSFmt(session,
                       "Calibration data of version %0:s cannot be converted to version %1:s: "
                       "there are the versions 100 to 103. Please use a newer version of this "
                       "application.",
                       {std::to_string(current), std::to_string(wanted)}));
  }
  RenewChecksum(session, data);
  const std::string old_sum = old_data.substr(old_data.size() - kChecksumCharacters);
  const std::string new_sum = data.substr(data.size() - kChecksumCharacters);
  if (changes != nullptr && old_sum != new_sum) {
    changes->push_back({{.byte = data.size() / 2 - 2, .before = old_sum, .after = new_sum},
                        NLSFmt(session, "checksum")});
  }
  return true;
}

int CalibrationVersionOf(std::string_view data) {
  const std::span<const CalibrationStep> steps = CalibrationSteps();
  const auto step = std::find_if(steps.begin(), steps.end(), [&](const CalibrationStep& row) {
    return row.required_length == data.size();
  });
  return step == steps.end() ? 0 : step->from;
}

std::string CalibrationChecksum(Session& session, std::string_view data) {
  int sum = 0;
  for (std::size_t byte = 0; byte < data.size() / 2; ++byte) sum += GetByte(session, data, byte);
  return services::ConLngNumToHex(sum % 65536).substr(4);
}

std::string CalibrationItemIn(const radiodb::DataFile& file, const radiodb::RadioModel& model) {
  const std::string item = model.tier == 2 ? "47" : "2C";
  const std::string item_of_type(radiodb::CalibrationItem(model.type));
  const bool use_other =
      GetCalibrationData(file, item).empty() && !GetCalibrationData(file, item_of_type).empty();
  return use_other ? item_of_type : item;
}

std::string GetCalibrationData(const radiodb::DataFile& file, std::string_view item) {
  std::string data;
  for (const radiodb::DataFileLine& line : file.lines) {
    if (!IsSameText(std::string_view(line.text).substr(0, 2), item)) continue;
    if (line.text.size() < link::kRecordHeader + link::kRecordChecksum) continue;
    data += line.text.substr(link::kRecordHeader,
                             line.text.size() - link::kRecordHeader - link::kRecordChecksum);
  }
  return data;
}

std::string CalibrationDataOf(const radiodb::DataFile& file) {
  return GetCalibrationData(file, CalibrationItemIn(file, ModelOf(file)));
}

bool AddCalibrationDataToFile(Session& session, const std::string& path, std::string_view item,
                              std::string_view data) {
  platform::FileContents contents = platform::ReadWholeFile(path);
  if (contents.error) return RefuseFile(session, contents.error, "AddCalibrationDataToFile");
  AppendRecords(item, data, contents.bytes);
  return WriteFile(session, path, contents.bytes, "AddCalibrationDataToFile");
}

bool ConvertCalibrationFile(Session& session, const CalibrationRequest& request) {
  const std::optional<radiodb::DataFile> file = ReadCheckedDataFile(session, request.saved_file);
  if (!file) return false;
  const std::string item = CalibrationItemIn(*file, ModelOf(*file));
  std::string data = GetCalibrationData(*file, item);
  if (data.empty()) {
    return Fail(session, NLSFmt(session,
                                "The file %0:s holds no calibration data. Please choose a "
                                "calibration file.",
                                {request.saved_file}));
  }
  if (!ConvertCalibrationDatabase(session, data, request.old_version, request.new_version,
                                  request.changes)) {
    return false;
  }
  if (request.changes != nullptr) {
    const auto number = static_cast<std::size_t>(services::ConHexByteToInt(session, item));
    for (Change& change : *request.changes) change.difference.item = number;
    return true;
  }

  constexpr std::string_view kEndOfLine = "\r\n";
  std::string text;
  for (const std::string& line : radiodb::CalibrationHeader(session)) {
    text.append(line).append(kEndOfLine);
  }
  bool written = false;
  for (const radiodb::DataFileLine& line : file->lines) {
    if (!IsSameText(std::string_view(line.text).substr(0, 2), item)) {
      text.append(line.text).append(kEndOfLine);
    } else if (!written) {
      AppendRecords(item, data, text);
      written = true;
    }
  }
  return WriteFile(session, request.converted_file, text, "ConvertCalibrationFile");
}

}  // namespace zep::upgrade
