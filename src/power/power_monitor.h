#pragma once
// The battery monitor: on every tick of the main timer it reads the battery, builds the power
// status text of the main window, remembers when charging and discharging began, and opens
// the alarm window when the battery is low, when charging has completed, or when the sound
// check at start-up found that the alarm might not be heard.

#include <string>

#include "power/battery_status.h"
#include "power/power_alarm.h"

namespace wakeline {

// How the battery stood at a check: unknown (no reading), charging, on battery at 30 % or
// more, below the warning's 30 %, or below the escalation's 20 %.
enum class BatteryLevel { Unknown, Charging, OnBattery, Warning, Escalation };

class PowerMonitor {
  public:
    // Both must outlive the monitor.
    PowerMonitor(BatterySource& battery, PowerAlarm& alarm) : battery_(battery), alarm_(alarm) {}

    // Start-up: the first check runs the sound check.
    void StartWithSoundCheck() { state_.AlarmState = -2; }

    // One check at `now` (UTC). `soundLoud` is the user's "SetSoundLoud" setting.
    void PowerCheck(DateTime now, bool soundLoud);

    // The user acknowledged the alarm window at `now`: the state moves on (the sound check's
    // state to normal, every other state up by one) and the alarm keeps quiet for 10 seconds.
    void Noticed(DateTime now);

    // The main window's power status text, "" before the first check.
    const std::string& StatusText() const { return statusText_; }
    const PowerState& State() const { return state_; }
    // The battery at the last check; Unknown before the first.
    BatteryLevel Level() const { return level_; }

  private:
    std::string BuildStatus(DateTime now, bool soundLoud);

    BatterySource& battery_;
    PowerAlarm& alarm_;
    PowerState state_;
    std::string statusText_;
    BatteryLevel level_ = BatteryLevel::Unknown;
};

}  // namespace wakeline
