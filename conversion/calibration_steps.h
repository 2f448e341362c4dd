// How the calibration data of a radio changes its layout from one calibration database version to
// the next, up and down.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace zep::conversion {

// A part of the new text: count characters of the old one from a position that counts from 1, or a
// literal.
struct CalibrationPiece {
  std::size_t from = 0;
  std::size_t count = 0;
  std::string_view literal = {};
};

struct CalibrationStep {
  int from;
  int to;
  std::size_t required_length;   // characters of the data before
  std::size_t resulting_length;  // and after
  std::span<const CalibrationPiece> pieces;
  std::string_view error_text;  // when one of the lengths is another
};

// In the order in which they are taken: the three up, then the three down.
std::span<const CalibrationStep> CalibrationSteps();

// The next step on the way from version current to version wanted; null when there is none.
const CalibrationStep* NextCalibrationStep(int current, int wanted);

// The data in the new layout, its checksum "0000". REQUIRES: the length is the required one.
std::string ApplyCalibrationStep(const CalibrationStep& step, std::string_view data);

}  // namespace zep::conversion
