#include "shell/platform/headless_power_alarm.h"

namespace wakeline {

void HeadlessPowerAlarm::ShowPowerAlarm(const PowerState& state, DateTime now) {
    // A check may call again before the acknowledgement has run; the alarm is up already.
    if (pending_) {
        return;
    }
    const std::string message = AlarmMessage(state, now);
    if (!message.empty()) {
        dialogs_.ShowMessage(message);
    }
    pending_ = true;
    noticeLater_([this] {
        pending_ = false;
        if (acknowledge_) {
            acknowledge_();
        }
    });
}

}  // namespace wakeline
