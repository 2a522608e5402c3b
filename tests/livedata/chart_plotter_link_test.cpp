#include "livedata/chart_plotter_link.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "livedata/link_endpoint.h"
#include "support/harness.h"

namespace wakeline {
namespace {

using Texts = std::vector<std::string>;

// 2026-11-15 23:42:16 UTC: day 46341 since 1899-12-30 and 85336 seconds.
constexpr DateTime kNow = 46341 + 85336 / 86400.0;
constexpr DateTime kSecond = 1 / 86400.0;

std::string Line(const std::string& text) {
    return testing::kLogStamp + text + "\r\n";
}

class ChartPlotterLinkTest : public ::testing::Test,
                             protected testing::Harness,
                             protected ProgramStarter,
                             protected DataLineSink {
  protected:
    Status StartProgram(const std::string& path) override {
        started.push_back(path);
        logWhenStarted = Log();
        return startFailure;
    }
    bool TraceDisplayLine(const std::string& line) override {
        calls.push_back("display " + line);
        return displays;
    }
    void TraceWriteLine(const std::string& line, bool force) override {
        calls.push_back((force ? "force " : "track ") + line);
    }

    Texts started, calls;
    std::string logWhenStarted;
    Status startFailure;
    bool displays = true;
    ChartPlotterLink link{log, *this};
};

TEST_F(ChartPlotterLinkTest, NewLinesAreHandledOnceAndRepeatsOnlyStamped) {
    LinkNotification got = link.OnNotification("52.5,4.9", kNow, true, *this);
    EXPECT_TRUE(got.newLine);
    EXPECT_EQ(got.statusText, "15-11-2026 23:42:16 (CZ)");
    EXPECT_TRUE(got.layOutAgain);

    got = link.OnNotification("52.5,4.9", kNow + kSecond, true, *this);
    EXPECT_FALSE(got.newLine);
    EXPECT_EQ(got.statusText, "unchanged 15-11-2026 23:42:17 (CZ)");
    EXPECT_FALSE(got.layOutAgain);

    // A new text after that: handled, but the label is already one line high.
    got = link.OnNotification("52.6,4.9", kNow + 2 * kSecond, true, *this);
    EXPECT_TRUE(got.newLine);
    EXPECT_FALSE(got.layOutAgain);
    EXPECT_EQ(calls, (Texts{"display 52.5,4.9\r\n", "track 52.5,4.9\r\n", "display 52.6,4.9\r\n",
                            "track 52.6,4.9\r\n"}));
    // The data line's CR LF is one space in the log: each log record is one line.
    EXPECT_EQ(Log(),
              Line("lblDDE_LinkNotify 52.5,4.9 ") + Line("lblDDE_LinkNotify Line Displayed") +
                  Line("lblDDE_LinkNotify 52.6,4.9 ") + Line("lblDDE_LinkNotify Line Displayed"));
}

TEST_F(ChartPlotterLinkTest, TrackWriterOnlyWithATrackDirectoryAndADisplayedLine) {
    link.OnNotification("a", kNow, false, *this);
    displays = false;
    EXPECT_TRUE(link.OnNotification("b", kNow, true, *this).newLine);
    EXPECT_EQ(calls, (Texts{"display a\r\n", "display b\r\n"}));
}

TEST_F(ChartPlotterLinkTest, FailuresStartTheChartPlotterOnceAndAskOnlyAfterData) {
    const std::string exe = "/opt/seaclear/SeaClear_2.exe";
    // A start that fails is logged with the system's reason, and not tried again either.
    startFailure = Status::Failure("start", exe, "wine is not on the PATH");
    ASSERT_TRUE(link.OnTimerTick());
    EXPECT_FALSE(link.OnTimerTick()) << "one attempt at a time";
    LinkFailure failure = link.OnConnectFailed(exe);
    EXPECT_EQ(failure.statusText, "No seaclear input");
    EXPECT_FALSE(failure.askClose);
    EXPECT_EQ(started, Texts{exe});
    // The program starts between the two log lines.
    EXPECT_EQ(logWhenStarted, Line("Timer1 attempt load Seaclear: " + exe));
    const std::string logAfterStart =
        Line("Timer1 attempt load Seaclear: " + exe) +
        Line("Timer1 could not start " + exe + ": wine is not on the PATH") +
        Line("Timer1 finished attempt load Seaclear");
    EXPECT_EQ(Log(), logAfterStart);

    // Later failures neither start nor log again; linked, the ticks leave the link alone.
    ASSERT_TRUE(link.OnTimerTick());
    link.OnConnectFailed(exe);
    ASSERT_TRUE(link.OnTimerTick());
    link.OnConnected();
    EXPECT_FALSE(link.OnTimerTick());
    link.OnNotification("x", kNow, false, *this);
    link.OnLinkClosed();

    // The chart plotter is gone after data: ask; a refusal stops the asking until new data.
    ASSERT_TRUE(link.OnTimerTick());
    EXPECT_TRUE(link.OnConnectFailed(exe).askClose);
    link.OnCloseRefused();
    ASSERT_TRUE(link.OnTimerTick());
    EXPECT_FALSE(link.OnConnectFailed(exe).askClose);
    EXPECT_EQ(started.size(), 1U);
    EXPECT_EQ(Log(), logAfterStart + Line("lblDDE_LinkNotify x ") +
                         Line("lblDDE_LinkNotify Line Displayed"));
}

TEST(LinkEndpoint, HostAndPort) {
    EXPECT_EQ(ParseLinkEndpoint("127.0.0.1:20175"), (LinkEndpoint{"127.0.0.1", 20175}));
    EXPECT_EQ(ParseLinkEndpoint("[::1]:20175"), (LinkEndpoint{"::1", 20175}));
    for (const char* bad : {"::1:20175", "localhost:65536", ":20175"}) {
        EXPECT_EQ(ParseLinkEndpoint(bad), std::nullopt) << bad;
    }
}

}  // namespace
}  // namespace wakeline
