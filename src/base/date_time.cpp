#include "base/date_time.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace wakeline {
namespace {

namespace chrono = std::chrono;

// The Gregorian calendar repeats every 400 years, which are exactly this many days. Years are
// moved by whole cycles into the range std::chrono::year holds (+-32767) and moved back after.
constexpr std::int64_t kYearsPerCycle = 400;
constexpr std::int64_t kDaysPerCycle = 146097;

constexpr std::int64_t FloorDivide(std::int64_t value, std::int64_t divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

// Days since 1970-01-01 of the first of a month; the month may lie outside 1..12 and counts on
// into the next or back into the previous years.
constexpr std::int64_t DaysOfMonthStart(std::int64_t year, std::int64_t month) {
    year += FloorDivide(month - 1, 12);
    month -= FloorDivide(month - 1, 12) * 12;
    const std::int64_t cycles = FloorDivide(year, kYearsPerCycle);
    const chrono::year_month_day first{chrono::year(int(year - cycles * kYearsPerCycle)),
                                       chrono::month(unsigned(month)), chrono::day(1)};
    return chrono::sys_days(first).time_since_epoch().count() + cycles * kDaysPerCycle;
}

// The date of a count of days since 1970-01-01.
CalendarDate DateOfDays(std::int64_t days) {
    const std::int64_t cycles = FloorDivide(days, kDaysPerCycle);
    const chrono::year_month_day date{
        chrono::sys_days(chrono::days(days - cycles * kDaysPerCycle))};
    return CalendarDate{int(int(date.year()) + cycles * kYearsPerCycle),
                        int(unsigned(date.month())), int(unsigned(date.day()))};
}

// 1899-12-30, the zero of DateTime, counted from 1970-01-01.
constexpr std::int64_t kEpochDays = DaysOfMonthStart(1899, 12) + 29;
static_assert(kEpochDays == -25569, "70 years of 365 days and 17 leap days, plus 2 days");

// Beyond this many days (some 270,000 years) the fields would not fit their ints.
constexpr double kLargestDays = 1.0e8;

}  // namespace

bool IsValidDate(int year, int month, int day) {
    if (month < 1 || month > 12 || day < 1 || day > 31) {
        return false;  // chrono's month and day hold only small values
    }
    const auto cycleYear =
        static_cast<int>(year - FloorDivide(year, kYearsPerCycle) * kYearsPerCycle);
    return chrono::year_month_day{chrono::year(cycleYear), chrono::month(unsigned(month)),
                                  chrono::day(unsigned(day))}
        .ok();
}

DateTime DateTimeFromFields(const CalendarFields& fields) {
    const std::int64_t days =
        DaysOfMonthStart(fields.year, fields.month) + (fields.day - 1) - kEpochDays;
    const double seconds = fields.hour * 3600.0 + fields.minute * 60.0 + fields.second;
    return static_cast<double>(days) + seconds / kSecondsPerDay;
}

CalendarFields FieldsFromDateTime(DateTime value) {
    if (!std::isfinite(value) || std::fabs(value) > kLargestDays) {
        return CalendarFields{};
    }
    // The whole day and the time of day are taken apart before rounding: before 1899-12-30
    // the fraction still runs forwards from the day's midnight (-1.25 is 06:00 of day -1).
    const double wholeDays = std::trunc(value);
    auto seconds =
        static_cast<std::int64_t>(std::llround(std::fabs(value - wholeDays) * kSecondsPerDay));
    auto days = static_cast<std::int64_t>(wholeDays);
    const auto secondsPerDay = static_cast<std::int64_t>(kSecondsPerDay);
    if (seconds >= secondsPerDay) {
        // 23:59:59.6 rounds to midnight of the next calendar day.
        seconds -= secondsPerDay;
        days += 1;
    }
    const CalendarDate date = DateOfDays(days + kEpochDays);
    return CalendarFields{date.year,
                          date.month,
                          date.day,
                          static_cast<int>(seconds / 3600),
                          static_cast<int>(seconds / 60 % 60),
                          static_cast<int>(seconds % 60)};
}

std::string FormatStampTime(DateTime value) {
    const CalendarFields f = FieldsFromDateTime(value);
    char text[64];
    std::snprintf(text, sizeof text, "%04d%02d%02d %02d:%02d:%02d", f.year, f.month, f.day, f.hour,
                  f.minute, f.second);
    return text;
}

std::string FormatLogTime(DateTime value) {
    const CalendarFields f = FieldsFromDateTime(value);
    char text[64];
    std::snprintf(text, sizeof text, "%02d-%02d-%04d %02d:%02d:%02d", f.day, f.month, f.year,
                  f.hour, f.minute, f.second);
    return text;
}

std::string FormatHourMinute(DateTime value) {
    if (!std::isfinite(value) || std::fabs(value) > kLargestDays) {
        return "00:00";
    }
    // Rounded to the second first so that 10:00 held as 9:59:59.99999 does not show 09:59;
    // then the seconds are dropped, not rounded.
    const std::int64_t seconds = std::llround(std::fabs(value) * kSecondsPerDay);
    const std::int64_t minutes = seconds / 60;
    char text[64];
    std::snprintf(text, sizeof text, "%s%02lld:%02lld", value < 0 && minutes > 0 ? "-" : "",
                  static_cast<long long>(minutes / 60), static_cast<long long>(minutes % 60));
    return text;
}

std::string FormatDayName(const CalendarDate& date) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d%02d%02d", date.year, date.month, date.day);
    return text;
}

}  // namespace wakeline
