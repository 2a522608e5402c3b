// The real `wakeline --headless` killed and signalled while lines arrive: SIGKILL between two
// flushes loses no record (the crash journal), and a replay from a FIFO shows each line as it
// arrives and keeps its track when SIGTERM ends it.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QElapsedTimer>
#include <QProcess>
#include <csignal>
#include <iostream>
#include <string>

#include "app/platform/boat_run.h"
#include "livedata/platform/event_loop_wait.h"

namespace wakeline::testing {
namespace {

// Stamped records one second apart from 2099-06-01 10:00:00 UTC, ahead of any clock this runs
// on, so that no elapsed time since the start-up note is negative. Latitude 55 + index / 10000
// degrees; each record ends with CR LF, as the track file holds it.
std::string Record(int index) {
    std::string fraction = std::to_string(index % 10000);
    fraction.insert(0, 4 - fraction.size(), '0');
    std::string second = std::to_string(index % 60);
    second.insert(0, 2 - second.size(), '0');
    std::string minute = std::to_string(index / 60);
    minute.insert(0, 2 - minute.size(), '0');
    return "20990601 10:" + minute + ":" + second + " CZ,55." + fraction +
           ",7.0,5.64,3.4152,3.4501,-0.0349,16.3,0.7330,0.5242,4.2182,7.08,9.46,4.23,3.5200,5.70,"
           ",,,,,,,\r\n";
}

bool LogHas(const Boat& boat, const std::string& text) {
    return ReadFileBytes(boat.LogPath()).find(text) != std::string::npos;
}

TEST(Journal, SigkillBetweenFlushesLosesNoRecord) {
    EnsureCoreApplication();
    Boat boat({"DDE=1", "Track Time=1", "Track Distance=0", "Track CompDev=0"});
    QProcess first;
    boat.Start(first, {"--replay", "-"});
    ASSERT_TRUE(first.waitForStarted());
    std::string all;
    for (int n = 0; n < 250; ++n) {
        all += Record(n);
    }
    // The marker is handled only after the 250th record; too close in time to be recorded.
    const std::string input = all + "all sent\n";
    first.write(input.data(), qint64(input.size()));
    ASSERT_TRUE(WaitUntil([&] { return LogHas(boat, "lblDDE_LinkNotify all sent"); }, 30000));
    ::kill(static_cast<pid_t>(first.processId()), SIGKILL);
    ASSERT_TRUE(first.waitForFinished());

    QProcess second;  // the same settings, with nothing to replay: start-up and close only
    boat.Start(second, {"--replay", "-"});
    ASSERT_TRUE(second.waitForStarted());
    second.closeWriteChannel();
    ASSERT_TRUE(second.waitForFinished(30000));
    EXPECT_EQ(second.exitCode(), 0);

    // The first record flushes at once (the start-up note's time is years before it), then
    // every 60th: records 61, 121, 181 and 241 end a flush, so 9 were pending at the kill.
    EXPECT_TRUE(LogHas(boat, "Track journal: 9 records recovered into " +
                                 boat.TracesPath().toStdString() + "/20990601.TRT"));
    std::map<std::string, std::string> traces = boat.Traces();
    EXPECT_TRUE(traces["20990601.TRT"] == all) << "every record once, in order";
    EXPECT_EQ(traces["wakeline_pending.txt"], "");
}

TEST(Journal, AFifoReplayShowsEachLineAsItArrivesAndSigtermKeepsTheTrack) {
    EnsureCoreApplication();
    Boat boat({"DDE=1", "Track Time=1", "Track Distance=0", "Track CompDev=0"});
    const std::string fifo = boat.TracesPath().toStdString() + "/../replay.fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    // Read and write: opening does not wait for the program, and it never sees an end.
    const int writer = ::open(fifo.c_str(), O_RDWR);
    ASSERT_GE(writer, 0);
    QProcess process;
    boat.Start(process, {"--replay", QString::fromStdString(fifo)});
    ASSERT_TRUE(WaitUntil([&] { return LogHas(boat, "Form_Load complete"); }));

    qint64 slowestMs = 0;
    std::string all;
    for (int n = 0; n < 4; ++n) {
        if (n > 0) {
            WaitUntil([] { return false; }, 1000);  // one line a second
        }
        const std::string line = Record(n);
        all += line;
        QElapsedTimer arrival;
        arrival.start();
        ASSERT_EQ(::write(writer, line.data(), line.size()), ssize_t(line.size()));
        ASSERT_TRUE(WaitUntil(
            [&] { return LogHas(boat, "lblDDE_LinkNotify " + line.substr(21, line.size() - 23)); },
            5000));
        slowestMs = std::max(slowestMs, arrival.elapsed());
    }
    std::cout << "FIFO replay: slowest line shown " << slowestMs << " ms after it was written\n";
    ::testing::Test::RecordProperty("fifo_slowest_line_ms", int(slowestMs));
    EXPECT_LT(slowestMs, 1000);

    // The first record flushed at once; the other three wait for the close.
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    ASSERT_TRUE(WaitUntil([&] { return process.state() == QProcess::NotRunning; }));
    ::close(writer);
    EXPECT_EQ(process.exitCode(), 0);
    // The close's note carries the clock the replay left: the last record's time.
    EXPECT_TRUE(boat.Traces()["20990601.TRT"] ==
                all + "/* 20990601 10:00:03 CZ - normal closedown\r\n")
        << boat.Traces()["20990601.TRT"];
}

}  // namespace
}  // namespace wakeline::testing
