#pragma once
// The tables the program starts from: the correction table that stands until the polar file
// says otherwise, and the placeholder sails used when there is no polar file at all.

#include <cstdint>
#include <string>

#include "performance/performance_tables.h"

namespace wakeline {

// Three angle classes up to 45, 90 and 165 degrees; six wind speeds 5, 10 .. 30 knots; no
// angle or speed correction, and every "corr angle" 165 degrees. With these every correction
// lookup answers 0.
CorrectionTable DefaultCorrectionTable();

// A table of the given size whose every speed, angle and cell is 0.
PolarTable EmptyPolarTable(std::string name, std::int16_t rowCount, std::int16_t columnCount);

// Two empty tables "Dummy1" and "Dummy2" of the given size (start-up uses 8 rows and
// 7 columns), Count 2 and no current table, so the tables window has something to edit.
PolarSet PlaceholderPolarSet(std::int16_t rowCount, std::int16_t columnCount);

}  // namespace wakeline
