#include "conversion/calibration_conversion.h"

#include <algorithm>
#include <cctype>

#include "conversion/item_bytes.h"
#include "conversion/personality_data.h"
#include "services/hex_text.h"

namespace zep::conversion {
namespace {

using radiodb::DataFile;
using radiodb::DataFileLine;
using services::NLSText;
using services::Text;

constexpr std::size_t kChecksumCharacters = 4;
constexpr std::string_view kNoChecksum = "0000";

// Characters of a record that are no data.
constexpr std::size_t kRecordEnds = radiodb::kRecordHeader + radiodb::kRecordChecksum;

// What a step takes out of the data and puts into it, but for the checksum.
void CollectChanges(const CalibrationStep& step, std::string_view data,
                    std::vector<Change>& changes) {
  const ChangeReason reason{ChangeReason::Kind::kCalibrationStep, step.from, step.to};
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
void RenewChecksum(std::string& data) {
  const std::size_t at = data.size() - kChecksumCharacters;
  data.replace(at, kChecksumCharacters, kNoChecksum);
  data.replace(at, kChecksumCharacters, CalibrationChecksum(data));
}

radiodb::RadioModel ModelOf(const DataFile& file) {
  if (!file.Identity()) return {};
  return radiodb::FindRadioModel(file.Identity()->model_code).value_or(radiodb::RadioModel{});
}

// Compared without regard to case, as a file may be of either.
bool IsOfItem(const DataFileLine& line, std::string_view item) {
  const std::string_view number = line.Text().substr(0, 2);
  return std::equal(number.begin(), number.end(), item.begin(), item.end(),
                    [](unsigned char a, unsigned char b) { return std::toupper(a) == b; });
}

}  // namespace

tl::expected<void, CalibrationProblem> ConvertCalibrationDatabase(std::string& data, int current,
                                                                  int wanted,
                                                                  std::vector<Change>* changes) {
  const std::string old_data = data;
  const CalibrationStep* step = NextCalibrationStep(current, wanted);
  for (; step != nullptr; step = NextCalibrationStep(current, wanted)) {
    if (data.size() != step->required_length) return tl::unexpected(CalibrationProblem{step});
    if (changes != nullptr) CollectChanges(*step, data, *changes);
    data = ApplyCalibrationStep(*step, data);
    if (data.size() != step->resulting_length) return tl::unexpected(CalibrationProblem{step});
    current = step->to;
  }
  if (current != wanted || data.size() < kChecksumCharacters) {
    return tl::unexpected(CalibrationProblem{
        .text = {NLSText("Calibration data of version %0:s cannot be converted to version %1:s: "
                         "there are the versions 100 to 103. Please use a newer version of this "
                         "application."),
                 {std::to_string(current), std::to_string(wanted)}}});
  }
  RenewChecksum(data);
  const std::string old_sum = old_data.substr(old_data.size() - kChecksumCharacters);
  const std::string new_sum = data.substr(data.size() - kChecksumCharacters);
  if (changes != nullptr && old_sum != new_sum) {
    changes->push_back({{.byte = data.size() / 2 - 2, .before = old_sum, .after = new_sum},
                        {.kind = ChangeReason::Kind::kChecksum}});
  }
  return {};
}

int CalibrationVersionOf(std::string_view data) {
  const std::span<const CalibrationStep> steps = CalibrationSteps();
  const auto step = std::find_if(steps.begin(), steps.end(), [&](const CalibrationStep& row) {
    return row.required_length == data.size();
  });
  return step == steps.end() ? 0 : step->from;
}

std::string CalibrationChecksum(std::string_view data) {
  int sum = 0;
  for (std::size_t byte = 0; byte < data.size() / 2; ++byte) sum += GetByte(data, byte);
  return services::ConLngNumToHex(sum % 65536).substr(4);
}

std::string CalibrationItemIn(const DataFile& file, const radiodb::RadioModel& model) {
  const radiodb::CalibrationItems items = radiodb::CalibrationItemsOf(model);
  const bool use_other = GetCalibrationData(file, items.in_file).empty() &&
                         !GetCalibrationData(file, items.in_radio).empty();
  return std::string(use_other ? items.in_radio : items.in_file);
}

std::string GetCalibrationData(const DataFile& file, std::string_view item) {
  std::string data;
  for (const DataFileLine& line : file.Lines()) {
    const std::string_view text = line.Text();
    if (!IsOfItem(line, item) || text.size() < kRecordEnds) continue;
    data += text.substr(radiodb::kRecordHeader, text.size() - kRecordEnds);
  }
  return data;
}

std::string CalibrationDataOf(const DataFile& file) {
  return GetCalibrationData(file, CalibrationItemIn(file, ModelOf(file)));
}

void AddCalibrationDataToFile(std::string_view item, std::string_view data, DataFile& file) {
  AddRecords(item, data, file);
}

tl::expected<CalibrationResult, CalibrationProblem> ConvertCalibration(
    const CalibrationConversion& conversion, const DataFile& saved) {
  CalibrationResult result{.file = DataFile(conversion.path, conversion.header),
                           .item = CalibrationItemIn(saved, ModelOf(saved)),
                           .data = {},
                           .changes = {}};
  result.data = GetCalibrationData(saved, result.item);
  if (result.data.empty()) {
    return tl::unexpected(
        CalibrationProblem{.text = {NLSText("The file %0:s holds no calibration data. Please "
                                            "choose a calibration file."),
                                    {saved.Path()}}});
  }
  const auto converted =
      ConvertCalibrationDatabase(result.data, conversion.old_version, conversion.new_version,
                                 conversion.collect_changes ? &result.changes : nullptr);
  if (!converted) return tl::unexpected(converted.error());
  for (Change& change : result.changes)
    change.difference.item = static_cast<std::size_t>(services::HexByte(result.item));

  bool written = false;
  for (const DataFileLine& line : saved.Lines()) {
    if (!IsOfItem(line, result.item)) {
      result.file.Add(line.Text());
    } else if (!written) {
      AddCalibrationDataToFile(result.item, result.data, result.file);
      written = true;
    }
  }
  return result;
}

}  // namespace zep::conversion
