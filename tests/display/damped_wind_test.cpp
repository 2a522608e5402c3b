#include <gtest/gtest.h>

#include "display/damped_wind.h"

namespace wakeline {
namespace {

// Each row feeds one reading with its factor and expects the damped value afterwards; the rows
// of one group run on the same record, starting at 0.
struct Step {
    const char* legend;
    double reading;
    float factor;
    float expected;
};

TEST(DampedWind, AngleTakesTheShorterWayAndFoldsOnlyBeyondTheHalfCircle) {
    const Step steps[] = {
        {"factor 1 shows the raw reading", 170, 1.0f, 170},
        {"-170 is 20 degrees on: 180, kept as 180", -170, 0.5f, 180},
        {"-170 again: 10 on from 180 is 185, folded", -170, 0.5f, -175},
        {"factor 0 freezes", 90, 0.0f, -175},
    };
    DampedWind wind;
    for (const auto& step : steps) {
        EXPECT_EQ(wind.DampTWA(step.reading, step.factor), step.expected) << step.legend;
        EXPECT_EQ(wind.TWA, step.expected) << step.legend;
    }
}

TEST(DampedWind, DirectionWrapsAtNorthBothWays) {
    const Step steps[] = {
        {"raw 10", 10, 1.0f, 10},
        {"350 from 10 halves to 0, kept as 0", 350, 0.5f, 0},
        {"340 from 0: -10 wraps to 350", 340, 0.5f, 350},
        {"10 from 350 halves to 360, kept as 360", 10, 0.5f, 360},
        {"20 from 360: 370 wraps to 10", 20, 0.5f, 10},
    };
    DampedWind wind;
    for (const auto& step : steps) {
        EXPECT_EQ(wind.DampTWD(step.reading, step.factor), step.expected) << step.legend;
    }
}

TEST(DampedWind, SpeedIsAWeightedMean) {
    DampedWind wind;
    EXPECT_EQ(wind.DampTWS(10, 1.0f), 10.0f);
    EXPECT_EQ(wind.DampTWS(20, 0.0f), 10.0f);   // frozen
    EXPECT_EQ(wind.DampTWS(18, 0.25f), 12.0f);  // 0.75 x 10 + 0.25 x 18
    EXPECT_FALSE(wind.DampTWS(1e39, 1.0f));     // too large for a float: a fault
    EXPECT_EQ(wind.TWS, 12.0f);                 // and the damped value stays
}

}  // namespace
}  // namespace wakeline
