#include "base/date_time.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace wakeline {
namespace {

// Days from 0000-03-01 of the proleptic Gregorian calendar, counted so that the leap day is
// the last day of its year: the month table is then the same for every year.
constexpr std::int64_t DaysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) {
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const std::int64_t yearOfEra = year - era * 400;
    const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra;
}

struct Civil {
    std::int64_t year;
    int month;
    int day;
};

Civil CivilFromDays(std::int64_t days) {
    const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
    const std::int64_t dayOfEra = days - era * 146097;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t shiftedMonth = (5 * dayOfYear + 2) / 153;
    const int day = static_cast<int>(dayOfYear - (153 * shiftedMonth + 2) / 5 + 1);
    const int month = static_cast<int>(shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9);
    const std::int64_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
    return Civil{year, month, day};
}

constexpr std::int64_t kEpochDays = DaysFromCivil(1899, 12, 30);

// Beyond this many days (some 270,000 years) the fields would not fit their ints.
constexpr double kLargestDays = 1.0e8;

}  // namespace

DateTime DateTimeFromFields(const CalendarFields& fields) {
    const std::int64_t days = DaysFromCivil(fields.year, fields.month, fields.day) - kEpochDays;
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
    const Civil date = CivilFromDays(days + kEpochDays);
    return CalendarFields{static_cast<int>(date.year),
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
