// `wakeline-tool simulate` run as the demo runs it: its stamps, and its quiet end when the
// reader goes away.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <QProcess>
#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

TEST(SimulateCommand, StampedLinesAreTrackRecordsOneSecondApart) {
    QProcess process;
    process.start(WAKELINE_TOOL_BINARY, {"simulate", "--interval", "0", "--count", "3", "--stamped",
                                         "--start", "20261231 23:59:58"});
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(process.exitCode(), 0);
    const std::string out = process.readAllStandardOutput().toStdString();
    // The stamps cross midnight into a new year; each record ends in CR LF and holds no other
    // line end. (The data line's own form is the simulator's unit test's.)
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 3) << out;
    std::size_t at = 0;
    for (const char* stamp :
         {"20261231 23:59:58 CZ,", "20261231 23:59:59 CZ,", "20270101 00:00:00 CZ,"}) {
        EXPECT_EQ(out.substr(at, 21), stamp);
        at = out.find("\r\n", at);
        ASSERT_NE(at, std::string::npos);
        at += 2;
    }
    EXPECT_EQ(at, out.size());
}

TEST(SimulateCommand, EndsQuietlyWhenTheReaderLeaves) {
    const std::string command = std::string("bash -c 'set -o pipefail; ") + WAKELINE_TOOL_BINARY +
                                " simulate --interval 0 --count 1000000 | head -n 1 "
                                ">/dev/null' 2>&1";
    const int raw = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(raw));
    EXPECT_EQ(WEXITSTATUS(raw), 0);
}

}  // namespace
