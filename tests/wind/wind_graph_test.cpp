#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "base/date_time.h"
#include "base/settings_store.h"
#include "wind/wind_data.h"
#include "wind/wind_graph.h"
#include "wind/wind_graph_settings.h"

namespace wakeline {
namespace {

DateTime On(int day, int hour, int minute, int second = 0) {
    return DateTimeFromFields({2026, 11, day, hour, minute, second});
}

constexpr double kMillisecond = 0.001 / kSecondsPerDay;

TEST(MakeWindGraph, UnwrapsAcrossNorthAndTicksTheAxes) {
    WindData history;
    AddWindObservation(history, 20.0f, 300.0f, On(15, 11, 50), 1);  // before start: left out
    AddWindObservation(history, 8.0f, 355.0f, On(15, 12, 0), 1);
    AddWindObservation(history, 12.5f, 5.0f, On(15, 12, 0, 30), 1);
    AddWindObservation(history, 9.0f, 358.0f, On(15, 12, 3, 10), 1);
    const WindGraphModel model = MakeWindGraph(history, On(15, 12, 0));
    ASSERT_FALSE(model.empty);
    ASSERT_EQ(model.points.size(), 3u);
    EXPECT_DOUBLE_EQ(model.points[0].direction, 355.0);
    EXPECT_NEAR(model.points[1].direction, 365.0, 1e-9);
    EXPECT_NEAR(model.points[2].direction, 358.0, 1e-9);
    EXPECT_DOUBLE_EQ(model.points[1].speed, 12.5);
    EXPECT_EQ(model.end, On(15, 12, 3, 10));

    // 355..365 takes 11 ticks of 1 degree, 7 of 2 degrees: 354..366.
    EXPECT_EQ(model.directionMin, 354.0);
    EXPECT_EQ(model.directionMax, 366.0);
    EXPECT_EQ(model.directionTicks, (std::vector<double>{354, 356, 358, 360, 362, 364, 366}));
    // 12.5 kt: every 1 kt would be 14 ticks, every 2 kt 0..14 is 8.
    EXPECT_EQ(model.speedMax, 14.0);
    EXPECT_EQ(model.speedTicks.size(), 8u);
    // 12:00 .. 12:03:10: whole minutes 12:00, 12:01, 12:02, 12:03.
    ASSERT_EQ(model.timeTicks.size(), 4u);
    EXPECT_NEAR(model.timeTicks.front(), On(15, 12, 0), kMillisecond);
    EXPECT_NEAR(model.timeTicks.back(), On(15, 12, 3), kMillisecond);

    // A start after the newest observation leaves nothing to draw.
    EXPECT_TRUE(MakeWindGraph(history, On(15, 12, 4)).empty);
    EXPECT_TRUE(MakeWindGraph(WindData{}, 0).empty);
}

TEST(DefaultGraphStart, IsTheOldestObservationOfTheLastHour) {
    WindData history;
    EXPECT_EQ(DefaultGraphStart(history), 0.0);
    for (const DateTime t :
         {On(15, 10, 0), On(15, 10, 59, 59), On(15, 11, 0), On(15, 11, 30), On(15, 12, 0)}) {
        AddWindObservation(history, 10.0f, 90.0f, t, 1);
    }
    // Exactly one hour before the newest still belongs to the last hour; one second more not.
    EXPECT_EQ(DefaultGraphStart(history), On(15, 11, 0));
}

TEST(ParseGraphStart, AcceptsATimeOfTheNewestDayOrADateAndTime) {
    const DateTime reference = On(15, 12, 0, 30);
    struct Row {
        const char* entry;
        std::optional<DateTime> start;
        const char* legend;
    };
    const Row rows[] = {
        {"10:15", On(15, 10, 15), "earlier on the reference's day"},
        {"  12:00\t", On(15, 12, 0), "blanks around; just before the reference"},
        {"13:00", On(14, 13, 0), "after the reference: the day before"},
        {"0:05", On(15, 0, 5), "one-digit hour"},
        {"2026/11/14 23:59", On(14, 23, 59), "date and time"},
        {"2024/02/29 06:00", DateTimeFromFields({2024, 2, 29, 6, 0, 0}), "a leap day"},
        {"25:00", std::nullopt, "no such hour"},
        {"12:60", std::nullopt, "no such minute"},
        {"12:5x", std::nullopt, "not digits"},
        {"12:00:00", std::nullopt, "seconds are not asked for"},
        {"1200", std::nullopt, "no colon"},
        {"", std::nullopt, "nothing"},
        {"2026/02/30 10:00", std::nullopt, "no such day"},
        {"2026/11/14", std::nullopt, "a date without a time"},
        {"2026/11/1410:00", std::nullopt, "no blank between date and time"},
        {"26/11/14 10:00", std::nullopt, "two-digit year"},
    };
    for (const Row& row : rows) {
        const std::optional<DateTime> start = ParseGraphStart(row.entry, reference);
        ASSERT_EQ(start.has_value(), row.start.has_value()) << row.legend;
        if (start) {
            EXPECT_NEAR(*start, *row.start, kMillisecond) << row.legend;
        }
    }
    EXPECT_EQ(GraphTimeText(On(15, 9, 7, 45)), "09:07");
}

TEST(AverageLastMinutes, TakesTheObservationsWithinTheSpanOfTheNewest) {
    // Every minute from 12:00 to 12:06; 12:00 is 100 kt, 12:06 is 20 kt, the others 10 kt.
    WindData history;
    for (int minute = 0; minute <= 6; ++minute) {
        const float speed = minute == 0 ? 100.0f : minute == 6 ? 20.0f : 10.0f;
        AddWindObservation(history, speed, 90.0f, On(15, 12, minute), 1);
    }
    // The last 5 minutes hold 12:01 .. 12:06 (12:01 exactly 5 minutes back counts): weights
    // 30, 60, 60, 60, 60, 30 s, speed (10 * 270 + 20 * 30) / 300 = 11.
    const WindObservation five = AverageLastMinutes(history, 5);
    EXPECT_EQ(five.Samples, 6);
    EXPECT_NEAR(five.Speed, 11.0f, 1e-4f);
    EXPECT_NEAR(five.Direction, 90.0f, 1e-4f);
    // The last minute: 12:05 and 12:06, weights 30 and 30.
    const WindObservation one = AverageLastMinutes(history, 1);
    EXPECT_EQ(one.Samples, 2);
    EXPECT_NEAR(one.Speed, 15.0f, 1e-4f);
    EXPECT_EQ(AverageLastMinutes(WindData{}, 5).Samples, 0);
}

TEST(WindGraphSettings, RoundTripAndBadTextsKeepTheDefaults) {
    MemorySettingsStore store;
    const WindGraphSettings defaults = LoadWindGraphSettings(store);
    EXPECT_EQ(defaults.colWD, 0u);
    EXPECT_EQ(defaults.colWS, 16711680u);
    EXPECT_EQ(defaults.colSL, 16776960u);
    EXPECT_FALSE(defaults.overlayShown);

    WindGraphSettings chosen;
    chosen.colWD = 255;
    chosen.overlay = {-7.25, 12.5, 8.125, 46341.5123456789};
    chosen.overlayShown = true;
    ASSERT_TRUE(StoreWindGraphSettings(store, chosen).Ok());
    EXPECT_EQ(store.Get("WindGraph", "colWD"), "255");
    EXPECT_EQ(store.Get("WindGraph", "SineShown"), "True");
    const WindGraphSettings back = LoadWindGraphSettings(store);
    EXPECT_EQ(back.colWD, 255u);
    EXPECT_EQ(back.overlay.meanDirection, -7.25);
    EXPECT_EQ(back.overlay.amplitudeDegrees, 12.5);
    EXPECT_EQ(back.overlay.periodMinutes, 8.125);
    EXPECT_EQ(back.overlay.phaseTime, 46341.5123456789);
    EXPECT_TRUE(back.overlayShown);

    for (const auto& [key, text] :
         std::vector<std::pair<std::string, std::string>>{{"colWD", "16777216"},
                                                          {"colWS", "blue"},
                                                          {"colSL", "-1"},
                                                          {"SineAmplitude", "-3"},
                                                          {"SinePeriod", "0"},
                                                          {"SineMean", "1e3"},
                                                          {"SineShown", "yes"}}) {
        store.Set("WindGraph", key, text);
    }
    const WindGraphSettings bad = LoadWindGraphSettings(store);
    EXPECT_EQ(bad.colWD, 0u);
    EXPECT_EQ(bad.colWS, 16711680u);
    EXPECT_EQ(bad.colSL, 16776960u);
    EXPECT_EQ(bad.overlay.amplitudeDegrees, 0.0);
    EXPECT_EQ(bad.overlay.periodMinutes, 10.0);
    EXPECT_EQ(bad.overlay.meanDirection, 0.0);
    EXPECT_FALSE(bad.overlayShown);
}

}  // namespace
}  // namespace wakeline
