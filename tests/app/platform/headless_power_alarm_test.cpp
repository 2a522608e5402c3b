// The battery alarm without a window: written once, acknowledged after the check.

#include "shell/platform/headless_power_alarm.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/fakes.h"

namespace wakeline {
namespace {

TEST(HeadlessPowerAlarm, WritesEachAlarmOnceAndAcknowledgesItAfterTheCheck) {
    testing::RecordingDialogs dialogs;
    std::vector<std::function<void()>> queued;
    HeadlessPowerAlarm alarm(dialogs,
                             [&](std::function<void()> later) { queued.push_back(later); });
    int acknowledged = 0;
    alarm.SetAcknowledge([&] { ++acknowledged; });

    PowerState state;
    alarm.ShowPowerAlarm(state, 0);
    alarm.ShowPowerAlarm(state, 0);  // the same check, or one before the queue ran
    EXPECT_EQ(acknowledged, 0);
    ASSERT_EQ(queued.size(), 1U);
    queued.front()();
    EXPECT_EQ(acknowledged, 1);

    state.AlarmState = 1;
    alarm.ShowPowerAlarm(state, 0);
    EXPECT_EQ(dialogs.messages,
              (std::vector<std::string>{"Warning Batteries", "Switch Loader On!! "}));
    EXPECT_EQ(alarm.CheckSoundLevels(true, false), 0);
}

}  // namespace
}  // namespace wakeline
