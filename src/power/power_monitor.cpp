#include "power/power_monitor.h"

#include "base/elapsed_seconds.h"

namespace wakeline {
namespace {

// The battery thresholds the sailor is used to; the alarm keeps quiet this long after each
// acknowledgement so that pressing the button is not answered by the window at once.
constexpr int kChargedPercent = 99;
constexpr int kWarningPercent = 30;
constexpr int kEscalationPercent = 20;
constexpr double kQuietSeconds = 10;

std::string Since(DateTime start, DateTime now) {
    return start != 0 ? " " + FormatHourMinute(now - start) : std::string();
}

}  // namespace

void PowerMonitor::PowerCheck(DateTime now, bool soundLoud) {
    statusText_ = BuildStatus(now, soundLoud);
}

std::string PowerMonitor::BuildStatus(DateTime now, bool soundLoud) {
    const BatteryStatus reading = battery_.Read();
    const int percent = reading.BatteryLifePercent;
    if (percent == BatteryStatus::kUnknownPercent) {
        level_ = BatteryLevel::Unknown;
        return "no Battery info";
    }
    std::string text = std::to_string(percent) + "%";

    if (state_.AlarmState == -2) {
        if (alarm_.CheckSoundLevels(soundLoud, false) != 0) {
            alarm_.ShowPowerAlarm(state_, now);
        } else {
            state_.AlarmState = 0;
        }
    }

    const std::int16_t flags = reading.BatteryFlag;
    if (flags != state_.LastBatteryStatus) {
        // Any change of the flags counts: from flags without the charging bit charging began,
        // otherwise discharging did.
        if ((state_.LastBatteryStatus & BatteryStatus::kChargingFlag) == 0) {
            state_.ChargeStart = now;
        } else {
            state_.DischargeStart = now;
        }
        state_.LastBatteryStatus = flags;
    }

    if ((flags & BatteryStatus::kChargingFlag) != 0) {
        text += " - charging " + Since(state_.ChargeStart, now);
        level_ = BatteryLevel::Charging;
        if (percent < kChargedPercent) {
            state_.AlarmState = -1;
        } else if (state_.AlarmState == -1) {
            alarm_.ShowPowerAlarm(state_, now);
        }
        return text;
    }
    if (percent >= kWarningPercent) {
        text += " on battery " + Since(state_.DischargeStart, now);
        level_ = BatteryLevel::OnBattery;
        if (state_.AlarmState == -1) {
            alarm_.ShowPowerAlarm(state_, now);
        }
        return text;
    }

    text += " CHARGE !!! " + Since(state_.DischargeStart, now);
    level_ = percent < kEscalationPercent ? BatteryLevel::Escalation : BatteryLevel::Warning;
    const bool quietOver = ElapsedSeconds(state_.LastNoticed, now) > kQuietSeconds;
    if (percent < kEscalationPercent && quietOver) {
        // Below 20 % the window opens straight with the stronger message.
        if (state_.AlarmState == 0) {
            state_.AlarmState = 1;
        }
        if (state_.AlarmState < 2) {
            alarm_.ShowPowerAlarm(state_, now);
        }
    } else if (quietOver && state_.AlarmState == 0) {
        alarm_.ShowPowerAlarm(state_, now);
    }
    return text;
}

void PowerMonitor::Noticed(DateTime now) {
    state_.AlarmState =
        state_.AlarmState == -2 ? 0 : static_cast<std::int16_t>(state_.AlarmState + 1);
    state_.LastNoticed = now;
}

}  // namespace wakeline
