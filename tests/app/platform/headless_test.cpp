// The `wakeline` program run headless as a user would: without its settings, on a low battery.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/platform/boat_run.h"
#include "shell/platform/headless_power_alarm.h"
#include "support/run_fakes.h"

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
    // The sound check's alarm ("Check Sound Volume Levels": no sound server here) comes first,
    // and after its acknowledgement the battery alarm keeps quiet for 10 seconds.
    for (int i = 0; i < 200 && !errors.contains("Warning Batteries"); ++i) {
        process.waitForReadyRead(100);
        errors += process.readAllStandardError();
    }
    // Long enough for many more checks: acknowledged, the warning is not repeated.
    process.waitForFinished(1000);
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(10000));
    errors += process.readAllStandardError();
    EXPECT_EQ(errors.count("Warning Batteries"), 1) << errors.toStdString();
    EXPECT_EQ(errors.count("Check Sound Volume Levels"), 1) << errors.toStdString();
    EXPECT_EQ(process.exitCode(), 0);
}

TEST(Headless, TheTrackIsWrittenAsSoonAsTheBatteryRunsLow) {
    testing::Boat boat({"DDE=1", "Track Time=0", "Track Distance=5", "Track CompDev=0"}, false);
    QTemporaryDir power;
    ASSERT_TRUE(QDir(power.path()).mkpath("BAT0"));
    const std::string capacity = power.filePath("BAT0/capacity").toStdString();
    std::ofstream(power.filePath("BAT0/type").toStdString()) << "Battery\n";
    std::ofstream(capacity) << "35\n";
    std::ofstream(power.filePath("BAT0/status").toStdString()) << "Discharging\n";
    QProcess process;
    // The disk is written only every hour: the records of these lines wait in memory.
    boat.Start(process, {"--replay", "-", "--power-supply", power.path()}, "UTC", ",,3600,F");
    std::string lines;
    std::vector<std::string> expected;
    for (int i = 1; i <= 5; ++i) {
        expected.push_back(testing::DataLine(i));  // some 11 m apart, each a record
        lines += expected.back() + "\n";
    }
    process.write(lines.data(), qint64(lines.size()));
    const auto waitFor = [&](auto done) {
        for (int i = 0; i < 100 && !done(); ++i) {
            process.waitForFinished(100);
        }
        return done();
    };
    ASSERT_TRUE(waitFor([&] {
        return testing::HandledLines(testing::ReadFileBytes(boat.LogPath()), "55.").size() == 5;
    }));
    process.waitForFinished(300);  // ticks at 35 %: nothing written yet
    EXPECT_EQ(testing::RecordedLines(boat, "55."), std::vector<std::string>{});

    std::ofstream(capacity) << "25\n";
    ASSERT_TRUE(waitFor([&] { return testing::RecordedLines(boat, "55.").size() == 5; }));
    EXPECT_EQ(testing::RecordedLines(boat, "55."), expected);
    // Where the system bus is missing, as here, the run says that it cannot watch for a
    // suspend, and goes on.
    EXPECT_NE(testing::ReadFileBytes(boat.LogPath()).find("Suspend not watched"),
              std::string::npos);

    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(process.exitCode(), 0);
}

TEST(HeadlessPowerAlarm, KeepsEachAlarmOnceUntilTheRunTakesIt) {
    testing::FakeSoundLevels levels;
    HeadlessPowerAlarm alarm(levels);
    PowerState state;
    alarm.ShowPowerAlarm(state, 0);
    state.AlarmState = 1;
    alarm.ShowPowerAlarm(state, 0);  // the same check again: the first alarm is still up
    EXPECT_EQ(alarm.TakeRaised(), std::optional<std::string>("Warning Batteries"));
    EXPECT_EQ(alarm.TakeRaised(), std::nullopt) << "taken once, acknowledged once";

    alarm.ShowPowerAlarm(state, 0);
    EXPECT_EQ(alarm.TakeRaised(), std::optional<std::string>("Switch Loader On!! "));
    // The sound check is the machine's, with or without a window.
    alarm.CheckSoundLevels(true, false);
    EXPECT_EQ(levels.checks, (std::vector<std::pair<bool, bool>>{{true, false}}));
}

}  // namespace
}  // namespace wakeline
