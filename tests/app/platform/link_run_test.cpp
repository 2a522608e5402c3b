// The real `wakeline --headless` on the chart-plotter link, with a stand-in chart plotter served
// from this test on the loopback interface: lines arrive, the plotter goes away and comes back,
// and bad input and floods meet a program that must keep its track.

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QHostAddress>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <csignal>
#include <string>
#include <vector>

#include "app/platform/boat_run.h"
#include "livedata/platform/event_loop_wait.h"

namespace wakeline::testing {
namespace {

// The stand-in chart plotter's end of the link, once the program has connected to `server`;
// null when it did not.
QTcpSocket* Accept(QTcpServer& server) {
    return WaitUntil([&] { return server.hasPendingConnections(); })
               ? server.nextPendingConnection()
               : nullptr;
}

bool Send(QTcpSocket* peer, const std::string& bytes) {
    peer->write(bytes.data(), qint64(bytes.size()));
    return WaitUntil([&] { return peer->bytesToWrite() == 0; });
}

bool Finished(QProcess& process, int ms = 10000) {
    return WaitUntil([&] { return process.state() == QProcess::NotRunning; }, ms);
}

class LinkRun : public ::testing::Test {
  protected:
    void SetUp() override { EnsureCoreApplication(); }
    // A record whenever the boat has moved a metre: every new line here is one.
    Boat boat_{{"DDE=1", "Track Time=0", "Track Distance=1", "Track CompDev=0"}};
};

TEST_F(LinkRun, APlotterStartedLateIsWaitedForAndItsClosingEndsTheVoyage) {
    quint16 port = 0;
    {
        QTcpServer reserve;  // a free loopback port, released again
        ASSERT_TRUE(reserve.listen(QHostAddress::LocalHost));
        port = reserve.serverPort();
    }
    QProcess process;
    boat_.Start(process, {"--link", "127.0.0.1:" + QString::number(port)});
    // Let several ticks find nobody there.
    ASSERT_TRUE(WaitUntil([&] {
        return ReadFileBytes(boat_.LogPath()).find("Timer1 finished attempt load Seaclear") !=
               std::string::npos;
    }));
    WaitUntil([] { return false; }, 500);
    EXPECT_EQ(process.state(), QProcess::Running);

    QTcpServer plotter;
    ASSERT_TRUE(plotter.listen(QHostAddress::LocalHost, port));
    QTcpSocket* peer = Accept(plotter);
    ASSERT_NE(peer, nullptr);
    // The second line repeats the first and is not handled; the fourth repeats the first but
    // follows another line, so it is new again. A CR before the LF is dropped. The last line
    // has no LF: the close ends it.
    ASSERT_TRUE(Send(peer, DataLine(0) + "\n" + DataLine(0) + "\r\n" + DataLine(1) + "\n" +
                               DataLine(0) + "\n" + DataLine(2)));
    ASSERT_TRUE(
        WaitUntil([&] { return HandledLines(ReadFileBytes(boat_.LogPath()), "55.").size() == 3; }));
    plotter.close();  // the chart plotter is closed: no one listens any more
    peer->disconnectFromHost();
    ASSERT_TRUE(Finished(process));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardError().contains("ending trace function [OK]"));

    const std::string log = ReadFileBytes(boat_.LogPath());
    const std::string attempt = "Timer1 attempt load Seaclear";
    EXPECT_EQ(log.find(attempt), log.rfind(attempt)) << "the plotter is started once";
    // Why nobody was there, in the socket's words, once per spell however many ticks found
    // nobody: before the plotter started and after it closed.
    const std::string refused =
        "Link to the chart plotter: could not connect to 127.0.0.1:" + std::to_string(port) +
        ": Connection refused";
    const std::size_t first = log.find(refused);
    const std::size_t up = log.find("Link to the chart plotter up");
    EXPECT_LT(first, up);
    EXPECT_EQ(log.find(refused, first + 1), log.rfind(refused));
    EXPECT_GT(log.rfind(refused), up);
    EXPECT_LT(log.find("Link closed after a line without its line end"),
              log.find("lblDDE_LinkNotify " + DataLine(2)));
    const std::vector<std::string> expected = {DataLine(0), DataLine(1), DataLine(0), DataLine(2)};
    EXPECT_EQ(HandledLines(log, "55."), expected);
    EXPECT_EQ(RecordedLines(boat_, "55."), expected);
}

TEST_F(LinkRun, BadInputAndAFloodNeitherStopTheRunNorLoseRecords) {
    QTcpServer plotter;
    ASSERT_TRUE(plotter.listen(QHostAddress::LocalHost));
    QProcess process;
    boat_.Start(process, {"--link", "127.0.0.1:" + QString::number(plotter.serverPort())});
    QTcpSocket* peer = Accept(plotter);
    ASSERT_NE(peer, nullptr);

    // Garbage, a short line with NUL bytes, a full line with 8-bit text in its name, a line of
    // 1 MB, then a good line.
    const std::string eightBit = DataLine(1, "Cap Fr\xe9hel \xff\x80");
    std::string bad = "garbage without any commas\n";
    bad += std::string("14.1\0,7.6,\0\0\0\n", 14);
    bad += eightBit + "\n";
    bad += std::string(1024 * 1024, 'x') + "\n";
    bad += DataLine(2) + "\n";
    ASSERT_TRUE(Send(peer, bad));
    ASSERT_TRUE(
        WaitUntil([&] { return HandledLines(ReadFileBytes(boat_.LogPath()), "55.").size() == 2; }));
    EXPECT_NE(ReadFileBytes(boat_.LogPath()).find("Link line too long, dropped"),
              std::string::npos);

    // 10,000 lines a second for at most two seconds, 100 every 10 ms, never more than 4 MB
    // waiting in this end's buffer; SIGTERM while the lines still pour in.
    int sent = 0;
    QTimer pump;
    QObject::connect(&pump, &QTimer::timeout, [&] {
        if (sent >= 20000 || peer->bytesToWrite() > 4 * 1024 * 1024) {
            return;
        }
        std::string batch;
        for (int i = 0; i < 100; ++i) {
            batch += DataLine(1000 + sent++) + "\n";
        }
        peer->write(batch.data(), qint64(batch.size()));
    });
    pump.start(10);
    QElapsedTimer flood;
    flood.start();
    WaitUntil([&] { return sent >= 20000 || flood.elapsed() > 2000; }, 3000);
    EXPECT_EQ(process.state(), QProcess::Running);
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    ASSERT_TRUE(Finished(process));
    pump.stop();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);

    // Every line handled became a record, and every record reached the file: the track is the
    // handled lines in order, the 8-bit bytes as they came. (Only the data lines start with 5.)
    const std::vector<std::string> handled = HandledLines(ReadFileBytes(boat_.LogPath()), "5");
    const std::vector<std::string> recorded = RecordedLines(boat_, "5");
    EXPECT_EQ(recorded, handled);
    ASSERT_GE(recorded.size(), 3u);
    EXPECT_EQ(recorded[0], eightBit);
    EXPECT_EQ(recorded[1], DataLine(2));
    EXPECT_EQ(recorded[2], DataLine(1000));
}

}  // namespace
}  // namespace wakeline::testing
