#include "base/platform/system_clock.h"

#include <cmath>
#include <ctime>

namespace wakeline {
namespace {

// Days from 1899-12-30 to the Unix epoch 1970-01-01.
constexpr double kUnixEpochDays = 25569.0;

}  // namespace

CalendarFields SystemClock::UtcNow() const {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    return CalendarFields{utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday,
                          utc.tm_hour,        utc.tm_min,     utc.tm_sec};
}

CalendarDate SystemClock::LocalDateAt(DateTime utc) const {
    const double seconds = std::round((utc - kUnixEpochDays) * kSecondsPerDay);
    const auto when = static_cast<std::time_t>(seconds);
    std::tm local{};
    localtime_r(&when, &local);
    return CalendarDate{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

}  // namespace wakeline
