// The `wakeline` program run headless as a user would: real files, real signals.

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <csignal>
#include <fstream>
#include <sstream>
#include <string>

namespace {

std::string ReadAll(const QString& path) {
    std::ifstream in(path.toStdString(), std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

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

TEST(Headless, TerminationClosesWithOkAndTheLogTellsEveryStep) {
    QTemporaryDir dir;
    ASSERT_TRUE(QDir(dir.path()).mkpath("boat/traces"));
    const QString ini = dir.filePath("boat/SeaClear_2.ini");
    std::ofstream(ini.toStdString(), std::ios::binary) << "[Program Setup]\r\nDDE=1\r\n";
    const QString log = dir.filePath("logs/deep/WakelineDebug.txt");

    QProcess process;
    Prepare(process, dir);
    process.start(WAKELINE_BINARY, {"--headless", "--log", log, ini + ",,,F"});
    ASSERT_TRUE(process.waitForStarted(10000));
    // Wait until start-up has finished before asking the run to end.
    for (int i = 0; i < 100 && ReadAll(log).find("Form_Load complete") == std::string::npos;
         ++i) {
        QThread::msleep(50);
    }
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);

    const std::string text = ReadAll(log);
    EXPECT_NE(text.find("Form_Load complete\r\n"), std::string::npos);
    EXPECT_NE(text.find("ending trace function\r\n"), std::string::npos);
    const std::string settings = ReadAll(dir.filePath("config/Wakeline/Wakeline.conf"));
    EXPECT_NE(settings.find("FormWidth=4000"), std::string::npos);
}

TEST(Headless, UsageErrorsAndHelp) {
    QProcess process;
    process.start(WAKELINE_BINARY, {"--no-such-option"});
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(process.exitCode(), 2);
    process.start(WAKELINE_BINARY, {"--help"});
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardOutput().contains("--headless"));
}

}  // namespace
