#include "performance/wind_correction.h"

#include <cmath>

#include "base/text_number.h"
#include "performance/checked_arithmetic.h"

namespace wakeline {
namespace {

using performance_detail::At;
using performance_detail::Checked;
using performance_detail::Divide;
using performance_detail::RequireNumber;
using performance_detail::Single;

// Where a value lies on one axis of the table: between nodes lo and hi, with `weightLo` the
// weight of the lower node (0 when the value sits on node hi, and then lo == hi).
struct AxisPlace {
    long lo = 0;
    long hi = 0;
    double weightLo = 0.0;
};

// Clamps the value into [axis[0], axis[count]] and finds the first node at or above it. The
// comparisons are the exact ones of the table's rules; a table that is not ascending can walk
// off the array, which is a fault.
template <typename Array>
AxisPlace PlaceOnAxis(double value, const Array& axis, long count) {
    const double low = At(axis, 0);
    const double high = At(axis, count);
    if (value < low) {
        value = low;
    }
    if (value > high) {
        value = high;
    }
    long i = 0;
    while (!(value <= At(axis, i))) {
        ++i;
    }
    const double node = At(axis, i);
    if (value == node) {
        return {i, i, 0.0};
    }
    const double below = At(axis, i - 1);
    return {i - 1, i, Divide(node - value, node - below)};
}

float AngleCorrection(float angle, float speed, const CorrectionTable& table) {
    RequireNumber(angle);
    RequireNumber(speed);
    const AxisPlace x =
        PlaceOnAxis(std::fabs(static_cast<double>(angle)), table.ClassAngle, table.ClassCount);
    const AxisPlace y = PlaceOnAxis(static_cast<double>(speed), table.WindSpeed, table.SpeedCount);
    const double fx = x.weightLo;
    const double fy = y.weightLo;
    auto node = [&table](long j, long k) -> double { return At(At(table.AngleCorrection, j), k); };
    const double result = node(y.hi, x.lo) * (1.0 - fy) * fx + node(y.lo, x.lo) * fy * fx +
                          node(y.lo, x.hi) * (1.0 - fx) * fy +
                          node(y.hi, x.hi) * (1.0 - fy) * (1.0 - fx);
    return Single(angle <= 0.0f ? -result : result);
}

float SpeedCorrection(float angle, float speed, const CorrectionTable& table) {
    RequireNumber(angle);
    RequireNumber(speed);
    double s = speed;
    double kt = 0.0;
    double limit = 0.0;
    const double first = At(table.WindSpeed, 1);
    if (s < first) {
        const double g = Divide(first - s, first);
        kt = (1.0 - g) * At(table.SpeedCorrectionKt, 1);
        limit = At(table.SpeedCorrectionAngle, 1);
    } else {
        const double top = At(table.WindSpeed, table.SpeedCount);
        if (s > top) {
            s = top;
        }
        long j = 1;
        while (!(s <= At(table.WindSpeed, j))) {
            ++j;
        }
        const double node = At(table.WindSpeed, j);
        long lo = j;
        double g = 0.0;
        if (s != node) {
            lo = j - 1;
            g = Divide(node - s, node - At(table.WindSpeed, lo));
        }
        limit =
            At(table.SpeedCorrectionAngle, j) * (1.0 - g) + At(table.SpeedCorrectionAngle, lo) * g;
        kt = At(table.SpeedCorrectionKt, j) * (1.0 - g) + At(table.SpeedCorrectionKt, lo) * g;
    }
    const double a = std::fabs(static_cast<double>(angle));
    double factor = 1.0;
    if (a < 90.0) {
        factor = 0.0;
    } else if (a <= limit) {
        factor = Divide(a - 90.0, limit - 90.0);
    }
    return Single(kt * factor);
}

}  // namespace

std::optional<float> AngleCorrectionAt(float angle, float speed, const CorrectionTable& table) {
    return Checked([&] { return AngleCorrection(angle, speed, table); });
}

std::optional<float> SpeedCorrectionAt(float angle, float speed, const CorrectionTable& table) {
    return Checked([&] { return SpeedCorrection(angle, speed, table); });
}

float ParseDampingFactor(std::string_view text) {
    if (text.empty()) {
        return 0.0f;
    }
    double value = LeadingNumber(text);
    if (value > 1.0) {
        value = 1.0;
    }
    if (value < 0.0) {
        value = 0.0;
    }
    return static_cast<float>(value);
}

}  // namespace wakeline
