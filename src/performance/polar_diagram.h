#pragma once
// The polar diagram of one sail: for every wind-speed row of its table, the target boat speed
// over the true wind angle as a curve, the row's best upwind angle and its best upwind VMG;
// the speed scale; the place of the live wind on it; and the diagram's layout in a rectangle.
//
// Angles in degrees of true wind angle (0 head to wind, 180 dead downwind), speeds in knots.
// The table may hold anything (counts beyond its arrays, values that are not numbers, no rows
// at all): a row whose lookups fault or give no speed is left out or cut short, so a damaged
// table draws fewer curves, never a wrong one and never a fault. A row whose speeds are all 0
// (the placeholder sails, a row not yet filled in) is no curve either.

#include <optional>
#include <string>
#include <vector>

#include "performance/performance_tables.h"

namespace wakeline {

struct PolarSample {
    double angle = 0.0;  // degrees, 0..180
    double speed = 0.0;  // knots, >= 0
};

// One row of the table as drawn.
struct PolarCurve {
    int row = 0;             // 1..RowCount
    double windSpeed = 0.0;  // knots, the row's RowWindSpeed
    // Ascending angles from the row's TWA_min to the last column (within 0..180), every
    // kSampleStep degrees and at each column angle, so the corners of the table are exact.
    // Angles where the row gives no speed are missing.
    std::vector<PolarSample> samples;
    // The row's best upwind angle (TWA_min) and its speed, when the row gives one there.
    std::optional<PolarSample> bestUpwind;
    // The sample below 90 degrees with the highest speed x cos(angle): the angle that gains
    // most to windward, which need not be TWA_min.
    std::optional<PolarSample> bestVmg;
    std::string legend;  // "12 kn", "12.5 kn"
};

struct PolarDiagram {
    std::vector<PolarCurve> curves;  // ascending rows; empty when the table gives no speed
    // The outer ring, whole knots (at least 1), and the distance between rings; the rings
    // are at step, 2 x step, .. maxSpeed.
    double maxSpeed = 1.0;
    double ringStep = 1.0;
};

inline constexpr double kSampleStep = 2.0;

PolarDiagram MakePolarDiagram(const PolarTable& table);

// A speed as the diagram writes it: whole knots without a decimal ("6"), others with one
// ("12.5"); "." as the decimal point.
std::string KnotsText(double knots);

// The live wind on the diagram: the angle folded into 0..180 (port and starboard alike) and
// the target speed there.
struct LivePoint {
    double angle = 0.0;      // degrees, 0..180
    double windSpeed = 0.0;  // knots
    double speed = 0.0;      // knots, the target speed, > 0
    std::string text;        // "TWA 45 TWS 9.7 → 5.8 kn" (UTF-8)
};

// Empty when the table has no target speed for this wind (outside its rows or angles, a
// fault, an input that is not a number).
std::optional<LivePoint> LivePolarPoint(const PolarTable& table, float twaDegrees, float twsKnots);

// Where the diagram goes in a widget of `width` x `height` pixels. The plot is a half disc
// with its centre on the left and the angles on the right; the legend stands at the top left,
// the live text along the bottom. `lineHeight` is the font's line spacing and `labelWidth` the
// width of the widest angle label ("180°"), `legendWidth` the legend's widest line.
struct PolarLayout {
    double centreX = 0.0;
    double centreY = 0.0;
    double radius = 0.0;   // pixels of maxSpeed; 0 when nothing fits
    double legendX = 0.0;  // top left of the legend's first line
    double legendY = 0.0;
    double liveTextY = 0.0;  // top of the live text's line, starting at legendX
};

PolarLayout LayOutPolarDiagram(double width, double height, double lineHeight, double labelWidth,
                               double legendWidth);

// Pixel coordinates of a point of the diagram: angle 0 straight up from the centre, 90 to the
// right, 180 straight down; the speed scaled so that maxSpeed lies on the radius.
struct PlanePoint {
    double x = 0.0;
    double y = 0.0;
};
PlanePoint ToPlane(double angleDegrees, double speed, double maxSpeed, const PolarLayout& layout);

}  // namespace wakeline
