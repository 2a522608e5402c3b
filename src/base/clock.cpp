#include "base/clock.h"

namespace wakeline {

DateTime ProgramClock::NowUtc() const {
    if (replayTime_) {
        return *replayTime_;
    }
    return DateTimeFromFields(system_.UtcNow());
}

CalendarDate ProgramClock::LocalToday() const {
    return system_.LocalDateAt(NowUtc());
}

}  // namespace wakeline
