// The `wakeline` program run headless as a user would: without its settings, on a low battery.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <fstream>
#include <optional>
#include <string>

#include "app/platform/boat_run.h"
#include "shell/platform/headless_power_alarm.h"

namespace wakeline {
namespace {

TEST(Headless, WithoutItsSettingsFileTheRunFails) {
    testing::Boat boat({"DDE=1"});
    ASSERT_TRUE(QFile::remove(boat.IniPath()));
    QProcess process;
    boat.Start(process, {});
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_NE(process.exitCode(), 0);
    EXPECT_TRUE(
        process.readAllStandardError().contains("Cannot start, no seaclear inifile found:"));
}

TEST(Headless, ALowBatteryIsReportedOnceAndCountsAsNoticed) {
    testing::Boat boat({"DDE=1"});
    QTemporaryDir power;
    ASSERT_TRUE(QDir(power.path()).mkpath("BAT0"));
    std::ofstream(power.filePath("BAT0/type").toStdString()) << "Battery\n";
    std::ofstream(power.filePath("BAT0/capacity").toStdString()) << "25\n";
    std::ofstream(power.filePath("BAT0/status").toStdString()) << "Discharging\n";
    QProcess process;
    // Nobody listens on the link: the timer runs on, checking the battery on every tick.
    boat.Start(process, {"--power-supply", power.path(), "--link", "127.0.0.1:1"});
    QByteArray errors;
    for (int i = 0; i < 100 && !errors.contains("Warning Batteries"); ++i) {
        process.waitForReadyRead(100);
        errors += process.readAllStandardError();
    }
    // Long enough for many more checks: acknowledged, the warning is not repeated.
    process.waitForFinished(1000);
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(10000));
    errors += process.readAllStandardError();
    EXPECT_EQ(errors.count("Warning Batteries"), 1) << errors.toStdString();
    EXPECT_EQ(process.exitCode(), 0);
}

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
