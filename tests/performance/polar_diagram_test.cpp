#include "performance/polar_diagram.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "performance/table_defaults.h"

namespace wakeline {
namespace {

// Columns 60 and 120 degrees; column 0 is the speed at the row's TWA_min.
//   TWS  TWA_min   @min   60    120
//    6     40      4.0   5.0   6.0
//   12     30      3.0   6.0   7.5
// Row 12 between 30 and 60 is 0.1 x angle, so its VMG 0.1 a cos(a) peaks where
// a tan(a) = 180/pi, near 49.3 degrees: on the 2-degree samples at 50 (5.0 x 0.64279 =
// 3.214, against 3.212 at 48 and 2.598 at TWA_min). Row 6 gains most at TWA_min:
// 4.0 x cos 40 = 3.064 against 4.1 x cos 42 = 3.047.
PolarTable TwoRowTable() {
    PolarTable t = EmptyPolarTable("Jib", 2, 2);
    t.ColumnAngle[1] = 60;
    t.ColumnAngle[2] = 120;
    t.RowWindSpeed[1] = 6;
    t.RowWindSpeed[2] = 12;
    t.RowTwaMin[1] = 40;
    t.RowTwaMin[2] = 30;
    t.Cell[1] = {4.0f, 5.0f, 6.0f};
    t.Cell[2] = {3.0f, 6.0f, 7.5f};
    return t;
}

TEST(PolarDiagram, CurvesMarksAndScale) {
    const PolarDiagram d = MakePolarDiagram(TwoRowTable());
    ASSERT_EQ(d.curves.size(), 2u);
    const PolarCurve& light = d.curves[0];
    const PolarCurve& fresh = d.curves[1];
    EXPECT_EQ(light.legend, "6 kn");
    EXPECT_EQ(fresh.legend, "12 kn");
    // 40, 42 .. 120 and 30, 32 .. 120.
    ASSERT_EQ(light.samples.size(), 41u);
    ASSERT_EQ(fresh.samples.size(), 46u);
    EXPECT_DOUBLE_EQ(light.samples[5].angle, 50.0);
    EXPECT_NEAR(light.samples[5].speed, 4.5, 1e-6);  // halfway from 40 (4.0) to 60 (5.0)
    EXPECT_DOUBLE_EQ(fresh.samples.back().angle, 120.0);
    EXPECT_NEAR(fresh.samples.back().speed, 7.5, 1e-6);

    ASSERT_TRUE(light.bestUpwind);
    EXPECT_DOUBLE_EQ(light.bestUpwind->angle, 40.0);
    EXPECT_NEAR(light.bestUpwind->speed, 4.0, 1e-6);
    ASSERT_TRUE(light.bestVmg && fresh.bestVmg);
    EXPECT_DOUBLE_EQ(light.bestVmg->angle, 40.0);
    EXPECT_DOUBLE_EQ(fresh.bestVmg->angle, 50.0);
    EXPECT_NEAR(fresh.bestVmg->speed, 5.0, 1e-6);

    // Fastest 7.5 knots: the outer ring at 8, rings every 2.
    EXPECT_DOUBLE_EQ(d.maxSpeed, 8.0);
    EXPECT_DOUBLE_EQ(d.ringStep, 2.0);
}

TEST(PolarDiagram, DamagedTablesDrawFewerCurves) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    struct Case {
        void (*damage)(PolarTable&);
        std::size_t curves;
        const char* legend;
    };
    const Case cases[] = {
        {[](PolarTable&) {}, 2, "intact"},
        {[](PolarTable& t) { t.RowCount = 0; }, 0, "no rows"},
        {[](PolarTable& t) { t.RowCount = 300; }, 2, "rows beyond the array: the zero rows drop"},
        {[](PolarTable& t) { t.ColumnCount = 11; }, 0, "columns beyond the array"},
        {[](PolarTable& t) { t.RowTwaMin[2] = std::nanf(""); }, 1, "TWA_min not a number"},
        {[](PolarTable& t) { t.ColumnAngle[2] = std::nanf(""); }, 0, "last angle not a number"},
        {[](PolarTable& t) { t.RowTwaMin[1] = 200; }, 1, "TWA_min beyond the half circle"},
        {[](PolarTable& t) { t.Cell[2] = {}; }, 1, "a row of zeros"},
        {[](PolarTable& t) { t.ColumnAngle[2] = 1e30f; }, 2, "absurd angle: clamped to 180"},
    };
    for (const Case& c : cases) {
        PolarTable t = TwoRowTable();
        c.damage(t);
        const PolarDiagram d = MakePolarDiagram(t);
        EXPECT_EQ(d.curves.size(), c.curves) << c.legend;
        EXPECT_GE(d.maxSpeed, 1.0) << c.legend;
    }
    // A cell that is not a number cuts its row short: row 6 keeps 40 .. 60, where the 120
    // column is not yet read.
    PolarTable t = TwoRowTable();
    t.Cell[1][2] = nan;
    const PolarDiagram d = MakePolarDiagram(t);
    ASSERT_EQ(d.curves.size(), 2u);
    EXPECT_DOUBLE_EQ(d.curves[0].samples.back().angle, 60.0);
    EXPECT_EQ(d.curves[0].samples.size(), 11u);
}

TEST(PolarDiagram, LivePoint) {
    const PolarTable t = TwoRowTable();
    // TWS 9 lies halfway between the rows: best upwind angle 35, u = (45-35)/(60-35) = 0.4;
    // row 6 is read at 48 (4.4), row 12 at 42 (4.2); halfway 4.3.
    for (const float twa : {45.0f, -45.0f, 315.0f}) {
        const std::optional<LivePoint> p = LivePolarPoint(t, twa, 9.0f);
        ASSERT_TRUE(p) << twa;
        EXPECT_NEAR(p->angle, 45.0, 1e-9) << twa;
        EXPECT_NEAR(p->speed, 4.3, 1e-5) << twa;
        EXPECT_EQ(p->text, "TWA 45 TWS 9.0 \u2192 4.3 kn") << twa;
    }
    EXPECT_FALSE(LivePolarPoint(t, 45.0f, 13.0f)) << "above the top row";
    EXPECT_FALSE(LivePolarPoint(t, 25.0f, 12.0f)) << "below TWA_min";
    EXPECT_FALSE(LivePolarPoint(t, std::nanf(""), 9.0f)) << "angle not a number";
    PolarTable broken = t;
    broken.RowCount = 40;
    EXPECT_FALSE(LivePolarPoint(broken, 45.0f, 9.0f)) << "a fault is no point";
}

TEST(PolarDiagram, LayoutKeepsEveryTextInside) {
    // Line height 15, labels 30 wide, legend 40 wide: the angle labels must fit beside and
    // above/below the half disc, the ring labels between the legend and the axis, and the
    // live text below "180°".
    const double line = 15, label = 30, legend = 40;
    const double sizes[][2] = {{300, 300}, {320, 320}, {900, 300}, {300, 900}, {200, 150}};
    for (const auto& size : sizes) {
        const double w = size[0], h = size[1];
        const PolarLayout l = LayOutPolarDiagram(w, h, line, label, legend);
        EXPECT_GT(l.radius, 40.0) << w << "x" << h;
        EXPECT_GE(l.centreY - l.radius - line, 0.0) << w << "x" << h;
        EXPECT_LE(l.centreY + l.radius + line, l.liveTextY) << w << "x" << h;
        EXPECT_LE(l.liveTextY + line, h) << w << "x" << h;
        EXPECT_LE(l.centreX + l.radius + label, w) << w << "x" << h;
        EXPECT_GE(l.centreX - label, l.legendX + legend) << w << "x" << h;
    }
    // 0 degrees points up, 90 right, 180 down.
    const PolarLayout l = LayOutPolarDiagram(300, 300, line, label, legend);
    const PlanePoint beam = ToPlane(90, 4, 8, l);
    const PlanePoint run = ToPlane(180, 8, 8, l);
    EXPECT_NEAR(beam.x - l.centreX, l.radius / 2, 1e-9);
    EXPECT_NEAR(beam.y, l.centreY, 1e-9);
    EXPECT_NEAR(run.x, l.centreX, 1e-9);
    EXPECT_NEAR(run.y - l.centreY, l.radius, 1e-9);
}

}  // namespace
}  // namespace wakeline
