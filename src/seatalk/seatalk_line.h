#pragma once
// The data line of the SeaTalk modes: the values last decoded from the bus, converted to the
// units and the 23 fields of the chart plotter's line, so the display and the track writer
// take it like a line from the link.

#include <string>

#include "base/date_time.h"
#include "seatalk/seatalk_decoder.h"

namespace wakeline {

struct SeaTalkLine {
    // 23 comma-separated fields ending in CR LF: positions in degrees, angles in radians,
    // wind speeds in metres per second, SOG and SPD in knots, depth in metres.
    std::string line;
    // The bus's date-time as "YYYY MM DD HH:SS:MM" (seconds in the place of the minutes and
    // the month repeated, the instrument display's mask kept as it stands), or, before the
    // bus sent a time, `now` as "DD-MM-YYYY HH:MM:SS" followed by " (CZ)".
    std::string timeStamp;
};

// Composes the line from the stored values. The magnetic variation (-0.03875 rad), the 0.3 m
// added to the depth and the zero VMG are fixed on purpose. With a bearing to a waypoint of
// exactly 0 the waypoint fields 15 to 22 are empty; otherwise the cross-track error, bearing
// and distance sit at fields 17, 18, 19 and the name at 21. A value that does not fit a 32-bit
// float is written as the formatter writes it ("inf", "nan"); nothing fails.
SeaTalkLine ComposeSeaTalkLine(const SeaTalkValues& values, DateTime now);

// A position in signed degrees with the mask "000.0000" ("052.5000", "-004.2500").
std::string FormatPosition(double degrees);

// The bus's date-time with the mask "YYYY MM DD HH:SS:MM": 14:30:24 on 2024-03-15 gives
// "2024 03 15 14:24:03".
std::string FormatSeaTalkTime(DateTime value);

}  // namespace wakeline
