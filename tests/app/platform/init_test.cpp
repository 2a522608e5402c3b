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

// A data line at `lat` degrees with course over ground `cog` radians, the rest as the boat
// tests have it; `name` (the waypoint's) makes each line differ, so that none is "unchanged".
std::string Line(const std::string& lat, const std::string& cog, const std::string& name) {
    return lat + ",7.0,5.64," + cog +
           ",3.4501,-0.0349,16.3,0.7330,0.5242,4.2182,7.08,9.46,4.23,3.5200,5.70,,,,,,,," + name;
}

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
    // 0.0008 degrees of latitude are 0.048 minutes, 89 metres (too little); 0.0010 are 111.
    const std::string voyage =
        "20260601 10:00:00 CZ," + Line("55.0000", "3.4152", "A") + "\r\n" +  // first: recorded
        "20260601 10:00:30 CZ," + Line("55.0000", "3.4152", "B") + "\r\n" +  // 30 s
        "20260601 10:01:00 CZ," + Line("55.0000", "3.4152", "C") + "\r\n" +  // 60 s: recorded
        "20260601 10:01:05 CZ," + Line("55.0000", "3.6249", "D") + "\r\n" +  // 12 degrees
        "20260601 10:01:10 CZ," + Line("55.0000", "3.7", "E") + "\r\n" +     // 16: recorded
        "20260601 10:01:15 CZ," + Line("55.0008", "3.7", "F") + "\r\n" +     // 89 m
        "20260601 10:01:20 CZ," + Line("55.0010", "3.7", "G") + "\r\n";      // 111 m: recorded
    std::string expected;
    for (const auto& [time, line] : {std::pair{"10:00:00", Line("55.0000", "3.4152", "A")},
                                     {"10:01:00", Line("55.0000", "3.4152", "C")},
                                     {"10:01:10", Line("55.0000", "3.7", "E")},
                                     {"10:01:20", Line("55.0010", "3.7", "G")}}) {
        expected += std::string("20260601 ") + time + " CZ," + line + "\r\n";
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
