// A recorded voyage replayed through the real `wakeline --headless --replay`: the track files
// and the wind history it leaves are worked out here from the recording's own lines and the
// recording rules (a record every 10 seconds, a flush after 60 records and at the close, day
// files named by the local date at the flush, one averaged wind observation per record).

#include <gtest/gtest.h>

#include <QDateTime>
#include <QProcess>

#include <bit>
#include <cstdint>
#include <cstdlib>
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

std::vector<std::string> SplitRecords(const std::string& bytes) {
    std::vector<std::string> records;
    for (std::size_t at = 0, end; (end = bytes.find("\r\n", at)) != std::string::npos;
         at = end + 2) {
        records.push_back(bytes.substr(at, end + 2 - at));
    }
    return records;
}

double Field(const std::string& record, int index) {
    std::size_t at = record.find(" CZ,") + 4;
    for (int i = 0; i < index; ++i) {
        at = record.find(',', at) + 1;
    }
    return std::strtod(record.c_str() + at, nullptr);
}

// The history file is little-endian, as this machine is.
static_assert(std::endian::native == std::endian::little);
template <typename T>
void Put(std::string& bytes, T value) {
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

// The history file after the run. Each line's raw wind as the display hands it on: TWS in m/s
// times 1.9438444924406 as knots, TWD in radians times 180 / 3.141592 as degrees, 32-bit
// floats, at the record's own time. The first record takes its one sample, every later one the
// ten samples since the previous record weighted by half the time to each neighbour (0.5, 1,
// ..., 1, 0.5 s). The directions all lie near 240, so none is unwrapped around the reference.
std::string ExpectedHistory(const std::vector<std::string>& records) {
    std::vector<float> speed, direction;
    std::vector<double> time;
    for (int line = 0; line < kVoyageLines; ++line) {
        speed.push_back(static_cast<float>(Field(records[line], 10) * 1.9438444924406));
        direction.push_back(static_cast<float>(Field(records[line], 9) * 180 / 3.141592));
        time.push_back(kFirstDay + (kFirstSecondOfDay + line) / 86400.0);
        EXPECT_NEAR(direction.back(), 240, 40);
    }
    std::string bytes;
    Put(bytes, std::int16_t{61});
    Put(bytes, speed[0]);
    Put(bytes, direction[0]);
    Put(bytes, time[0]);
    Put(bytes, std::int16_t{1});
    for (int last = 10; last <= 600; last += 10) {
        double sumWeight = 0, sumSpeed = 0, sumDirection = 0, previousHalf = 0;
        for (int n = last - 9; n <= last; ++n) {
            const double half = n < last ? (time[n + 1] - time[n]) / 2 : 0;
            sumWeight += previousHalf + half;
            sumSpeed += (previousHalf + half) * speed[n];
            sumDirection += (previousHalf + half) * direction[n];
            previousHalf = half;
        }
        Put(bytes, static_cast<float>(sumSpeed / sumWeight));
        Put(bytes, static_cast<float>(sumDirection / sumWeight));
        Put(bytes, time[last]);
        Put(bytes, std::int16_t{10});
    }
    bytes.resize(18020, '\0');  // the slots never written stay zero
    return bytes;
}

TEST(VoyageReplay, TrackAndWindHistoryFollowTheRecordingRules) {
    const std::vector<std::string> records = SplitRecords(ReadFileBytes(kVoyage));
    ASSERT_EQ(records.size(), std::size_t(kVoyageLines));
    const std::string history = ExpectedHistory(records);

    // The first record (line 0, 23:50:00 UTC) flushes at once: the replayed time lies before
    // the start-up note's flush at the real time, which counts as a clock set back. The 60th
    // record after it (line 600, 00:00:00 UTC) flushes, on the next day; the closedown note at
    // the last line's time is flushed by the close.
    std::string afterFirst;
    for (int line = 10; line <= 600; line += 10) {
        afterFirst += records[line];
    }
    afterFirst += "/* 20260601 00:00:09 CZ - normal closedown\r\n";
    const struct {
        const char* tz;
        int offsetSeconds;
        std::map<std::string, std::string> days;
    } rows[] = {
        {"UTC", 0, {{"20260531.TRT", records[0]}, {"20260601.TRT", afterFirst}}},
        {"ZZZ-2", 7200, {{"20260601.TRT", records[0] + afterFirst}}},  // both on 1 June
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tz);
        Boat boat({"DDE=1", "Track Time=10", "Track Distance=0", "Track CompDev=0"});
        QProcess process;
        const QDateTime startedUtc = QDateTime::currentDateTimeUtc();
        boat.Start(process, {"--replay", kVoyage}, row.tz, "");
        ASSERT_TRUE(process.waitForFinished(60000));
        const QDateTime endedUtc = QDateTime::currentDateTimeUtc();
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_TRUE(process.readAllStandardError().contains("ending trace function [OK]"));

        std::map<std::string, std::string> files = boat.Traces();
        for (const auto& [name, expected] : row.days) {
            EXPECT_EQ(files[name], expected) << name;
            files.erase(name);
        }
        EXPECT_TRUE(files["wakeline_wc.bin"] == history) << files["wakeline_wc.bin"].size();
        files.erase("wakeline_wc.bin");
        EXPECT_EQ(files["wakeline_pending.txt"], "") << "the close's flush empties the journal";
        files.erase("wakeline_pending.txt");

        // The start-up note comes before any record set the clock: real time, in the file of
        // the real local date.
        ASSERT_EQ(files.size(), 1u);
        const auto& [name, note] = *files.begin();
        EXPECT_EQ(note.substr(0, 3) + note.substr(20),
                  "/*  CZ - Wakeline  V0.1.0 started commandline: " + boat.IniPath().toStdString() +
                      "\r\n");
        std::set<std::string> stamps;
        for (QDateTime t = startedUtc.addSecs(-1); t <= endedUtc.addSecs(1); t = t.addSecs(1)) {
            stamps.insert(t.addSecs(row.offsetSeconds).toString("yyyyMMdd").toStdString() +
                          ".TRT " + t.toString("yyyyMMdd HH:mm:ss").toStdString());
        }
        EXPECT_TRUE(stamps.contains(name + " " + note.substr(3, 17))) << name << note;
    }
}

TEST(VoyageReplay, BadLinesOnStandardInputAreDroppedOrRefusedAndTheReplayGoesOn) {
    const std::string line =
        ",7.6,5.64,3.4152,3.4501,-0.0349,16.3,0.7330,0.5242,4.2182,7.08,9.46,4.23,3.5200,5.70,"
        ",,,,,,,";
    const std::string first = "20260601 10:00:00 CZ,54.1" + line + "\r\n";
    std::string replay = first + "garbage without any commas\n";
    replay += std::string(1024 * 1024, 'y') + "\r";  // a megabyte ended by a lone CR
    replay += "/* 20260601 10:00:15 CZ - a note is not data\r\n";
    replay += "20260601 10:00:20 CZ,54.3" + line + "\n";
    replay += std::string(1024 * 1024, 'z');  // a megabyte and no end at all

    Boat boat({"DDE=1", "Track Time=10", "Track Distance=0", "Track CompDev=0"});
    QProcess process;
    boat.Start(process, {"--replay", "-"});
    process.write(replay.data(), qint64(replay.size()));
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardError().contains("ending trace function [OK]"));

    // The line read with LF gets the link's CR LF; the clock kept the last stamp for the close.
    EXPECT_EQ(boat.Traces()["20260601.TRT"], first + "20260601 10:00:20 CZ,54.3" + line + "\r\n" +
                                                 "/* 20260601 10:00:20 CZ - normal closedown\r\n");
    const std::string log = ReadFileBytes(boat.LogPath());
    const std::string dropped = "Replay line too long, dropped";
    EXPECT_NE(log.find(dropped), log.rfind(dropped)) << "both megabytes";
}

}  // namespace
}  // namespace wakeline::testing
