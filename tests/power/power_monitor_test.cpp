// The battery monitor's status text and alarms over runs of battery readings.

#include "power/power_monitor.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "support/run_fakes.h"

namespace wakeline {
namespace {

using Texts = std::vector<std::string>;

// One check: the battery at `seconds` after 22-11-2026 10:00:00 UTC, the status text it gives,
// the alarm it shows ("" none), and whether the sailor then acknowledges the alarm.
struct Check {
    int seconds;
    int percent;
    bool charging;
    const char* status;
    const char* alarm;
    bool acknowledged;
};

struct Laptop {
    Laptop() { monitor.StartWithSoundCheck(); }

    void Run(std::initializer_list<Check> checks) {
        for (const Check& c : checks) {
            const DateTime now = DateTimeFromFields({2026, 11, 22, 10, 0, 0}) + c.seconds / 86400.0;
            battery.status = {c.percent,
                              c.charging ? BatteryStatus::kChargingFlag : std::uint8_t{0}};
            const std::size_t before = alarm.shown.size();
            monitor.PowerCheck(now, true);
            EXPECT_EQ(monitor.StatusText(), c.status) << "at " << c.seconds << " s";
            EXPECT_EQ(Texts(alarm.shown.begin() + before, alarm.shown.end()),
                      *c.alarm != '\0' ? Texts{c.alarm} : Texts{})
                << "at " << c.seconds << " s";
            if (c.acknowledged) {
                monitor.Noticed(now);
            }
        }
    }

    testing::FakeBattery battery;
    testing::RecordingAlarm alarm;
    PowerMonitor monitor{battery, alarm};
};

TEST(PowerCheck, TheSoundCheckWaitsForAReadingAndAsksUntilAcknowledged) {
    Laptop laptop;
    laptop.alarm.soundCheckAnswer = -1;  // no mixer
    laptop.Run({
        {0, 255, true, "no Battery info", "", false},  // nothing read, not even the flags
        {1, 80, false, "80% on battery ", "Check Sound Volume Levels", false},
        {2, 80, false, "80% on battery ", "Check Sound Volume Levels", true},
        {13, 25, false, "25% CHARGE !!! ", "Warning Batteries", false},  // now normal
    });
    EXPECT_EQ(laptop.alarm.soundChecks, (std::vector<std::pair<bool, bool>>(2, {true, false})));
}

TEST(PowerCheck, ChargingToFullAndUnplugging) {
    Laptop().Run({
        {0, 50, true, "50% - charging  00:00", "", false},  // charging began now
        {1800, 98, true, "98% - charging  00:30", "", false},
        // Full: the alarm stays up, said again at every check, until acknowledged.
        {3900, 99, true, "99% - charging  01:05", "Charging Completed 01:05", false},
        {3960, 100, true, "100% - charging  01:06", "Charging Completed 01:06", true},
        {4020, 100, true, "100% - charging  01:07", "", false},
        {4200, 100, false, "100% on battery  00:00", "", false},  // on battery from now on
        {11400, 85, false, "85% on battery  02:00", "", false},
    });
}

TEST(PowerCheck, LowBatteryWarnsThenEscalatesAfterTheQuietTime) {
    // On battery since before the start: no flags changed, so no time is known.
    Laptop().Run({
        {0, 25, false, "25% CHARGE !!! ", "Warning Batteries", true},
        {10, 19, false, "19% CHARGE !!! ", "", false},  // quiet for 10 s, the 10th included
        {20, 25, false, "25% CHARGE !!! ", "", false},  // acknowledged once: not above 20 %
        {21, 19, false, "19% CHARGE !!! ", "Switch Loader On!! ", true},
        {60, 5, false, "5% CHARGE !!! ", "", false},  // acknowledged twice: no more alarms
    });
    // Unplugged before full: the unacknowledged charge is reported first; then straight below
    // 20 % the stronger message comes with the time on battery.
    Laptop().Run({
        {0, 40, true, "40% - charging  00:00", "", false},
        {5400, 35, false, "35% on battery  00:00", "Charging Completed 01:30", true},
        {6000, 15, false, "15% CHARGE !!!  00:10", "Switch Loader On!! 00:10", false},
    });
}

}  // namespace
}  // namespace wakeline
