#include "performance/target_speed.h"

#include <cmath>

#include "performance/checked_arithmetic.h"

namespace wakeline {
namespace {

using performance_detail::At;
using performance_detail::Checked;
using performance_detail::Divide;
using performance_detail::RequireNumber;
using performance_detail::Single;

// The speed values the rows answer with when they do not cover the point.
constexpr double kOutsideRows = -1.0;
constexpr double kBelowTwaMin = -2.0;
constexpr double kOutsideTable = -3.0;

float RowSpeed(double a, long r, const PolarTable& table) {
    RequireNumber(a);
    const long columns = table.ColumnCount;
    // The last column's angle is read before the row is tested, so a column count outside the
    // array is a fault even for a row outside the table.
    const double lastAngle = At(table.ColumnAngle, columns);
    if (r > table.RowCount || r < 1 || a > lastAngle) {
        return static_cast<float>(kOutsideTable);
    }
    const double twaMin = At(table.RowTwaMin, r);
    if (a < twaMin) {
        return static_cast<float>(kBelowTwaMin);
    }
    // The row's points from the top down; a column angle below the row's best upwind angle
    // stands for that angle and its speed in column 0.
    long j = columns;
    double p = lastAngle;
    if (p < twaMin) {
        p = twaMin;
        j = 0;
    }
    long jHi = 0;
    double pHi = 0.0;
    bool stepped = false;
    while (a < p) {
        jHi = j;
        pHi = p;
        stepped = true;
        --j;
        p = At(table.ColumnAngle, j);
        if (p < twaMin) {
            p = twaMin;
            j = 0;
        }
    }
    const auto& cells = At(table.Cell, r);
    if (p == a) {
        return Single(At(cells, j));
    }
    if (!stepped) {
        throw performance_detail::LookupFault{};  // no upper point: only reachable with values that
                                                  // are no numbers
    }
    const double f = Divide(a - p, pHi - p);
    return Single(At(cells, j) * (1.0 - f) + At(cells, jHi) * f);
}

std::optional<RowAngles> MapAngle(double a, double s, long lo, long hi, const PolarTable& table) {
    const double speedHi = At(table.RowWindSpeed, hi);
    const double speedLo = At(table.RowWindSpeed, lo);
    const double t = Divide(speedHi - s, speedHi - speedLo);
    if (!(t >= 0.0 && t <= 1.0)) {
        return std::nullopt;
    }
    const double twaMinHi = At(table.RowTwaMin, hi);
    const double twaMinLo = At(table.RowTwaMin, lo);
    const double m = twaMinHi - (twaMinHi - twaMinLo) * t;
    const double h = At(table.ColumnAngle, 1);
    double u = 1.0;
    if (h == m) {
        if (!(m <= a && a <= h)) {
            return std::nullopt;
        }
    } else {
        u = (a - m) / (h - m);
        if (u < 0.0 || u > 1.0) {
            return std::nullopt;
        }
    }
    return RowAngles{twaMinLo + (h - twaMinLo) * u, twaMinHi + (h - twaMinHi) * u};
}

float TargetSpeed(float angle, float speed, const PolarTable& table) {
    RequireNumber(angle);
    RequireNumber(speed);
    const double a = std::fabs(static_cast<double>(angle));
    const double s = speed;
    const long rows = table.RowCount;
    const double first = At(table.RowWindSpeed, 1);
    const double last = At(table.RowWindSpeed, rows);
    if (s < first || s > last) {
        return static_cast<float>(kOutsideRows);
    }
    long hi = rows;
    long lo = rows - 1;
    while (s < At(table.RowWindSpeed, lo)) {
        --hi;
        --lo;
    }
    if (s == At(table.RowWindSpeed, lo)) {
        return RowSpeed(a, lo, table);
    }
    const RowAngles angles = MapAngle(a, s, lo, hi, table).value_or(RowAngles{a, a});
    const double vLo = RowSpeed(angles.lo, lo, table);
    const double vHi = RowSpeed(angles.hi, hi, table);
    if (vLo >= 0.0 && vHi >= 0.0) {
        const double speedLo = At(table.RowWindSpeed, lo);
        const double f = Divide(s - speedLo, At(table.RowWindSpeed, hi) - speedLo);
        return Single((1.0 - f) * vLo + f * vHi);
    }
    return static_cast<float>(kOutsideRows);
}

}  // namespace

std::optional<float> RowSpeedAt(double angle, int row, const PolarTable& table) {
    return Checked([&] { return RowSpeed(angle, row, table); });
}

std::optional<RowAngles> MapUpwindAngle(double angle, double speed, int lo, int hi,
                                        const PolarTable& table) {
    return Checked([&] {
        return MapAngle(angle, speed, lo, hi, table).value_or(RowAngles{angle, angle});
    });
}

std::optional<float> TargetSpeedAt(float angle, float speed, const PolarTable& table) {
    return Checked([&] { return TargetSpeed(angle, speed, table); });
}

}  // namespace wakeline
