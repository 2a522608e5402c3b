#include "shell/platform/headless_power_alarm.h"

#include <utility>

namespace wakeline {

void HeadlessPowerAlarm::ShowPowerAlarm(const PowerState& state, DateTime now) {
    if (!raised_) {
        raised_ = AlarmMessage(state, now);
    }
}

std::optional<std::string> HeadlessPowerAlarm::TakeRaised() {
    return std::exchange(raised_, std::nullopt);
}

}  // namespace wakeline
