#pragma once
// The battery alarm of a run without windows. There is no window to keep open and no button
// to press, so an alarm is written once, as a message (standard error and the log), and
// counts as noticed straight after the check that raised it: the alarm states then move on
// as they would for a sailor who read it, and each later alarm is written in its turn.

#include <functional>

#include "base/user_dialogs.h"
#include "power/power_alarm.h"

namespace wakeline {

class HeadlessPowerAlarm : public PowerAlarm {
  public:
    // `noticeLater` must run the given acknowledgement after the current check has ended
    // (queued on the event loop); the check must not see its own alarm acknowledged.
    HeadlessPowerAlarm(UserDialogs& dialogs, std::function<void(std::function<void()>)> noticeLater)
        : dialogs_(dialogs), noticeLater_(std::move(noticeLater)) {}

    // Called once the run exists: acknowledges the alarm at the given time.
    void SetAcknowledge(std::function<void()> acknowledge) {
        acknowledge_ = std::move(acknowledge);
    }

    void ShowPowerAlarm(const PowerState& state, DateTime now) override;
    // Nothing is played without a window, so there are no levels to raise or to check.
    std::int16_t CheckSoundLevels(bool, bool) override { return 0; }

  private:
    UserDialogs& dialogs_;
    std::function<void(std::function<void()>)> noticeLater_;
    std::function<void()> acknowledge_;
    bool pending_ = false;  // shown, not yet acknowledged
};

}  // namespace wakeline
