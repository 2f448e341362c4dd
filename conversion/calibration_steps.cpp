#include "conversion/calibration_steps.h"

namespace zep::conversion {
namespace {

constexpr CalibrationPiece Mid(std::size_t from, std::size_t count) {
  return {.from = from, .count = count};
}
constexpr CalibrationPiece New(std::string_view literal) { return {.literal = literal}; }
constexpr CalibrationPiece kNoChecksum = New("0000");

constexpr CalibrationPiece k100To101[] = {Mid(1, 162), New("000000000000"), Mid(163, 58),
                                          New("3840"), Mid(221, 36),        kNoChecksum};
constexpr CalibrationPiece k101To102[] = {Mid(1, 196), New("00"),    Mid(197, 64),
                                          New("0000"), Mid(261, 12), kNoChecksum};
constexpr CalibrationPiece k102To103[] = {Mid(1, 204), Mid(207, 60), kNoChecksum};
constexpr CalibrationPiece k103To102[] = {Mid(1, 204), New("00"), Mid(205, 60), New("000000000000"),
                                          kNoChecksum};
// Kept: the zero byte that the way up inserts stays, and the byte behind it goes.
constexpr CalibrationPiece k102To101[] = {Mid(1, 198), Mid(201, 62), Mid(267, 12), kNoChecksum};
constexpr CalibrationPiece k101To100[] = {Mid(1, 162), Mid(175, 58), Mid(237, 36), kNoChecksum};

constexpr CalibrationStep kSteps[] = {
    {100, 101, 260, 276, k100To101, ": 100 -> 101"},
    {101, 102, 276, 282, k101To102, ": 101 -> 102"},
    {102, 103, 282, 268, k102To103, ": 102 -> 103"},
    {103, 102, 268, 282, k103To102, ": 103 -> 102"},
    {102, 101, 282, 276, k102To101, ": 102 -> 101"},
    {101, 100, 276, 260, k101To100, ": 101 -> 100"},
};

}  // namespace

std::span<const CalibrationStep> CalibrationSteps() { return kSteps; }

const CalibrationStep* NextCalibrationStep(int current, int wanted) {
  for (const CalibrationStep& step : kSteps) {
    const bool leads_there = step.to > step.from ? wanted > current : wanted < current;
    if (step.from == current && leads_there) return &step;
  }
  return nullptr;
}

std::string ApplyCalibrationStep(const CalibrationStep& step, std::string_view data) {
  std::string changed;
  changed.reserve(step.resulting_length);
  for (const CalibrationPiece& piece : step.pieces) {
    changed += piece.literal.empty() ? data.substr(piece.from - 1, piece.count) : piece.literal;
  }
  return changed;
}

}  // namespace zep::conversion
