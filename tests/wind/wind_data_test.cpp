#include <gtest/gtest.h>

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

TEST(AverageWind, EachObservationWeighsHalfOfItsIntervalsOnBothSides) {
    // Times 0, 60 and 180 s: weights 30, 90 and 60 s out of 180.
    // Speeds 10, 20, 40: (300 + 1800 + 2400) / 180 = 25.
    // Directions 100, 110, 130: (3000 + 9900 + 7800) / 180 = 115.
    WindData data;
    AddWindObservation(data, 10.0f, 100.0f, At(0), 1);
    AddWindObservation(data, 20.0f, 110.0f, At(60), 1);
    AddWindObservation(data, 40.0f, 130.0f, At(180), 1);

    struct Row {
        const char* legend;
        std::int16_t lastN;
        float speed;
        float direction;
        std::int16_t samples;
    };
    const Row rows[] = {
        {"lastN 0 takes all", 0, 25.0f, 115.0f, 3},
        // The window's first observation loses the half towards its predecessor: 60 and 60 s.
        {"lastN 2", 2, 30.0f, 120.0f, 2},
    };
    for (const Row& row : rows) {
        float reference = kNoReference;
        const WindObservation mean = AverageWind(data, row.lastN, reference);
        EXPECT_FLOAT_EQ(mean.Speed, row.speed) << row.legend;
        EXPECT_FLOAT_EQ(mean.Direction, row.direction) << row.legend;
        EXPECT_EQ(mean.Time, At(180)) << row.legend;
        EXPECT_EQ(mean.Samples, row.samples) << row.legend;
        EXPECT_EQ(reference, 130.0f)
            << row.legend << ": the newest direction becomes the reference";
    }
}

TEST(AverageWind, DirectionsAreUnwrappedAroundTheReference) {
    WindData data;
    AddWindObservation(data, 4.0f, 350.0f, At(0), 1);
    AddWindObservation(data, 6.0f, 10.0f, At(60), 1);

    struct Row {
        const char* legend;
        float reference;
        float direction;
        float referenceAfter;
    };
    const Row rows[] = {
        {"reference 10: 350 counts as -10", 10.0f, 0.0f, 10.0f},
        {"reference 350: 10 counts as 370, and 360 is not reduced", 350.0f, 360.0f, 350.0f},
        {"reference 180: neither is above 360, the mean is 180", 180.0f, 180.0f, 180.0f},
    };
    for (const Row& row : rows) {
        float reference = row.reference;
        const WindObservation mean = AverageWind(data, 0, reference);
        EXPECT_EQ(mean.Direction, row.direction) << row.legend;
        EXPECT_FLOAT_EQ(mean.Speed, 5.0f) << row.legend;
        EXPECT_EQ(reference, row.referenceAfter) << row.legend;
    }
}

TEST(AverageWind, EmptyAndTimelessBuffers) {
    WindData data;
    float reference = kNoReference;
    // Observations in the same second have no weight: the newest stands for them.
    AddWindObservation(data, 7.5f, 200.0f, At(3), 4);
    AddWindObservation(data, 9.0f, 220.0f, At(3), 1);
    const WindObservation same = AverageWind(data, 0, reference);
    EXPECT_EQ(same.Speed, 9.0f);
    EXPECT_EQ(same.Direction, 220.0f);
    EXPECT_EQ(same.Samples, 2);
}

}  // namespace
}  // namespace wakeline
