#include <gtest/gtest.h>

#include "display/damped_wind.h"

namespace wakeline {
namespace {

// Each row feeds one reading of the angle (TWA) or the direction (TWD) with its factor and
// expects the damped value afterwards; both start at 0 and each row goes on from the last of
// its kind.
TEST(DampedWind, AnglesTakeTheShorterWayAndFoldOnlyBeyondTheirRange) {
    const struct {
        const char* legend;
        bool direction;
        double reading;
        float factor, expected;
    } steps[] = {
        {"TWA: factor 1 shows the raw reading", false, 170, 1.0f, 170},
        {"TWA: -170 is 20 degrees on: 180, kept as 180", false, -170, 0.5f, 180},
        {"TWA: -170 again: 10 on from 180 is 185, folded", false, -170, 0.5f, -175},
        {"TWA: factor 0 freezes", false, 90, 0.0f, -175},
        {"TWD: raw 10", true, 10, 1.0f, 10},
        {"TWD: 350 from 10 halves to 0, kept as 0", true, 350, 0.5f, 0},
        {"TWD: 340 from 0: -10 wraps to 350", true, 340, 0.5f, 350},
        {"TWD: 10 from 350 halves to 360, kept as 360", true, 10, 0.5f, 360},
        {"TWD: 20 from 360: 370 wraps to 10", true, 20, 0.5f, 10},
    };
    DampedWind wind;
    for (const auto& s : steps) {
        EXPECT_EQ(
            s.direction ? wind.DampTWD(s.reading, s.factor) : wind.DampTWA(s.reading, s.factor),
            s.expected)
            << s.legend;
    }
    EXPECT_EQ(wind.TWA, -175.0f) << "the damped angle is kept";
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
