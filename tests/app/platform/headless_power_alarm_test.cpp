// The battery alarm without a window: raised once, kept until the run takes it after the check.

#include "shell/platform/headless_power_alarm.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace wakeline {
namespace {

TEST(HeadlessPowerAlarm, KeepsEachAlarmOnceUntilTheRunTakesIt) {
    HeadlessPowerAlarm alarm;
    PowerState state;
    alarm.ShowPowerAlarm(state, 0);
    state.AlarmState = 1;
    alarm.ShowPowerAlarm(state, 0);  // the same check again: the first alarm is still up
    EXPECT_EQ(alarm.TakeRaised(), std::optional<std::string>("Warning Batteries"));
    EXPECT_EQ(alarm.TakeRaised(), std::nullopt) << "taken once, acknowledged once";

    alarm.ShowPowerAlarm(state, 0);
    EXPECT_EQ(alarm.TakeRaised(), std::optional<std::string>("Switch Loader On!! "));
    EXPECT_EQ(alarm.CheckSoundLevels(true, false), 0);
}

}  // namespace
}  // namespace wakeline
