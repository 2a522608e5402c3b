#pragma once
// The battery monitor: on every tick of the main timer it reads the battery, builds the power
// status text of the main window, remembers when charging and discharging began, and opens
// the alarm window when the battery is low, when charging has completed, or when the sound
// check at start-up found that the alarm might not be heard.

#include <string>

#include "power/battery_status.h"
#include "power/power_alarm.h"

namespace wakeline {

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

  private:
    std::string BuildStatus(DateTime now, bool soundLoud);

    BatterySource& battery_;
    PowerAlarm& alarm_;
    PowerState state_;
    std::string statusText_;
};

}  // namespace wakeline
