#pragma once
// Corrections of the true wind for the mast-head instrument's systematic errors, looked up in
// the CorrectionTable, and the damping factor as the sailor types it.
//
// Angles in degrees of true wind angle (negative to port), speeds in knots. The arithmetic is
// done in double precision and each answer is a 32-bit float. Angles and speeds outside the
// table are clamped to it; an empty answer means an arithmetic fault of the lookup (wind
// speeds or class angles not ascending, a "corr angle" of exactly 90 met by an angle of 90,
// a count outside the table's arrays, an input that is not a number), which the caller reports
// as an error of its own step.

#include <optional>
#include <string_view>

#include "performance/performance_tables.h"

namespace wakeline {

// Degrees to add to the true wind angle: bilinear between the class angles and the wind
// speeds, from 0 at angle 0 and speed 0. The table describes one side; an angle of 0 or less
// gets the negated correction (so 0 itself answers -0 for a zero table).
std::optional<float> AngleCorrectionAt(float angle, float speed, const CorrectionTable& table);

// Knots to add to the true wind speed. Nothing below 90 degrees off the wind, growing
// linearly to the column's full "corr kt" at its "corr angle"; below the first wind speed the
// first column's correction shrinks linearly to 0 at speed 0.
std::optional<float> SpeedCorrectionAt(float angle, float speed, const CorrectionTable& table);

// The damping factor from the text the sailor typed: empty or not a number gives 0, values are
// clamped to 0..1. The caller stores it and marks the tables as changed.
float ParseDampingFactor(std::string_view text);

}  // namespace wakeline
