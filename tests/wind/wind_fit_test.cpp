#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <numbers>

#include "base/date_time.h"
#include "wind/wind_data.h"
#include "wind/wind_fit.h"
#include "wind/wind_graph.h"

namespace wakeline {
namespace {

// 2026-11-15 12:00:00 UTC plus seconds.
DateTime At(double seconds) {
    return DateTimeFromFields({2026, 11, 15, 12, 0, 0}) + seconds / kSecondsPerDay;
}

constexpr double kSecond = 1.0 / kSecondsPerDay;

// One observation every 10 s from 12:00:00 to 13:00:00 (361), direction(t) in degrees.
template <typename Direction>
WindData HourOfObservations(Direction direction) {
    WindData history;
    for (int i = 0; i <= 360; ++i) {
        const double seconds = 10.0 * i;
        AddWindObservation(history, 12.0f, static_cast<float>(direction(seconds)), At(seconds), 1);
    }
    return history;
}

TEST(FitWindOscillation, FindsAPureSineAndWhenItTurnsNext) {
    // 240 + 10 sin(2 pi t / 8 min) from 12:00. At 13:00 (7.5 periods) it falls through its
    // mean, so the next minimum is a quarter period later, 13:02, and the next maximum three
    // quarters later, 13:06; it last rose through its mean at 12:56.
    const WindData history = HourOfObservations([](double seconds) {
        return 240.0 + 10.0 * std::sin(2.0 * std::numbers::pi * seconds / 480.0);
    });
    const auto fit = FitWindOscillation(history, At(0));
    ASSERT_TRUE(fit.has_value());
    EXPECT_NEAR(fit->overlay.periodMinutes, 8.0, 0.4);
    EXPECT_NEAR(fit->overlay.amplitudeDegrees, 10.0, 0.5);
    EXPECT_NEAR(fit->overlay.meanDirection, 240.0, 0.5);
    EXPECT_GT(fit->r2, 0.99);
    EXPECT_NEAR(fit->nextMinimum, At(3720), 5 * kSecond);
    EXPECT_NEAR(fit->nextMaximum, At(3960), 5 * kSecond);
    EXPECT_NEAR(fit->overlay.phaseTime, At(3360), 5 * kSecond);
    // The overlay reads the sine back: a quarter period after the rise is the crest.
    EXPECT_NEAR(OverlayDirectionAt(fit->overlay, At(3480)), 250.0, 0.5);

    // From 12:30 on, the same sine with half the observations.
    const auto later = FitWindOscillation(history, At(1800));
    ASSERT_TRUE(later.has_value());
    EXPECT_NEAR(later->overlay.periodMinutes, 8.0, 0.4);
    EXPECT_NEAR(later->nextMaximum, At(3960), 5 * kSecond);
}

TEST(FitWindOscillation, NoiseWithoutOscillationIsNoFit) {
    // Directions 200 +- 20 from a fixed linear congruential generator: nothing periodic.
    std::uint32_t state = 12345;
    const WindData history = HourOfObservations([&state](double) {
        state = state * 1664525u + 1013904223u;
        return 180.0 + 40.0 * static_cast<double>(state >> 8) / 16777216.0;
    });
    EXPECT_FALSE(FitWindOscillation(history, At(0)).has_value());

    // A steady wind has no variance to explain.
    const WindData steady = HourOfObservations([](double) { return 45.0; });
    EXPECT_FALSE(FitWindOscillation(steady, At(0)).has_value());
}

TEST(FitWindOscillation, ASeriesCrossingNorthIsFittedAroundNorth) {
    // 15 sin(2 pi t / 6 min) around 0, stored as 0..360: 345 .. 360 and 0 .. 15.
    const WindData history = HourOfObservations([](double seconds) {
        const double d = 15.0 * std::sin(2.0 * std::numbers::pi * seconds / 360.0);
        return d < 0 ? d + 360.0 : d;
    });
    const auto fit = FitWindOscillation(history, At(0));
    ASSERT_TRUE(fit.has_value());
    const double mean = std::fmod(fit->overlay.meanDirection + 360.0, 360.0);
    EXPECT_LT(std::min(mean, 360.0 - mean), 0.5);
    EXPECT_NEAR(fit->overlay.amplitudeDegrees, 15.0, 0.75);
    EXPECT_NEAR(fit->overlay.periodMinutes, 6.0, 0.3);
}

TEST(FitWindOscillation, TooFewOrTooCloseObservationsAreNoFit) {
    WindData one;
    AddWindObservation(one, 8.0f, 270.0f, At(0), 1);
    EXPECT_FALSE(FitWindOscillation(one, At(0)).has_value());
    const WindGraphModel model = MakeWindGraph(one, DefaultGraphStart(one));
    ASSERT_FALSE(model.empty);
    EXPECT_EQ(model.points.size(), 1u);
    EXPECT_NEAR(model.end, At(60), 1e-9);

    // Ten observations within 90 s: less than the shortest period.
    WindData brief;
    for (int i = 0; i < 10; ++i) {
        AddWindObservation(brief, 8.0f, i % 2 ? 260.0f : 280.0f, At(10 * i), 1);
    }
    EXPECT_FALSE(FitWindOscillation(brief, At(0)).has_value());
    // Every 2 minutes on an 8-minute sine: 240, 250, 240, 230, 240 fit it exactly, but five
    // observations are too few to tell it from noise; a sixth (250) makes a fit.
    WindData swinging;
    const float directions[] = {240, 250, 240, 230, 240, 250};
    for (int i = 0; i < 5; ++i) {
        AddWindObservation(swinging, 8.0f, directions[i], At(120 * i), 1);
    }
    EXPECT_FALSE(FitWindOscillation(swinging, At(0)).has_value());
    AddWindObservation(swinging, 8.0f, directions[5], At(600), 1);
    EXPECT_TRUE(FitWindOscillation(swinging, At(0)).has_value());
}

}  // namespace
}  // namespace wakeline
