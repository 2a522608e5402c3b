#pragma once
// Seconds between two date-times, for comparisons with thresholds given in seconds.

#include "base/date_time.h"

namespace wakeline {

// (to - from) in seconds, rounded to whole milliseconds. A date-time of today carries the
// time of day as a binary fraction of about 4.6e4 days, so the difference of two whole-second
// stamps ten seconds apart reads as 9.9999994 or 10.0000006 seconds about as often as exactly
// 10. The clock has whole seconds, so the rounding removes only that noise, and a comparison
// such as "at least 10 seconds" or "more than one hour" holds exactly at the boundary.
double ElapsedSeconds(DateTime from, DateTime to);

}  // namespace wakeline
