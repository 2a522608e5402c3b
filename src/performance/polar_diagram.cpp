#include "performance/polar_diagram.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/number_format.h"
#include "performance/target_speed.h"

namespace wakeline {
namespace {

// The arrays' last usable indexes; counts beyond them are read as far as the arrays go.
constexpr int kLastRow = 11;
constexpr int kLastColumn = 10;

double Radians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}

// The speed of row `row` at `angle`, when the row gives one there (a usable number >= 0).
std::optional<double> SpeedAt(double angle, int row, const PolarTable& table) {
    const std::optional<float> speed = RowSpeedAt(angle, row, table);
    if (!speed || !std::isfinite(*speed) || *speed < 0.0f) {
        return std::nullopt;
    }
    return *speed;
}

// The angles to sample in [from, to]: both ends, every kSampleStep degrees between and each
// column angle between, ascending and without repeats.
std::vector<double> SampleAngles(double from, double to, const PolarTable& table, int columns) {
    std::vector<double> angles{from, to};
    for (double a = (std::floor(from / kSampleStep) + 1.0) * kSampleStep; a < to;
         a += kSampleStep) {
        angles.push_back(a);
    }
    for (int c = 1; c <= columns; ++c) {
        const double a = table.ColumnAngle[static_cast<std::size_t>(c)];
        if (a > from && a < to) {  // false for a NaN
            angles.push_back(a);
        }
    }
    std::sort(angles.begin(), angles.end());
    angles.erase(std::unique(angles.begin(), angles.end()), angles.end());
    return angles;
}

std::optional<PolarCurve> MakeCurve(const PolarTable& table, int row, int columns) {
    const auto r = static_cast<std::size_t>(row);
    const double windSpeed = table.RowWindSpeed[r];
    const double twaMin = table.RowTwaMin[r];
    const double lastAngle = table.ColumnAngle[static_cast<std::size_t>(columns)];
    if (!std::isfinite(windSpeed) || !std::isfinite(twaMin) || !std::isfinite(lastAngle)) {
        return std::nullopt;
    }
    // Only the half circle is drawn; clamping also bounds the number of samples of a table
    // whose angles are absurd.
    const double from = std::max(twaMin, 0.0);
    const double to = std::min(lastAngle, 180.0);
    if (from > to) {
        return std::nullopt;
    }
    PolarCurve curve;
    curve.row = row;
    curve.windSpeed = windSpeed;
    curve.legend = KnotsText(windSpeed) + " kn";
    for (const double angle : SampleAngles(from, to, table, columns)) {
        if (const std::optional<double> speed = SpeedAt(angle, row, table)) {
            curve.samples.push_back({angle, *speed});
        }
    }
    // A row of zeros (a placeholder sail, a row not filled in yet) is no curve.
    if (std::none_of(curve.samples.begin(), curve.samples.end(),
                     [](const PolarSample& s) { return s.speed > 0.0; })) {
        return std::nullopt;
    }
    if (twaMin >= 0.0 && twaMin <= 180.0) {
        if (const std::optional<double> speed = SpeedAt(twaMin, row, table)) {
            curve.bestUpwind = PolarSample{twaMin, *speed};
        }
    }
    double bestGain = 0.0;
    for (const PolarSample& sample : curve.samples) {
        const double gain = sample.speed * std::cos(Radians(sample.angle));
        if (sample.angle < 90.0 && gain > bestGain) {
            bestGain = gain;
            curve.bestVmg = sample;
        }
    }
    return curve;
}

// Rings every 1 knot for a slow boat, every 2 for most, and at 5, 10, 20, 50 .. for tables
// with speeds beyond any boat's, so that there are never more than six rings to label.
double RingStep(double top) {
    if (top <= 5.0) {
        return 1.0;
    }
    if (top <= 12.0) {
        return 2.0;
    }
    double step = 5.0;
    for (int k = 0; top / step > 6.0; ++k) {
        step *= (k % 2 == 0) ? 2.0 : 2.5;
    }
    return step;
}

}  // namespace

std::string KnotsText(double knots) {
    const double tenths = std::round(knots * 10.0) / 10.0;
    return FormatMask(tenths, tenths == std::round(tenths) ? "0" : "0.0");
}

PolarDiagram MakePolarDiagram(const PolarTable& table) {
    PolarDiagram diagram;
    const int columns = table.ColumnCount;
    if (columns < 1 || columns > kLastColumn) {
        return diagram;  // every lookup of the table would fault
    }
    const int rows = std::min<int>(table.RowCount, kLastRow);
    double top = 0.0;
    for (int row = 1; row <= rows; ++row) {
        if (std::optional<PolarCurve> curve = MakeCurve(table, row, columns)) {
            for (const PolarSample& sample : curve->samples) {
                top = std::max(top, sample.speed);
            }
            diagram.curves.push_back(std::move(*curve));
        }
    }
    diagram.ringStep = RingStep(std::max(std::ceil(top), 1.0));
    diagram.maxSpeed = std::max(std::ceil(top / diagram.ringStep), 1.0) * diagram.ringStep;
    return diagram;
}

std::optional<LivePoint> LivePolarPoint(const PolarTable& table, float twaDegrees, float twsKnots) {
    if (!std::isfinite(twaDegrees) || !std::isfinite(twsKnots)) {
        return std::nullopt;
    }
    double angle = std::fmod(std::fabs(static_cast<double>(twaDegrees)), 360.0);
    if (angle > 180.0) {
        angle = 360.0 - angle;
    }
    const std::optional<float> target = TargetSpeedAt(static_cast<float>(angle), twsKnots, table);
    if (!target || !std::isfinite(*target) || *target <= 0.0f) {
        return std::nullopt;
    }
    LivePoint point;
    point.angle = angle;
    point.windSpeed = twsKnots;
    point.speed = *target;
    point.text = "TWA " + FormatMask(angle, "0") + " TWS " + FormatMask(twsKnots, "0.0") +
                 " \u2192 " + FormatMask(*target, "0.0") + " kn";
    return point;
}

PolarLayout LayOutPolarDiagram(double width, double height, double lineHeight, double labelWidth,
                               double legendWidth) {
    constexpr double kEdge = 4.0;
    constexpr double kGap = 6.0;
    // "0°" above the top of the half disc; "180°" below it and the live text under that.
    const double top = kEdge + lineHeight + 2.0;
    const double bottom = kEdge + 2.0 * lineHeight + kGap;
    // The legend, then the ring labels left of the upward axis; the angle labels on the right.
    const double left = kEdge + legendWidth + kGap + labelWidth;
    const double right = labelWidth + kGap + kEdge;
    PolarLayout layout;
    layout.radius = std::max(0.0, std::min((height - top - bottom) / 2.0, width - left - right));
    const double spareX = std::max(0.0, width - left - right - layout.radius);
    const double spareY = std::max(0.0, height - top - bottom - 2.0 * layout.radius);
    layout.centreX = left + spareX / 2.0;
    layout.centreY = top + spareY / 2.0 + layout.radius;
    layout.legendX = kEdge;
    layout.legendY = kEdge;
    layout.liveTextY = height - kEdge - lineHeight;
    return layout;
}

PlanePoint ToPlane(double angleDegrees, double speed, double maxSpeed, const PolarLayout& layout) {
    const double distance = maxSpeed > 0.0 ? layout.radius * speed / maxSpeed : 0.0;
    const double a = Radians(angleDegrees);
    return {layout.centreX + distance * std::sin(a), layout.centreY - distance * std::cos(a)};
}

}  // namespace wakeline
