#pragma once
// The battery alarm of a run without windows. There is no window to keep open and no button
// to press, so an alarm is kept until the run takes it straight after the check that raised
// it: the run writes it once, as a message (standard error and the log), and counts it as
// noticed, so that the alarm states move on as they would for a sailor who read it, and each
// later alarm is written in its turn.

#include <optional>
#include <string>

#include "power/power_alarm.h"

namespace wakeline {

class HeadlessPowerAlarm : public PowerAlarm {
  public:
    // Raises the alarm with the state's message, unless one is raised and not yet taken: a
    // check may raise it more than once, and the alarm is up already.
    void ShowPowerAlarm(const PowerState& state, DateTime now) override;
    // Nothing is played without a window, so there are no levels to raise or to check.
    std::int16_t CheckSoundLevels(bool, bool) override { return 0; }

    // The alarm raised since the last call, taken down: its message, "" for a state that has
    // none. Take it after the check has ended; the check must not see its own alarm
    // acknowledged.
    std::optional<std::string> TakeRaised();

  private:
    std::optional<std::string> raised_;  // shown, not yet taken
};

}  // namespace wakeline
