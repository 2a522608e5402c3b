// The real `wakeline --headless` on the chart-plotter link, with a stand-in chart plotter served
// from this test on the loopback interface: lines arrive, the plotter goes away and comes back,
// and bad input and floods meet a program that must keep its track.

#include <gtest/gtest.h>

#include <QHostAddress>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <csignal>
#include <string>
#include <utility>
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
    ASSERT_TRUE(WaitUntil([&] {
        return ReadFileBytes(boat_.LogPath()).find("Timer1 finished attempt load Seaclear") !=
               std::string::npos;
    }));
    WaitUntil([] { return false; }, 500);  // several ticks of 100 ms find nobody there
    EXPECT_EQ(process.state(), QProcess::Running);

    QTcpServer plotter;
    ASSERT_TRUE(plotter.listen(QHostAddress::LocalHost, port));
    QTcpSocket* peer = Accept(plotter);
    ASSERT_NE(peer, nullptr);
    // The last line has no LF: the close ends it.
    ASSERT_TRUE(Send(peer, DataLine(0) + "\n" + DataLine(1) + "\n" + DataLine(2)));
    ASSERT_TRUE(
        WaitUntil([&] { return HandledLines(ReadFileBytes(boat_.LogPath()), "55.").size() == 2; }));
    plotter.close();  // the chart plotter is closed: no one listens any more
    peer->disconnectFromHost();
    ASSERT_TRUE(Finished(process));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardError().contains("ending trace function [OK]"));

    // Why nobody was there, in the socket's words, once per spell however many ticks found
    // nobody: before the plotter started and after it closed.
    const std::string log = ReadFileBytes(boat_.LogPath());
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
    const std::vector<std::string> expected = {DataLine(0), DataLine(1), DataLine(2)};
    EXPECT_EQ(HandledLines(log, "55."), expected);
    EXPECT_EQ(RecordedLines(boat_, "55."), expected);
}

TEST_F(LinkRun, AnOverLongLineAndAFloodNeitherStopTheRunNorLoseRecords) {
    QTcpServer plotter;
    ASSERT_TRUE(plotter.listen(QHostAddress::LocalHost));
    QProcess process;
    boat_.Start(process, {"--link", "127.0.0.1:" + QString::number(plotter.serverPort())});
    QTcpSocket* peer = Accept(plotter);
    ASSERT_NE(peer, nullptr);

    // A line of 1 MB, a line with 8-bit text in its name, then 20,000 lines; SIGTERM as soon
    // as the first of them is handled, while the rest still pour in.
    const std::string eightBit = DataLine(1, "Cap Fr\xe9hel \xff\x80");
    std::string bytes = std::string(1024 * 1024, 'x') + "\n" + eightBit + "\n";
    for (int i = 0; i < 20000; ++i) {
        bytes += DataLine(1000 + i) + "\n";
    }
    peer->write(bytes.data(), qint64(bytes.size()));
    ASSERT_TRUE(WaitUntil(
        [&] { return ReadFileBytes(boat_.LogPath()).find(DataLine(1000)) != std::string::npos; }));
    EXPECT_EQ(process.state(), QProcess::Running);
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    ASSERT_TRUE(Finished(process));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);

    // Every line handled became a record, and every record reached the file: the track is the
    // handled lines in order, the 8-bit bytes as they came.
    const std::string log = ReadFileBytes(boat_.LogPath());
    EXPECT_NE(log.find("Link line too long, dropped"), std::string::npos);
    const std::vector<std::string> recorded = RecordedLines(boat_, "5");
    EXPECT_EQ(recorded, HandledLines(log, "5"));
    ASSERT_GE(recorded.size(), 2u);
    EXPECT_EQ(recorded[0], eightBit);
    EXPECT_EQ(recorded[1], DataLine(1000));
}

}  // namespace
}  // namespace wakeline::testing
