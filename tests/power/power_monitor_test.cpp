// The battery monitor's status text and alarm states over runs of battery readings.

#include "power/power_monitor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/fakes.h"
#include "support/run_fakes.h"

namespace wakeline {
namespace {

using Texts = std::vector<std::string>;

// 22-11-2026 10:00:00 UTC, and moments after it.
const DateTime kStart = DateTimeFromFields({2026, 11, 22, 10, 0, 0});
DateTime Minutes(double minutes) {
    return kStart + minutes / 1440.0;
}
DateTime Seconds(double seconds) {
    return kStart + seconds / 86400.0;
}

struct Laptop {
    Laptop() { monitor.StartWithSoundCheck(); }

    // One check with the battery at `percent`, charging or not; returns the status text.
    std::string Check(DateTime now, int percent, bool charging) {
        battery.status = {percent, charging ? BatteryStatus::kChargingFlag : std::uint8_t{0}};
        monitor.PowerCheck(now, true);
        return monitor.StatusText();
    }

    testing::FakeBattery battery;
    testing::RecordingAlarm alarm;
    PowerMonitor monitor{battery, alarm};
};

TEST(PowerCheck, WithoutBatteryChangesNothing) {
    Laptop laptop;
    EXPECT_EQ(laptop.Check(kStart, 255, true), "no Battery info");
    EXPECT_EQ(laptop.monitor.State().AlarmState, -2);
    EXPECT_EQ(laptop.monitor.State().ChargeStart, 0);
    EXPECT_TRUE(laptop.alarm.soundChecks.empty());
}

TEST(PowerCheck, SoundCheckAtTheFirstReadingAsksUntilAcknowledged) {
    Laptop laptop;
    laptop.alarm.soundCheckAnswer = -1;  // no mixer
    EXPECT_EQ(laptop.Check(kStart, 80, false), "80% on battery ");
    laptop.Check(Seconds(1), 80, false);
    EXPECT_EQ(laptop.alarm.shown, Texts(2, "Check Sound Volume Levels"));
    EXPECT_EQ(laptop.alarm.soundChecks.front(), std::make_pair(true, false));
    laptop.monitor.Noticed(Seconds(2));
    EXPECT_EQ(laptop.monitor.State().AlarmState, 0);
    laptop.Check(Seconds(3), 80, false);
    EXPECT_EQ(laptop.alarm.soundChecks.size(), 2U);
}

TEST(PowerCheck, ChargingToFullAndUnplugging) {
    Laptop laptop;
    // The charger goes in at 50 %: charging began now, the completion alarm is armed.
    EXPECT_EQ(laptop.Check(kStart, 50, true), "50% - charging  00:00");
    EXPECT_EQ(laptop.monitor.State().AlarmState, -1);
    EXPECT_EQ(laptop.Check(Minutes(30), 98, true), "98% - charging  00:30");
    EXPECT_TRUE(laptop.alarm.shown.empty());
    // Full: the alarm stays up, said again at every check, until acknowledged.
    EXPECT_EQ(laptop.Check(Minutes(65), 99, true), "99% - charging  01:05");
    laptop.Check(Minutes(66), 100, true);
    EXPECT_EQ(laptop.alarm.shown, (Texts{"Charging Completed 01:05", "Charging Completed 01:06"}));
    laptop.monitor.Noticed(Minutes(66));
    EXPECT_EQ(laptop.monitor.State().AlarmState, 0);
    laptop.Check(Minutes(67), 100, true);
    EXPECT_EQ(laptop.alarm.shown.size(), 2U);
    // Unplugged: running on battery from now on.
    EXPECT_EQ(laptop.Check(Minutes(70), 100, false), "100% on battery  00:00");
    EXPECT_EQ(laptop.Check(Minutes(190), 85, false), "85% on battery  02:00");
    EXPECT_EQ(laptop.monitor.State().ChargeStart, kStart);
}

TEST(PowerCheck, LowBatteryWarnsThenEscalatesAfterTheQuietTime) {
    Laptop laptop;
    // On battery since before the start: no flags changed, so no time is known.
    EXPECT_EQ(laptop.Check(kStart, 25, false), "25% CHARGE !!! ");
    EXPECT_EQ(laptop.alarm.shown, Texts{"Warning Batteries"});
    laptop.monitor.Noticed(Seconds(1));
    EXPECT_EQ(laptop.monitor.State().AlarmState, 1);
    // Acknowledged once: not again above 20 %, and not within 10 s below it.
    laptop.Check(Seconds(20), 25, false);
    laptop.Check(Seconds(10), 19, false);
    EXPECT_EQ(laptop.alarm.shown.size(), 1U);
    laptop.Check(Seconds(12), 19, false);
    EXPECT_EQ(laptop.alarm.shown.back(), "Switch Loader On!! ");
    laptop.monitor.Noticed(Seconds(13));
    laptop.Check(Seconds(60), 5, false);
    EXPECT_EQ(laptop.alarm.shown.size(), 2U);

    // Unplugged before full, the unacknowledged charge is reported first; then straight
    // below 20 % the stronger message comes with the time on battery.
    Laptop unplugged;
    unplugged.Check(kStart, 40, true);
    EXPECT_EQ(unplugged.Check(Minutes(90), 35, false), "35% on battery  00:00");
    unplugged.monitor.Noticed(Minutes(90));
    EXPECT_EQ(unplugged.Check(Minutes(100), 15, false), "15% CHARGE !!!  00:10");
    EXPECT_EQ(unplugged.monitor.State().AlarmState, 1);
    EXPECT_EQ(unplugged.alarm.shown,
              (Texts{"Charging Completed 01:30", "Switch Loader On!! 00:10"}));
}

}  // namespace
}  // namespace wakeline
