#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "livedata/chart_plotter_link.h"
#include "livedata/link_endpoint.h"
#include "support/fakes.h"

namespace wakeline {
namespace {

// 2026-11-15 23:42:16 UTC: day 46341 since 1899-12-30 and 85336 seconds.
constexpr DateTime kNow = 46341 + 85336 / 86400.0;
constexpr DateTime kSecond = 1 / 86400.0;
constexpr const char* kLogPath = "/state/WakelineDebug.txt";
// The fake system clock stands at the same time, so every log line carries this stamp.
constexpr const char* kLogStamp = "15-11-2026 23:42:16 ";

class RecordingStarter : public ProgramStarter {
  public:
    explicit RecordingStarter(const testing::FakeFileSystem& files) : files_(files) {}
    std::string StartProgram(const std::string& path) override {
        started.push_back(path);
        logWhenStarted = files_.files.count(kLogPath) ? files_.files.at(kLogPath) : "";
        return failure;
    }
    std::vector<std::string> started;
    std::string logWhenStarted;
    std::string failure;

  private:
    const testing::FakeFileSystem& files_;
};

class RecordingSink : public DataLineSink {
  public:
    bool TraceDisplayLine(const std::string& line) override {
        calls.push_back("display " + line);
        return displays;
    }
    void TraceWriteLine(const std::string& line, bool force) override {
        calls.push_back((force ? "force " : "track ") + line);
    }
    std::vector<std::string> calls;
    bool displays = true;
};

class ChartPlotterLinkTest : public ::testing::Test {
  protected:
    ChartPlotterLinkTest() { log_.SetMode(kDebugLogFile); }

    std::string Log() const {
        return files_.files.count(kLogPath) ? files_.files.at(kLogPath) : "";
    }
    static std::string Line(const std::string& text) { return kLogStamp + text + "\r\n"; }

    testing::FakeClock system_;
    ProgramClock clock_{system_};
    testing::FakeFileSystem files_;
    testing::RecordingDialogs dialogs_;
    DiagnosticLog log_{clock_, files_, dialogs_, kLogPath};
    RecordingStarter starter_{files_};
    RecordingSink sink_;
    ChartPlotterLink link_{log_, starter_};
};

TEST_F(ChartPlotterLinkTest, NewLinesAreHandledOnceAndRepeatsOnlyStamped) {
    LinkNotification got = link_.OnNotification("52.5,4.9", kNow, true, sink_);
    EXPECT_TRUE(got.newLine);
    EXPECT_EQ(got.statusText, "15-11-2026 23:42:16 (CZ)");
    EXPECT_TRUE(got.layOutAgain);
    EXPECT_EQ(link_.LastDataLine(), "52.5,4.9\r\n");
    EXPECT_EQ(link_.StatusLabelHeight(), 255);
    EXPECT_TRUE(link_.LinkSeen());

    // The same text a second later: only the stamp moves.
    got = link_.OnNotification("52.5,4.9", kNow + kSecond, true, sink_);
    EXPECT_FALSE(got.newLine);
    EXPECT_EQ(got.statusText, "unchanged 15-11-2026 23:42:17 (CZ)");
    EXPECT_FALSE(got.layOutAgain);
    EXPECT_EQ(link_.LastTimeStamp(), "15-11-2026 23:42:17 (CZ)");

    // A new text after that: handled, but the label is already one line high.
    got = link_.OnNotification("52.6,4.9", kNow + 2 * kSecond, true, sink_);
    EXPECT_TRUE(got.newLine);
    EXPECT_EQ(got.statusText, "15-11-2026 23:42:18 (CZ)");
    EXPECT_FALSE(got.layOutAgain);

    EXPECT_EQ(sink_.calls,
              (std::vector<std::string>{"display 52.5,4.9\r\n", "track 52.5,4.9\r\n",
                                        "display 52.6,4.9\r\n", "track 52.6,4.9\r\n"}));
    // The data line keeps its CR LF in the log, as the item text did.
    EXPECT_EQ(Log(), Line("lblDDE_LinkNotify 52.5,4.9\r\n") +
                         Line("lblDDE_LinkNotify Line Displayed") +
                         Line("lblDDE_LinkNotify 52.6,4.9\r\n") +
                         Line("lblDDE_LinkNotify Line Displayed"));
}

TEST_F(ChartPlotterLinkTest, TrackWriterOnlyWithATrackDirectoryAndADisplayedLine) {
    link_.OnNotification("a", kNow, false, sink_);
    sink_.displays = false;
    const LinkNotification got = link_.OnNotification("b", kNow, true, sink_);
    EXPECT_TRUE(got.newLine);
    EXPECT_EQ(got.statusText, "15-11-2026 23:42:16 (CZ)");
    EXPECT_EQ(sink_.calls, (std::vector<std::string>{"display a\r\n", "display b\r\n"}));
}

TEST_F(ChartPlotterLinkTest, FailuresStartTheChartPlotterOnceAndAskOnlyAfterData) {
    const std::string exe = "/opt/seaclear/SeaClear_2.exe";
    ASSERT_TRUE(link_.OnTimerTick());
    EXPECT_FALSE(link_.OnTimerTick()) << "one attempt at a time";
    LinkFailure failure = link_.OnConnectFailed(exe);
    EXPECT_EQ(failure.statusText, "No seaclear input");
    EXPECT_FALSE(failure.askClose);
    EXPECT_TRUE(link_.SeaClearStarted());
    EXPECT_EQ(starter_.started, std::vector<std::string>{exe});
    // The program starts between the two log lines.
    EXPECT_EQ(starter_.logWhenStarted, Line("Timer1 attempt load Seaclear: " + exe));
    const std::string logAfterStart = Log();
    EXPECT_EQ(logAfterStart, Line("Timer1 attempt load Seaclear: " + exe) +
                                 Line("Timer1 finished attempt load Seaclear"));

    // Later failures neither start nor log again.
    ASSERT_TRUE(link_.OnTimerTick());
    failure = link_.OnConnectFailed(exe);
    EXPECT_EQ(failure.statusText, "No seaclear input");
    EXPECT_EQ(starter_.started.size(), 1U);

    // Linked: the ticks leave the link alone until the server closes it.
    ASSERT_TRUE(link_.OnTimerTick());
    link_.OnConnected();
    EXPECT_EQ(link_.LinkMode(), kLinkModeNotify);
    EXPECT_FALSE(link_.OnTimerTick());
    link_.OnNotification("x", kNow, false, sink_);
    link_.OnLinkClosed();
    EXPECT_EQ(link_.LinkMode(), kLinkModeNone);

    // The chart plotter is gone after data: ask; a refusal stops the asking until new data.
    ASSERT_TRUE(link_.OnTimerTick());
    EXPECT_TRUE(link_.OnConnectFailed(exe).askClose);
    link_.OnCloseRefused();
    ASSERT_TRUE(link_.OnTimerTick());
    EXPECT_FALSE(link_.OnConnectFailed(exe).askClose);
    EXPECT_EQ(starter_.started.size(), 1U);
    EXPECT_EQ(Log().substr(logAfterStart.size()),
              Line("lblDDE_LinkNotify x\r\n") + Line("lblDDE_LinkNotify Line Displayed"));
}

TEST_F(ChartPlotterLinkTest, WithoutAProgramOrWhenItCannotStartTheAttemptIsLogged) {
    link_.OnTimerTick();
    link_.OnConnectFailed("");
    EXPECT_TRUE(starter_.started.empty());
    EXPECT_TRUE(link_.SeaClearStarted());
    EXPECT_EQ(Log(), Line("Timer1 attempt load Seaclear: ") +
                         Line("Timer1 finished attempt load Seaclear"));

    ChartPlotterLink other(log_, starter_);
    files_.files.clear();
    starter_.failure = "wine is not on the PATH";
    other.OnTimerTick();
    other.OnConnectFailed("/sc/SeaClear_2.exe");
    EXPECT_EQ(Log(),
              Line("Timer1 attempt load Seaclear: /sc/SeaClear_2.exe") +
                  Line("Timer1 could not start /sc/SeaClear_2.exe: wine is not on the PATH") +
                  Line("Timer1 finished attempt load Seaclear"));
}

TEST(LinkEndpointTest, HostAndPort) {
    struct Row {
        const char* legend;
        const char* text;
        std::optional<LinkEndpoint> endpoint;
    };
    const Row rows[] = {
        {"default", "127.0.0.1:20175", LinkEndpoint{"127.0.0.1", 20175}},
        {"IPv6 in brackets", "[::1]:20175", LinkEndpoint{"::1", 20175}},
        {"IPv6 without brackets", "::1:20175", std::nullopt},
        {"port too high", "localhost:65536", std::nullopt},
        {"port with a letter", "localhost:2o175", std::nullopt},
        {"no host", ":20175", std::nullopt},
        {"no colon", "localhost", std::nullopt},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ParseLinkEndpoint(row.text), row.endpoint) << row.legend;
    }
}

}  // namespace
}  // namespace wakeline
