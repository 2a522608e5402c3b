// The headless program on a recorded SeaTalk stream: the composed lines become track records
// stamped with the bus's own time.

#include <gtest/gtest.h>

#include <QProcess>

#include "app/platform/boat_run.h"

namespace wakeline::testing {
namespace {

TEST(SeaTalkRun, ARecordedStreamBecomesTrackRecordsAtTheBusTime) {
    Boat boat({"Track Time=10"}, /*logData=*/false);
    // The recorded passage, then one more time datagram ten seconds later: 14:30:34 is
    // minutes 30 and seconds 2 x 16 + 2, so byte 2 is 30 << 2 | 2 = 0x7A, byte 1 0x21.
    std::string stream = ReadFileBytes(WAKELINE_TEST_DATA "/seatalk/short_passage.bin");
    stream += std::string("\xFF\x00\x54\x21\x7A\x0E", 6);
    const QString path = boat.TracesPath() + "/../passage.bin";
    std::ofstream(path.toStdString(), std::ios::binary) << stream;

    QProcess process;
    boat.Start(process, {"--seatalk-replay", path}, "UTC", ",SC");
    ASSERT_TRUE(process.waitForFinished(20000));
    EXPECT_EQ(process.exitCode(), 0);

    // The time datagram alone gives a time on day 0; the date datagram then makes it
    // 2024-03-15; the datagrams of the same second add no record (Track Time 10); the last
    // time datagram does. Every value is 0 but the fixed variation and the 0.3 m of depth
    // until the wind, depth and speed datagrams have come.
    const std::string empty =
        "000.0000,000.0000,00.00,00.00,-00.04,-00.04,00.30,00.00,00.00,00.00,00.00,00.00,00.00,"
        "00.00,00.00,,,,,,,,\r\n";
    const std::string full =
        "000.0000,000.0000,00.00,00.00,-00.04,-00.04,07.95,02.18,00.79,03.94,02.22,02.57,00.00,"
        "01.76,06.00,,,,,,,,\r\n";
    std::string track;
    for (const auto& [name, bytes] : boat.Traces()) {
        if (name.size() == 12 && name.substr(8) == ".TRT") {
            track += bytes;
        }
    }
    EXPECT_EQ(track, "18991230 14:30:24 CZ," + empty + "20240315 14:30:24 CZ," + empty +
                         "20240315 14:30:34 CZ," + full);
}

}  // namespace
}  // namespace wakeline::testing
