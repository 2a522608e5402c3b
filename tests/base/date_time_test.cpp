#include <gtest/gtest.h>

#include <limits>

#include "base/clock.h"
#include "base/date_time.h"
#include "support/fakes.h"

namespace wakeline {
namespace {

TEST(DateTime, CalendarDatesCountDaysFrom18991230BothWays) {
    const struct {
        const char* legend;
        CalendarFields fields;
        double days;
    } rows[] = {
        {"1900 is no leap year", {1900, 3, 1, 0, 0, 0}, 61},
        {"2000 is a leap year", {2000, 2, 29, 0, 0, 0}, 36585},
        {"the day's last second", {2000, 1, 1, 23, 59, 59}, 36526 + 86399.0 / 86400},
        {"before the zero day the time still runs forwards", {1899, 12, 29, 6, 0, 0}, -1.25},
    };
    for (const auto& row : rows) {
        if (row.days >= 0) {
            EXPECT_DOUBLE_EQ(DateTimeFromFields(row.fields), row.days) << row.legend;
        }
        EXPECT_EQ(FieldsFromDateTime(row.days), row.fields) << row.legend;
    }
}

TEST(DateTime, FieldsRoundToTheNearestSecond) {
    const double second = 1.0 / 86400;
    // 23:59:59.6 becomes midnight of the next day, not 23:59:60 or the same day's midnight.
    EXPECT_EQ(FieldsFromDateTime(36526 + 86399.6 * second), (CalendarFields{2000, 1, 2, 0, 0, 0}));
    EXPECT_EQ(FieldsFromDateTime(-1 - 86399.8 * second), (CalendarFields{1899, 12, 30, 0, 0, 0}));
    EXPECT_EQ(FieldsFromDateTime(std::numeric_limits<double>::quiet_NaN()), CalendarFields{});
}

TEST(DateTime, FixedTextForms) {
    const DateTime midnight = DateTimeFromFields({2026, 3, 5, 0, 0, 0});
    EXPECT_EQ(FormatLogTime(midnight), "05-03-2026 00:00:00") << "the time stays at midnight";
    EXPECT_EQ(FormatHourMinute(10.0 / 24), "10:00") << "10 hours held just under";
    EXPECT_EQ(FormatHourMinute(1.5 + 5.0 / 1440), "36:05") << "a duration beyond a day";
}

TEST(ProgramClock, SystemTimeUnlessAReplaySetsIt) {
    testing::FakeClock system;
    ProgramClock clock(system);
    EXPECT_EQ(FormatLogTime(clock.NowUtc()), "15-11-2026 23:42:16");

    clock.SetReplayTime(DateTimeFromFields({2024, 2, 29, 1, 2, 3}));
    system.now = {2026, 11, 16, 0, 0, 0};
    EXPECT_EQ(FormatLogTime(clock.NowUtc()), "29-02-2024 01:02:03");
    EXPECT_EQ(clock.LocalToday(), (CalendarDate{2024, 2, 29}));
    // The local date comes from the system at the program's time, not from UTC.
    system.localDate = CalendarDate{2024, 3, 1};
    EXPECT_EQ(clock.LocalToday(), (CalendarDate{2024, 3, 1}));

    clock.ClearReplayTime();
    EXPECT_EQ(FormatLogTime(clock.NowUtc()), "16-11-2026 00:00:00");
}

}  // namespace
}  // namespace wakeline
