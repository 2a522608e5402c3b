#pragma once
// What the wind graph draws, computed without the window: the observations of the history from
// a start time on, the axes and their ticks, and the sailor's entry of a new start time.
// Directions in degrees, speeds in knots, times as UTC date-times (days since 1899-12-30).

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date_time.h"
#include "wind/wind_data.h"

namespace wakeline {

struct WindGraphPoint {
    DateTime time;
    double direction;  // unwrapped: may lie outside 0..360
    double speed;
};

struct WindGraphModel {
    bool empty = true;  // no observation at or after start
    DateTime start = 0,
             end = 0;  // time axis: start .. newest observation (at least start + 1 minute)
    std::vector<WindGraphPoint> points;  // observations at or after start, oldest first
    double directionMin = 0,
           directionMax = 360;           // axis, whole multiples of the tick step, unwrapped
    std::vector<double> directionTicks;  // every 1/2/5/10/20/45/90 degrees, 4..8 ticks
    double speedMax = 10;                // axis 0..speedMax knots, a whole tick multiple
    std::vector<double> speedTicks;      // every 1/2/5/10/20/50 knots from 0, 4..8 ticks
    std::vector<DateTime> timeTicks;     // on whole 1/2/5/10/15/30/60... minutes of UTC, at
                                         // most 8; 3 or more once the axis spans 3 minutes
};

// Directions unwrapped around their circular mean, so 355, 5, 358 read as 355, 365, 358. The
// direction axis spans at least 10 degrees around the points; an empty model keeps the default
// axes and no ticks.
WindGraphModel MakeWindGraph(const WindData& history, DateTime start);

// The default start: the oldest observation of the last hour before the newest (0 when empty).
DateTime DefaultGraphStart(const WindData& history);

// The sailor's entry for a new start: "HH:MM" (that UTC time on the day of `reference`, the
// newest observation's time, or the day before when that would lie after reference) or
// "yyyy/mm/dd HH:MM"; blanks around are allowed, hours and minutes of one or two digits, hours
// 0..23, minutes 0..59, a date of the calendar. Empty for anything else (the window then says
// "Invalid time value: " + the entry).
std::optional<DateTime> ParseGraphStart(std::string_view entry, DateTime reference);

// "HH:MM" of a UTC date-time (rounded to the second, then the seconds dropped), for axis labels
// and read-outs.
std::string GraphTimeText(DateTime t);

// The time-weighted mean of the observations of the last `minutes` before the newest one,
// through AverageWind: the observations whose time lies at or after newest - minutes (counted
// back from the newest while that holds) are passed as lastN, with the newest direction as
// reference. An empty history gives AverageWind's all-zero observation.
WindObservation AverageLastMinutes(const WindData& history, double minutes);

}  // namespace wakeline
