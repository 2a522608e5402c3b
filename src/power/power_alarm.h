#pragma once
// What the battery monitor asks of the loud half of the power monitor: the alarm window and
// the check that the alarm can be heard.

#include <cstdint>
#include <string>

#include "base/date_time.h"

namespace wakeline {

// The battery alarm's state and the moments it needs, kept for the whole run.
struct PowerState {
    // -2 sound check pending; -1 charging, "Charging Completed" armed; 0 normal, battery
    // warning armed; 1 first warning acknowledged; 2 or more: no further battery alarm.
    std::int16_t AlarmState = 0;
    DateTime ChargeStart = 0;     // when charging was last seen to begin; 0 = unknown
    DateTime DischargeStart = 0;  // when running on battery was last seen to begin; 0 = unknown
    DateTime LastNoticed = 0;     // when the user last acknowledged the alarm
    std::int16_t LastBatteryStatus = 0;  // the status flags of the previous check
};

class PowerAlarm {
  public:
    virtual ~PowerAlarm() = default;
    // Opens the alarm window (or brings it up when it is open); it says what `state` calls for.
    virtual void ShowPowerAlarm(const PowerState& state, DateTime now) = 0;
    // Raises the speaker and wave volumes when `loud` (or puts the saved ones back when
    // `restore`). Non-zero when the mixer could not be used or anything was changed, so that
    // the user is asked to check the levels.
    virtual std::int16_t CheckSoundLevels(bool loud, bool restore) = 0;
};

// The alarm window's message for the state: the elapsed time since charging or discharging
// began is appended as "HH:MM" where the state calls for it and the start is known. Empty
// for states outside -2..1, which leave the window's message as it was.
std::string AlarmMessage(const PowerState& state, DateTime now);

}  // namespace wakeline
