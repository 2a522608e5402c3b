#pragma once
// The target boat speed from a sail's polar table.
//
// Angles in degrees of true wind angle, speeds in knots; double-precision arithmetic, 32-bit
// answers. A point the table does not cover is answered with a negative number, never an
// error: -1 a wind speed outside the rows (or a row that gives no speed), -2 an angle below
// the row's best upwind angle, -3 a row outside the table or an angle beyond the last column.
// An empty answer means an arithmetic fault (a count outside the table's arrays, an input
// that is not a number), which the caller reports as an error of its own step.

#include <cstdint>
#include <optional>

#include "performance/performance_tables.h"

namespace wakeline {

// The speed along row `row` (1..RowCount) at angle `angle`: linear between the row's points,
// which are its column angles from the top down, ending at its RowTwaMin (column 0).
std::optional<float> RowSpeedAt(double angle, int row, const PolarTable& table);

// The angles to use in the rows `lo` and `hi` around wind speed `speed`: the angle as it is
// for both rows, or, when it lies between the interpolated best upwind angle and the first
// column, the same relative place within each row's own upwind range.
struct RowAngles {
    double lo = 0.0;
    double hi = 0.0;
};
std::optional<RowAngles> MapUpwindAngle(double angle, double speed, int lo, int hi,
                                        const PolarTable& table);

// The target boat speed at true wind angle `angle` (either side) and true wind speed `speed`:
// interpolated between the two rows around the speed, or the row alone when the speed is
// exactly its own (the top row is interpolated with weight 1 on it).
std::optional<float> TargetSpeedAt(float angle, float speed, const PolarTable& table);

}  // namespace wakeline
