// The `wakeline` program run headless as a user would: without its settings, on a low battery.

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <fstream>
#include <string>

namespace {

// A process with its own settings and state directories under `dir`.
void Prepare(QProcess& process, const QTemporaryDir& dir) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_CONFIG_HOME", dir.filePath("config"));
    env.insert("XDG_STATE_HOME", dir.filePath("state"));
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(dir.path());
}

TEST(Headless, WithoutSettingsFileShowsBothMessagesAndFails) {
    QTemporaryDir dir;
    QProcess process;
    Prepare(process, dir);
    process.start(WAKELINE_BINARY, {"--headless"});
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_NE(process.exitCode(), 0);
    const std::string errors = process.readAllStandardError().toStdString();
    EXPECT_NE(errors.find("Seaclear ini file cannot be found: \r\n\r\n"), std::string::npos);
    EXPECT_NE(errors.find("Cannot start, no seaclear inifile found:"), std::string::npos);
}

TEST(Headless, ALowBatteryIsReportedOnceAndCountsAsNoticed) {
    QTemporaryDir dir;
    ASSERT_TRUE(QDir(dir.path()).mkpath("boat/traces"));
    ASSERT_TRUE(QDir(dir.path()).mkpath("power/BAT0"));
    const QString ini = dir.filePath("boat/SeaClear_2.ini");
    std::ofstream(ini.toStdString(), std::ios::binary) << "[Program Setup]\r\nDDE=1\r\n";
    std::ofstream(dir.filePath("power/BAT0/type").toStdString()) << "Battery\n";
    std::ofstream(dir.filePath("power/BAT0/capacity").toStdString()) << "25\n";
    std::ofstream(dir.filePath("power/BAT0/status").toStdString()) << "Discharging\n";
    QProcess process;
    Prepare(process, dir);
    // Nobody listens on the link: the timer runs on, checking the battery on every tick.
    process.start(WAKELINE_BINARY, {"--headless", "--power-supply", dir.filePath("power"), "--link",
                                    "127.0.0.1:1", ini});
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

}  // namespace
