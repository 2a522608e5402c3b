#include <gtest/gtest.h>

#include <vector>

#include "base/date_time.h"
#include "wind/wind_data.h"

namespace wakeline {
namespace {

// 2026-11-15 12:00:00 UTC plus whole seconds.
DateTime At(int seconds) {
    return DateTimeFromFields({2026, 11, 15, 12, 0, 0}) + seconds / kSecondsPerDay;
}

TEST(AddWindObservation, TheObservationAfterAFullBufferDropsTheOldest) {
    WindData data;
    for (int k = 0; k < 1002; ++k) {
        AddWindObservation(data, static_cast<float>(k), 90.0f, At(k), 1);
    }
    EXPECT_EQ(data.Count, 1001);
    EXPECT_EQ(data.Obs[0].Speed, 1.0f);  // observation 0 is gone
    EXPECT_EQ(data.Obs[0].Time, At(1));
    EXPECT_EQ(data.Obs[1000].Speed, 1001.0f);

    ClearWindData(data);
    EXPECT_EQ(data.Count, 0);
    EXPECT_EQ(data.Obs[1000].Speed, 1001.0f);  // slots stay; they are saved as they are
}

TEST(AverageWind, EachObservationWeighsHalfOfItsIntervalsAroundTheReference) {
    struct Observation {
        float speed, direction;
        int second;
        std::int16_t samples;
    };
    using Buffer = std::vector<Observation>;
    // Times 0, 60 and 180 s: weights 30, 90 and 60 s out of 180. Speeds 10, 20, 40 average
    // (300 + 1800 + 2400) / 180 = 25; directions 100, 110, 130 (3000 + 9900 + 7800) / 180 = 115.
    const Buffer three = {{10, 100, 0, 1}, {20, 110, 60, 1}, {40, 130, 180, 1}};
    const Buffer acrossNorth = {{4, 350, 0, 1}, {6, 10, 60, 1}};
    const Buffer sameSecond = {{7.5f, 200, 3, 4}, {9, 220, 3, 1}};
    const struct {
        const char* legend;
        Buffer buffer;
        std::int16_t lastN;
        float reference, speed, direction;
        std::int16_t samples;
        float referenceAfter;
    } rows[] = {
        // clang-format off
        {"lastN 0 takes all; the newest direction becomes the reference", three, 0, kNoReference, 25, 115, 3, 130},
        {"lastN 2: the window's first loses the half towards its predecessor", three, 2, kNoReference, 30, 120, 2, 130},
        {"reference 10: 350 counts as -10", acrossNorth, 0, 10, 5, 0, 2, 10},
        {"reference 350: 10 counts as 370, and 360 is not reduced", acrossNorth, 0, 350, 5, 360, 2, 350},
        {"reference 180: neither is above 360, the mean is 180", acrossNorth, 0, 180, 5, 180, 2, 180},
        {"same second: no weight, the newest stands for them", sameSecond, 0, kNoReference, 9, 220, 2, 220},
        // clang-format on
    };
    for (const auto& row : rows) {
        WindData data;
        for (const Observation& o : row.buffer) {
            AddWindObservation(data, o.speed, o.direction, At(o.second), o.samples);
        }
        float reference = row.reference;
        const WindObservation mean = AverageWind(data, row.lastN, reference);
        EXPECT_FLOAT_EQ(mean.Speed, row.speed) << row.legend;
        EXPECT_FLOAT_EQ(mean.Direction, row.direction) << row.legend;
        EXPECT_EQ(mean.Time, At(row.buffer.back().second)) << row.legend;
        EXPECT_EQ(mean.Samples, row.samples) << row.legend;
        EXPECT_EQ(reference, row.referenceAfter) << row.legend;
    }
}

}  // namespace
}  // namespace wakeline
