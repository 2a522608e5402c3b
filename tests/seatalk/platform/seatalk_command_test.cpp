#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "livedata/platform/event_loop_wait.h"
#include "support/tool_run.h"

namespace {

using wakeline::testing::RunTool;

QByteArray ReadAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot read)");
}

TEST(SeaTalkCommand, AFileGivesOneObjectPerEventAndItsCapture) {
    const QString passage = WAKELINE_TEST_DATA "/seatalk/short_passage.bin";
    QTemporaryDir dir;
    const QString capture = dir.filePath("raw");
    const auto run =
        RunTool({"seatalk", "--json", "--capture", capture.toStdString(), passage.toStdString()});
    EXPECT_EQ(run.status, 0);
    std::vector<nlohmann::json> objects;
    std::istringstream out(run.out);
    for (std::string line; std::getline(out, line);) {
        objects.push_back(nlohmann::json::parse(line));
    }
    ASSERT_EQ(objects.size(), 8u);
    EXPECT_EQ(objects[7]["report"], "20 01 3C 00 " + std::string(18, ' ') + "m:WS  20: 6 knots");
    EXPECT_EQ(objects[7]["line"],
              "000.0000,000.0000,00.00,00.00,-00.04,-00.04,07.95,02.18,00.79,03.94,02.22,02.57,"
              "00.00,01.76,06.00,,,,,,,,\r\n");
    EXPECT_EQ(objects[7]["timeStamp"], "2024 03 15 14:24:03");
    EXPECT_EQ(ReadAll(capture), ReadAll(passage));
    EXPECT_EQ(RunTool({"seatalk", dir.filePath("missing.bin").toStdString()}).status, 1);
}

TEST(SeaTalkCommand, ADeviceIsReadUntilInterrupted) {
    // A pseudo-terminal keeps no parity, so mode SB's bit count starts the datagram: 0x01 has
    // one bit set.
    wakeline::testing::EnsureCoreApplication();
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0);
    QProcess tool;
    tool.setStandardErrorFile(QProcess::nullDevice());
    tool.start(WAKELINE_TOOL_BINARY, {"seatalk", "--mode", "SB", "--json", ::ptsname(master)});

    // Written until the tool has the port open and has answered.
    const unsigned char datagram[] = {0x01, 0x00, 0x07};
    for (int i = 0; i < 100 && !tool.waitForReadyRead(50); ++i) {
        ASSERT_EQ(::write(master, datagram, sizeof datagram), 3);
    }
    ::kill(tool.processId(), SIGINT);
    ASSERT_TRUE(tool.waitForFinished(10000));
    ::close(master);
    EXPECT_EQ(tool.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(tool.exitCode(), 0);
    const auto first = nlohmann::json::parse(tool.readLine().toStdString());
    EXPECT_EQ(first["report"], "01 00 07 " + std::string(21, ' ') + "m:");
}

}  // namespace
