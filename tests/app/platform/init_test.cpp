// `wakeline-tool init` as a sailor uses it: the starter settings file it writes is read by the
// real `wakeline`, which records by exactly the thresholds the file states and into the track
// directory it names; and a file that is there is never replaced.

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <fstream>
#include <string>

#include "app/platform/boat_run.h"

namespace wakeline::testing {
namespace {

struct ProgramRun {
    int status = -1;
    std::string out, err;
};

// Runs `program` with `args` in a home of its own under `home`, in UTC.
ProgramRun RunIn(const QString& home, const QString& program, const QStringList& args) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("HOME", home);
    env.insert("XDG_CONFIG_HOME", home + "/config");
    env.insert("XDG_DATA_HOME", home + "/data");
    env.insert("XDG_STATE_HOME", home + "/state");
    env.insert("TZ", "UTC");
    env.remove("DISPLAY");
    env.remove("WAYLAND_DISPLAY");
    QProcess process;
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(home);
    process.start(program, args);
    ProgramRun run;
    if (!process.waitForFinished(20000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput().toStdString();
    run.err = process.readAllStandardError().toStdString();
    return run;
}

TEST(Init, TheStarterFileDrivesARecordingRunAndIsNeverReplaced) {
    // The file says: a record after 60 seconds, 100 metres or 15 degrees of course change.
    // 3.4152 rad shows as COG 196, 3.6249 as 208 (12 degrees: too little), 3.7 as 212 (16).
    // 8 ten-thousandths of a degree of latitude are 0.048 minutes, 89 metres (too little); 10
    // are 111. Each line names its own waypoint, so that none is "unchanged".
    const struct {
        const char* time;
        int latitude;  // 55 + latitude / 10000 degrees
        const char *cog, *name;
        bool recorded;
    } lines[] = {
        {"10:00:00", 0, "3.4152", "A", true},   // the first
        {"10:00:30", 0, "3.4152", "B", false},  // 30 s
        {"10:01:00", 0, "3.4152", "C", true},   // 60 s
        {"10:01:05", 0, "3.6249", "D", false},  // 12 degrees
        {"10:01:10", 0, "3.7", "E", true},      // 16 degrees
        {"10:01:15", 8, "3.7", "F", false},     // 89 m
        {"10:01:20", 10, "3.7", "G", true},     // 111 m
    };
    std::string voyage;
    std::string expected;
    for (const auto& line : lines) {
        const std::string record = std::string("20260601 ") + line.time + " CZ," +
                                   DataLine(line.latitude, line.name, line.cog) + "\r\n";
        voyage += record;
        expected += line.recorded ? record : "";
    }

    const struct {
        const char* legend;
        QStringList init;         // the words after "init"
        QString settings;         // where the file lands, under the home
        QString traces;           // the track directory it names, under the home
        bool givenOnCommandLine;  // else `wakeline` finds the user's file by itself
    } rows[] = {
        {"a directory of its own", {"boat"}, "boat/SeaClear_2.ini", "boat/traces", true},
        {"the user's own file",
         {},
         "config/Wakeline/SeaClear_2.ini",
         "data/wakeline/traces",
         false},
    };
    for (const auto& row : rows) {
        QTemporaryDir home;
        const QString settings = home.filePath(row.settings);
        const ProgramRun init =
            RunIn(home.path(), WAKELINE_TOOL_BINARY, QStringList{"init"} << row.init);
        ASSERT_EQ(init.status, 0) << row.legend << ": " << init.err;
        EXPECT_TRUE(init.out.starts_with("wrote " + settings.toStdString() + "\n")) << init.out;
        ASSERT_TRUE(QFileInfo(home.filePath(row.traces)).isDir()) << row.legend;
        const std::string written = ReadFileBytes(settings);
        EXPECT_NE(written.find("Track Dir=" + home.filePath(row.traces).toStdString() + "\n"),
                  std::string::npos)
            << row.legend << ": an absolute track directory";

        const ProgramRun again =
            RunIn(home.path(), WAKELINE_TOOL_BINARY, QStringList{"init"} << row.init);
        EXPECT_EQ(again.status, 1) << row.legend;
        EXPECT_NE(again.err.find("is there already"), std::string::npos) << again.err;
        EXPECT_EQ(ReadFileBytes(settings), written) << row.legend << ": left as it was";

        std::ofstream(home.filePath("voyage.TRT").toStdString(), std::ios::binary) << voyage;
        QStringList args{"--headless", "--replay", home.filePath("voyage.TRT")};
        if (row.givenOnCommandLine) {
            args << settings;
        }
        const ProgramRun logger = RunIn(home.path(), WAKELINE_BINARY, args);
        EXPECT_EQ(logger.status, 0) << row.legend << ": " << logger.err;
        EXPECT_EQ(ReadFileBytes(home.filePath(row.traces + "/20260601.TRT")), expected)
            << row.legend << "\n"
            << logger.err;
    }
}

TEST(Init, ADirectoryThatCannotBeMadeIsNamedAndNothingIsWritten) {
    QTemporaryDir home;
    std::ofstream(home.filePath("plain").toStdString()) << "a file, not a directory\n";
    const ProgramRun init = RunIn(home.path(), WAKELINE_TOOL_BINARY, {"init", "plain/boat"});
    EXPECT_EQ(init.status, 1);
    EXPECT_NE(init.err.find(home.filePath("plain/boat").toStdString()), std::string::npos)
        << init.err;
    EXPECT_EQ(init.out, "");
}

}  // namespace
}  // namespace wakeline::testing
