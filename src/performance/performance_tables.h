#pragma once
// The boat's performance data: the wind correction table, the polar tables of the sails and
// the damping factor. One instance lives for the run; the polar file fills it, the tables
// window edits it, and the live display looks values up in it.
//
// The arrays keep index 0 as the lower end of their axis (a wind speed or angle of 0, never
// read from or written to the file), so entry 1 is the first real one. Counts are 16-bit and
// are not guaranteed to lie within the arrays: a file that overruns an array leaves the count
// it had already set (see polar_file_reader.h), so every reader of these tables checks the
// bounds and treats an overrun as an error of its own step.

#include <array>
#include <cstdint>
#include <string>

namespace wakeline {

// Corrections for the mast-head wind instrument's systematic errors, by wind speed and by
// angle class (Upwind, Reaching, Downwind). Knots and degrees of true wind angle.
struct CorrectionTable {
    std::int16_t SpeedCount = 0;         // wind-speed columns in use, 1..11
    std::int16_t ClassCount = 0;         // angle classes, 3 after reading
    std::array<float, 12> WindSpeed{};   // knots; [0] stays 0
    std::array<float, 12> ClassAngle{};  // degrees: upper angle of class k; [0] stays 0
    // Degrees added to the true wind angle, [speed column][class]; column 0 and class 0 stay 0.
    std::array<std::array<float, 4>, 12> AngleCorrection{};
    std::array<float, 12> SpeedCorrectionKt{};     // knots, per speed column ("corr kt")
    std::array<float, 12> SpeedCorrectionAngle{};  // degrees, per column ("corr angle")
};

// Target boat speeds of one sail set, by true wind speed (rows) and true wind angle (columns).
struct PolarTable {
    std::string Name;                      // the sail's name, 8-bit text as in the file
    std::int16_t ColumnCount = 0;          // angle columns, at most 10
    std::int16_t RowCount = 0;             // wind-speed rows, at most 11
    std::array<float, 12> RowWindSpeed{};  // knots, rows 1..RowCount ascending
    std::array<float, 12> RowTwaMin{};     // degrees: the row's best upwind angle ("TWA_min")
    std::array<float, 11> ColumnAngle{};   // degrees, columns 1..ColumnCount ascending
    // Knots, [row][column]. Column 0 is the speed at the row's RowTwaMin; column c >= 1 the
    // speed at ColumnAngle[c].
    std::array<std::array<float, 11>, 12> Cell{};
};

// The sails' tables and which one is in use.
struct PolarSet {
    std::int16_t Count = 0;     // tables held, 0..6
    std::int16_t Current = -1;  // index of the table in use, -1 for none
    std::array<PolarTable, 6> Tables{};
};

// Everything the polar file holds, owned by the run.
struct PerformanceTables {
    // Weight of a new wind reading, 0..1. A polar file without its "[DampingFactor=" line
    // leaves 1: the wind shown undamped, rather than frozen at its first value by a 0.
    float DampingFactor = 1.0f;
    CorrectionTable Correction;
    PolarSet Polars;
};

}  // namespace wakeline
