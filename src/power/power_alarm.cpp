#include "power/power_alarm.h"

namespace wakeline {
namespace {

std::string WithElapsed(std::string text, DateTime start, DateTime now) {
    if (start != 0) {
        text += FormatHourMinute(now - start);
    }
    return text;
}

}  // namespace

std::string AlarmMessage(const PowerState& state, DateTime now) {
    switch (state.AlarmState) {
        case -2:
            return "Check Sound Volume Levels";
        case -1:
            return WithElapsed("Charging Completed ", state.ChargeStart, now);
        case 0:
            return WithElapsed("Warning Batteries", state.DischargeStart, now);
        case 1:
            return WithElapsed("Switch Loader On!! ", state.DischargeStart, now);
        default:
            return {};
    }
}

}  // namespace wakeline
