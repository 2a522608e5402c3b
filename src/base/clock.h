#pragma once
// The program's one source of time. The platform supplies the system clock; the run owns a
// ProgramClock that every time stamp, track record and wind observation reads.

#include <optional>

#include "base/date_time.h"

namespace wakeline {

// The operating system's clock.
class Clock {
  public:
    virtual ~Clock() = default;
    // The current UTC time as calendar fields; milliseconds are dropped.
    virtual CalendarFields UtcNow() const = 0;
    // The local calendar date at the given UTC date-time (the computer's time zone).
    virtual CalendarDate LocalDateAt(DateTime utc) const = 0;
};

// The run's clock: the system clock in whole seconds, or a time set by a replay of recorded
// data, which then holds until it is set again or cleared. `system` must outlive this object.
class ProgramClock {
  public:
    explicit ProgramClock(const Clock& system) : system_(system) {}

    // The current UTC date-time in whole seconds.
    DateTime NowUtc() const;
    // The local calendar date at NowUtc().
    CalendarDate LocalToday() const;
    // The local calendar date at a given UTC date-time, e.g. a record's own stamp.
    CalendarDate LocalDateAt(DateTime utc) const { return system_.LocalDateAt(utc); }

    void SetReplayTime(DateTime utc) { replayTime_ = utc; }
    void ClearReplayTime() { replayTime_.reset(); }

  private:
    const Clock& system_;
    std::optional<DateTime> replayTime_;
};

}  // namespace wakeline
