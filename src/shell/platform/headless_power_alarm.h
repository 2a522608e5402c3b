#pragma once
// The battery alarm of a run without windows. There is no window to keep open and no button
// to press, so an alarm is kept until the run takes it straight after the check that raised
// it: the run writes it once, as a message (standard error and the log), and counts it as
// noticed, so that the alarm states move on as they would for a sailor who read it, and each
// later alarm is written in its turn. The sound check is the machine's all the same: the
// levels it raises serve whoever hears the machine, and the close puts them back.

#include <optional>
#include <string>

#include "power/power_alarm.h"
#include "power/sound_levels.h"

namespace wakeline {

class HeadlessPowerAlarm : public PowerAlarm {
  public:
    // `levels` must outlive the alarm.
    explicit HeadlessPowerAlarm(SoundLevels& levels) : levels_(levels) {}

    // Raises the alarm with the state's message, unless one is raised and not yet taken: a
    // check may raise it more than once, and the alarm is up already.
    void ShowPowerAlarm(const PowerState& state, DateTime now) override;
    std::int16_t CheckSoundLevels(bool loud, bool restore) override {
        return levels_.CheckSoundLevels(loud, restore);
    }

    // The alarm raised since the last call, taken down: its message, "" for a state that has
    // none. Take it after the check has ended; the check must not see its own alarm
    // acknowledged.
    std::optional<std::string> TakeRaised();

  private:
    SoundLevels& levels_;
    std::optional<std::string> raised_;  // shown, not yet taken
};

}  // namespace wakeline
