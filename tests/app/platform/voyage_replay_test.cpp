// A recorded voyage replayed through the real `wakeline --headless --replay`: the track files
// and the wind history it leaves are worked out here from the recording's own lines and the
// recording rules (a record every 10 seconds, a flush after 60 records and at the close, day
// files named by the local date at the flush, one averaged wind observation per record).

#include <gtest/gtest.h>

#include <unistd.h>
#include <QDateTime>
#include <QProcess>
#include <QThread>
#include <csignal>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "app/platform/boat_run.h"

namespace wakeline::testing {
namespace {

// The fixture: 610 records one second apart from 20260531 23:50:00 UTC.
const QString kVoyage = WAKELINE_TEST_DATA "/voyage/beat_to_windward.TRT";
constexpr int kVoyageLines = 610;
// Days since 1899-12-30: 2026-11-15 is day 46341; back through 15 days of November, 31 of
// October, 30 of September, 31 of August, 31 of July and 30 of June gives 46173 for 2026-05-31.
constexpr double kFirstDay = 46173;
constexpr double kFirstSecondOfDay = 23 * 3600 + 50 * 60;

struct Sample {
    float speed;      // knots
    float direction;  // degrees
    double time;      // days
};

std::vector<std::string> SplitRecords(const std::string& bytes) {
    std::vector<std::string> records;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = bytes.find("\r\n", at);
        records.push_back(bytes.substr(at, end + 2 - at));
        at = end + 2;
    }
    return records;
}

std::string Field(const std::string& record, int index) {
    std::size_t at = record.find(" CZ,") + 4;
    for (int i = 0; i < index; ++i) {
        at = record.find(',', at) + 1;
    }
    return record.substr(at, record.find(',', at) - at);
}

// The raw wind of one line as the display hands it on: TWS in m/s times 1.9438444924406 as
// knots, TWD in radians times 180 / 3.141592 as degrees, both kept as 32-bit floats; the time
// is the record's own (the replay sets the clock to it).
Sample SampleOf(const std::string& record, int line) {
    const double tws = std::strtod(Field(record, 10).c_str(), nullptr);
    const double twd = std::strtod(Field(record, 9).c_str(), nullptr);
    return {static_cast<float>(tws * 1.9438444924406), static_cast<float>(twd * 180 / 3.141592),
            kFirstDay + (kFirstSecondOfDay + line) / 86400.0};
}

template <typename T>
void PutLittleEndian(std::string& bytes, T value) {
    using Bits =
        std::conditional_t<sizeof(T) == 8, std::uint64_t,
                           std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint16_t>>;
    const auto bits = std::bit_cast<Bits>(value);
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        bytes += static_cast<char>((bits >> (8 * i)) & 0xFF);
    }
}

// The history file after the run: one observation per record; the first record takes the one
// sample of its own line, every later one the ten samples since the previous record, weighted
// by half the time to each neighbour (so 0.5, 1, ..., 1, 0.5 seconds). The directions all lie
// near 240 degrees, so none is unwrapped around the reference.
std::string ExpectedHistory(const std::vector<std::string>& records) {
    std::vector<Sample> samples;
    for (int line = 0; line < kVoyageLines; ++line) {
        samples.push_back(SampleOf(records[line], line));
        EXPECT_NEAR(samples.back().direction, 240, 40);
    }
    std::string bytes;
    const int count = 61;
    PutLittleEndian(bytes, std::int16_t{count});
    PutLittleEndian(bytes, samples[0].speed);
    PutLittleEndian(bytes, samples[0].direction);
    PutLittleEndian(bytes, samples[0].time);
    PutLittleEndian(bytes, std::int16_t{1});
    for (int k = 1; k < count; ++k) {
        const int first = 10 * k - 9;
        const int last = 10 * k;
        double sumWeight = 0;
        double sumSpeed = 0;
        double sumDirection = 0;
        double previousHalf = 0;
        for (int n = first; n <= last; ++n) {
            const double half = n < last ? (samples[n + 1].time - samples[n].time) / 2 : 0;
            const double weight = previousHalf + half;
            sumWeight += weight;
            sumSpeed += weight * samples[n].speed;
            sumDirection += weight * samples[n].direction;
            previousHalf = half;
        }
        PutLittleEndian(bytes, static_cast<float>(sumSpeed / sumWeight));
        PutLittleEndian(bytes, static_cast<float>(sumDirection / sumWeight));
        PutLittleEndian(bytes, samples[last].time);
        PutLittleEndian(bytes, std::int16_t{10});
    }
    // The slots never written stay zero.
    bytes.resize(18020, '\0');
    return bytes;
}

std::string FirstDifference(const std::string& actual, const std::string& expected) {
    std::size_t at = 0;
    while (at < actual.size() && at < expected.size() && actual[at] == expected[at]) {
        ++at;
    }
    return "sizes " + std::to_string(actual.size()) + " and " + std::to_string(expected.size()) +
           ", first difference at byte " + std::to_string(at);
}

TEST(VoyageReplay, TrackAndWindHistoryFollowTheRecordingRules) {
    const std::vector<std::string> records = SplitRecords(ReadFileBytes(kVoyage));
    ASSERT_EQ(records.size(), std::size_t(kVoyageLines));
    const std::string history = ExpectedHistory(records);

    // Records at lines 0, 10, ..., 600. The 60th (line 590, 23:59:50 UTC) fills the buffer and
    // flushes; the 61st (line 600, 00:00:00) and the closedown note at the last line's time
    // (00:00:09) are flushed by the close.
    std::string beforeMidnight;
    for (int line = 0; line <= 590; line += 10) {
        beforeMidnight += records[line];
    }
    const std::string atClose = records[600] + "/* 20260601 00:00:09 CZ - normal closedown\r\n";
    struct Row {
        const char* legend;
        const char* tz;
        int offsetSeconds;
        std::map<std::string, std::string> days;
    };
    const Row rows[] = {
        {"UTC: the first flush is still on 31 May",
         "UTC",
         0,
         {{"20260531.TRT", beforeMidnight}, {"20260601.TRT", atClose}}},
        {"two hours east: both flushes fall on 1 June local time",
         "ZZZ-2",
         7200,
         {{"20260601.TRT", beforeMidnight + atClose}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.legend);
        Boat boat({"DDE=1", "Track Time=10", "Track Distance=0", "Track CompDev=0"});
        QProcess process;
        const QDateTime startedUtc = QDateTime::currentDateTimeUtc();
        boat.Start(process, {"--replay", kVoyage}, row.tz, "");
        ASSERT_TRUE(process.waitForFinished(60000));
        const QDateTime endedUtc = QDateTime::currentDateTimeUtc();
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_TRUE(process.readAllStandardError().contains("ending trace function [OK]"));

        std::map<std::string, std::string> files = boat.Traces();
        for (const auto& [name, expected] : row.days) {
            EXPECT_EQ(files[name], expected) << name;
            files.erase(name);
        }
        const std::string actualHistory = files["wakeline_wc.bin"];
        EXPECT_TRUE(actualHistory == history) << FirstDifference(actualHistory, history);
        files.erase("wakeline_wc.bin");

        // The start-up note is written before any record set the clock: real time, in the
        // file of the real local date.
        ASSERT_EQ(files.size(), 1u);
        const auto& [name, note] = *files.begin();
        const std::string prefix = "/* ";
        const std::string tail =
            " CZ - Wakeline  V0.1.0 started commandline: " + boat.IniPath().toStdString() + "\r\n";
        ASSERT_EQ(note.size(), prefix.size() + 17 + tail.size()) << note;
        EXPECT_EQ(note.substr(0, 3), prefix);
        EXPECT_EQ(note.substr(20), tail);
        const std::string stamp = note.substr(3, 17);
        std::set<std::string> times;
        std::set<std::string> days;
        for (QDateTime t = startedUtc.addSecs(-1); t <= endedUtc.addSecs(1); t = t.addSecs(1)) {
            times.insert(t.toString("yyyyMMdd HH:mm:ss").toStdString());
            days.insert(t.addSecs(row.offsetSeconds).toString("yyyyMMdd").toStdString() + ".TRT");
        }
        EXPECT_TRUE(times.contains(stamp)) << stamp;
        EXPECT_TRUE(days.contains(name)) << name;
    }
}

TEST(VoyageReplay, BadLinesAreDroppedOrRefusedAndTheReplayGoesOn) {
    const std::string line =
        ",7.6,5.64,3.4152,3.4501,-0.0349,16.3,0.7330,0.5242,4.2182,7.08,9.46,4.23,3.5200,5.70,"
        ",,,,,,,";
    const std::string first = "20260601 10:00:00 CZ,54.1" + line + "\r\n";
    const std::string eightBit = "20260601 10:00:10 CZ,54.2" + line + "Cap Fr\xe9hel \xff\x80\r\n";
    const std::string last = "20260601 10:00:20 CZ,54.3" + line + "\n";
    std::string replay = first;
    replay += "garbage without any commas\n";
    replay += std::string("54.1\0,7.6,\0\0\0\n", 14);  // NUL bytes in a short line
    replay += eightBit;
    replay += std::string(1024 * 1024, 'y') + "\r";  // a megabyte ended by a lone CR
    replay += "/* 20260601 10:00:15 CZ - a note is not data\r\n";
    replay += last;
    replay += std::string(1024 * 1024, 'z');  // a megabyte and no end at all

    Boat boat({"DDE=1", "Track Time=10", "Track Distance=0", "Track CompDev=0"});
    const QString path = boat.TracesPath() + "/../bad.txt";
    std::ofstream(path.toStdString(), std::ios::binary) << replay;
    QProcess process;
    boat.Start(process, {"--replay", path});
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardError().contains("ending trace function [OK]"));

    // The stamped lines are records (the one read with LF gets the link's CR LF); the lines
    // that are no data lines were shown as failures and not recorded; the note line of the
    // replay is skipped; the clock kept the last stamp for the close.
    EXPECT_EQ(boat.Traces()["20260601.TRT"], first + eightBit + "20260601 10:00:20 CZ,54.3" + line +
                                                 "\r\n" +
                                                 "/* 20260601 10:00:20 CZ - normal closedown\r\n");
    const std::string log = ReadFileBytes(boat.LogPath());
    std::size_t dropped = 0;
    for (std::size_t at = log.find("Replay line too long, dropped"); at != std::string::npos;
         at = log.find("Replay line too long, dropped", at + 1)) {
        ++dropped;
    }
    EXPECT_EQ(dropped, 2u);
}

TEST(VoyageReplay, CtrlCOnTheDemoPipelineClosesTheRunWithItsTrack) {
    // The demo's pipeline in a process group of its own; Ctrl-C is SIGINT to the whole group.
    Boat boat({"DDE=1", "Track Time=0", "Track Distance=1", "Track CompDev=0"});
    QProcess process;
    process.setChildProcessModifier([] { ::setpgid(0, 0); });
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_CONFIG_HOME", boat.TracesPath() + "/../config");
    env.insert("XDG_STATE_HOME", boat.TracesPath() + "/../state");
    process.setProcessEnvironment(env);
    process.start(
        "bash",
        {"-c", QString("'%1' simulate --interval 0.01 | '%2' --headless --replay - "
                       "--log '%3' '%4,,,F'")
                   .arg(WAKELINE_TOOL_BINARY, WAKELINE_BINARY, boat.LogPath(), boat.IniPath())});
    ASSERT_TRUE(process.waitForStarted(10000));
    // Bounded: some lines through, at most ten seconds.
    for (int i = 0; i < 200 && ReadFileBytes(boat.LogPath()).find("lblDDE_LinkNotify 54.0") ==
                                   std::string::npos;
         ++i) {
        QThread::msleep(50);
    }
    ::kill(-static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardError().contains("ending trace function [OK]"));

    std::string track;
    for (const auto& [name, bytes] : boat.Traces()) {
        if (name.ends_with(".TRT")) {
            track += bytes;
        }
    }
    EXPECT_NE(track.find(" CZ,54.0"), std::string::npos);
    EXPECT_TRUE(track.ends_with(" CZ - normal closedown\r\n")) << track;
}

}  // namespace
}  // namespace wakeline::testing
