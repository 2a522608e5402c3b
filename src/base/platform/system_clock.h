#pragma once
// The system clock through the C library: UTC from the real-time clock, local dates through
// the computer's time zone (TZ).

#include "base/clock.h"

namespace wakeline {

class SystemClock : public Clock {
  public:
    CalendarFields UtcNow() const override;
    CalendarDate LocalDateAt(DateTime utc) const override;
};

}  // namespace wakeline
