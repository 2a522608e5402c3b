#pragma once
// Date-times as the program keeps them: a 64-bit float counting days since 1899-12-30 00:00,
// the fraction being the time of day (one hour = 1/24, one second = 1/86400). UTC throughout.

#include <string>

namespace wakeline {

using DateTime = double;

inline constexpr double kSecondsPerDay = 86400.0;

// A calendar date and time of day. Months and days count from 1.
struct CalendarFields {
    int year = 1899;
    int month = 12;
    int day = 30;
    int hour = 0;
    int minute = 0;
    int second = 0;
    bool operator==(const CalendarFields&) const = default;
};

// A calendar date alone (the local date that names a track file).
struct CalendarDate {
    int year = 1899;
    int month = 12;
    int day = 30;
    bool operator==(const CalendarDate&) const = default;
};

// True when the year, month and day name a day of the Gregorian calendar (proleptic: any
// year, leap years by the 4/100/400 rule). Month and day count from 1.
bool IsValidDate(int year, int month, int day);

// The date-time of calendar fields (the date's whole days plus the time of day).
DateTime DateTimeFromFields(const CalendarFields& fields);

// The calendar fields of a date-time, rounded to the nearest second. A date-time before
// 1899-12-30 counts its fraction forwards from its whole day, as stored dates are read
// (-1.25 is 1899-12-29 06:00). A value that is not finite, or lies more than 100 million
// days from 1899-12-30, gives the default fields (1899-12-30 00:00).
CalendarFields FieldsFromDateTime(DateTime value);

// "YYYYMMDD HH:MM:SS", the time stamp of track records, notes and the polar file's header.
std::string FormatStampTime(DateTime value);

// "DD-MM-YYYY HH:MM:SS", the time stamp of the diagnostic log and of the status text; the
// same fixed form at midnight.
std::string FormatLogTime(DateTime value);

// "HH:MM" of a time of day or of a duration (whole minutes, hours may exceed 23). The value
// is rounded to the second, then the seconds are dropped; a negative duration of a minute or
// more is shown with "-".
std::string FormatHourMinute(DateTime value);

// "YYYYMMDD", the name of the day's track file without its ".TRT".
std::string FormatDayName(const CalendarDate& date);

}  // namespace wakeline
