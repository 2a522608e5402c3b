// How a run ends when nobody watches it: a standard error nobody reads, a closed
// terminal, a shutdown, a replay that is not there, a track file the disk refuses. Whatever
// ends it, every record it took is on the disk (or, failing that, in the state directory), and
// a run that lost something exits 1.

#include <gtest/gtest.h>
#include <unistd.h>

#include <QDir>
#include <QProcess>
#include <csignal>
#include <string>
#include <vector>

#include "app/platform/boat_run.h"
#include "livedata/platform/event_loop_wait.h"

namespace wakeline::testing {
namespace {

constexpr int kLines = 45;

// The child's standard error becomes a pipe whose reader is already gone, as in
// `wakeline ... 2>&1 | true`: every write to it fails with EPIPE or raises SIGPIPE.
void StderrNobodyReads() {
    int ends[2];
    if (::pipe(ends) == 0) {
        ::close(ends[0]);
        ::dup2(ends[1], STDERR_FILENO);
        ::close(ends[1]);
    }
}

// The day's track file: the one whose name is a date.
std::string TrackFile(const Boat& boat) {
    for (const auto& [name, bytes] : boat.Traces()) {
        if (name.size() == 12 && name.ends_with(".TRT")) {
            return bytes;
        }
    }
    return {};
}

TEST(RunEnding, EveryRecordTakenReachesTheDiskAndALostSourceFails) {
    EnsureCoreApplication();
    struct Row {
        const char* legend;
        QStringList options;
        bool stderrClosed;  // standard error is a pipe nobody reads
        int signal;         // sent once every line was handled, the replay still open; 0: none
        int exitStatus;
        int records;          // of the kLines data lines sent on standard input
        bool window = false;  // the run with its window, where nobody may be there to click
    };
    const std::vector<Row> rows = {
        {"standard error closed, replay to its end", {"--replay", "-"}, true, 0, 0, kLines},
        {"SIGHUP: the terminal was closed", {"--replay", "-"}, false, SIGHUP, 0, kLines},
        {"SIGTERM: the computer shuts down", {"--replay", "-"}, false, SIGTERM, 0, kLines},
        {"SIGTERM to the window: the computer shuts down with nobody at the chart table",
         {"--replay", "-"},
         false,
         SIGTERM,
         0,
         kLines,
         true},
        {"a replay that is not there", {"--replay", "/nonexistent"}, false, 0, 1, 0},
        {"a SeaTalk replay that is not there",
         {"--seatalk-replay", "/nonexistent"},
         false,
         0,
         1,
         0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.legend);
        // A record whenever the boat has moved a metre: every data line here is one.
        Boat boat({"DDE=1", "Track Time=0", "Track Distance=1", "Track CompDev=0"});
        QProcess process;
        if (row.stderrClosed) {
            process.setChildProcessModifier(StderrNobodyReads);
        }
        const bool seaTalk = row.options.front() == "--seatalk-replay";
        boat.Start(process, row.options, "UTC", seaTalk ? ",SC,,F" : ",,,F", row.window);
        ASSERT_TRUE(process.waitForStarted());
        std::vector<std::string> sent;
        std::string input;
        for (int i = 0; i < kLines; ++i) {
            sent.push_back(DataLine(i));
            input += sent.back() + "\n";
        }
        process.write(input.data(), qint64(input.size()));
        if (row.signal != 0) {
            ASSERT_TRUE(WaitUntil([&] {
                return HandledLines(ReadFileBytes(boat.LogPath()), "55.").size() == sent.size();
            }));
            ::kill(static_cast<pid_t>(process.processId()), row.signal);
        } else {
            process.closeWriteChannel();
        }
        ASSERT_TRUE(process.waitForFinished(20000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), row.exitStatus);

        sent.resize(std::size_t(row.records));
        EXPECT_EQ(RecordedLines(boat, "55."), sent);
        // The close flushed: its note is the file's last line.
        EXPECT_TRUE(TrackFile(boat).ends_with(" CZ - normal closedown\r\n"));
    }
}

TEST(RunEnding, RecordsTheDiskRefusesAtTheCloseGoToTheStateDirectory) {
    EnsureCoreApplication();
    Boat boat({"DDE=1", "Track Time=0", "Track Distance=1", "Track CompDev=0"});
    // The replay's stamps make its records go to 20240315.TRT, which cannot be written: a
    // directory has its name. (A read-only directory would not stop a test run as root.)
    ASSERT_TRUE(QDir(boat.TracesPath()).mkpath("20240315.TRT"));
    std::string input;
    std::string expected;
    for (int i = 0; i < 3; ++i) {
        const std::string record = "20240315 10:00:0" + std::to_string(i) + " CZ," + DataLine(i);
        input += record + "\n";
        expected += record + "\r\n";
    }
    expected += "/* 20240315 10:00:02 CZ - normal closedown\r\n";

    QProcess process;
    boat.Start(process, {"--replay", "-"});
    ASSERT_TRUE(process.waitForStarted());
    process.write(input.data(), qint64(input.size()));
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished(20000));
    EXPECT_EQ(process.exitCode(), 1);

    const QStringList saved = QDir(boat.StatePath()).entryList({"unsaved-*.TRT"}, QDir::Files);
    ASSERT_EQ(saved.size(), 1);
    // unsaved-YYYYMMDD-HHMMSS.TRT
    EXPECT_EQ(saved[0].size(), 8 + 15 + 4);
    const QString path = QDir(boat.StatePath()).filePath(saved[0]);
    EXPECT_EQ(ReadFileBytes(path), expected);
    const std::string errors = process.readAllStandardError().toStdString();
    EXPECT_NE(errors.find("4 records were saved to " + path.toStdString()), std::string::npos)
        << errors;
}

}  // namespace
}  // namespace wakeline::testing
