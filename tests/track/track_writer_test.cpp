#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "support/harness.h"
#include "track/track_writer.h"
#include "wind/wind_file.h"

namespace wakeline {
namespace {

constexpr const char* kDayFile = "/boat/track/20261115.TRT";
constexpr const char* kHistoryFile = "/boat/track/wakeline_wc.bin";
constexpr const char* kJournal = "/boat/track/wakeline_pending.txt";

// A data line at the given position, with its own line end as the link delivers it.
std::string Line(const std::string& lat = "52.5", const std::string& lon = "-4.25") {
    return lat + "," + lon + ",6.2,0.5,3.1,12.5\r\n";
}

class TrackWriterTest : public ::testing::Test, protected testing::Harness {
  protected:
    TrackWriterTest() { settings.TrackDir = "/boat/track"; }

    TrackWriter& Writer() {
        if (!writer) {
            writer.emplace(settings, clock, files, log, dialogs, history, samples);
        }
        return *writer;
    }
    // 2026-11-15 12:00:00 UTC plus whole seconds.
    void SetTime(int seconds) {
        clock.SetReplayTime(DateTimeFromFields({2026, 11, 15, 12, 0, 0}) +
                            seconds / kSecondsPerDay);
    }
    void Data(int seconds, const std::string& line = Line(), const std::string& cog = " 123") {
        SetTime(seconds);
        Writer().TraceWriteLine(line, false, cog);
    }
    void Note(int seconds, const std::string& text) {
        SetTime(seconds);
        Writer().TraceWriteLine(text, true);
    }

    TrackSettings settings;
    WindData history;
    WindData samples;
    std::optional<TrackWriter> writer;
};

TEST_F(TrackWriterTest, TrackTimeRecordsEveryTenSecondsWithTheWindOfEach) {
    settings.TrackTime = 10;
    Writer().SetHistoryLoaded();
    int redraws = 0;
    Writer().SetGraphRedraw([&] { ++redraws; });
    for (int s = 0; s <= 25; ++s) {
        AddWindObservation(samples, 10.0f, 90.0f, clock.NowUtc(), 1);
        Data(s);
    }
    // The first record flushes at once: the last write time is still zero.
    EXPECT_EQ(files.files[kDayFile], "20261115 12:00:00 CZ," + Line());
    Note(26, "normal closedown");  // notes are off: flushes only
    EXPECT_EQ(files.files[kDayFile], "20261115 12:00:00 CZ," + Line() + "20261115 12:00:10 CZ," +
                                         Line() + "20261115 12:00:20 CZ," + Line());

    ASSERT_EQ(history.Count, 3);
    EXPECT_EQ(history.Obs[0].Samples, 1);
    EXPECT_EQ(history.Obs[1].Samples, 10);  // the samples of seconds 1 to 10
    EXPECT_EQ(history.Obs[2].Samples, 10);
    EXPECT_EQ(samples.Count, 5);  // seconds 21 to 25, waiting for the next record
    EXPECT_EQ(redraws, 3);
}

TEST_F(TrackWriterTest, EachThresholdIsMetFromItsValueOn) {
    // 0.001 degree of latitude: 60 thousandths of a minute = 60 x 2.90888208665722e-7 rad,
    // x 6.367e6 = 111.1 m; 0.0005 degree = 55.6 m.
    settings.TrackCompDev = 20;
    settings.TrackDistance = 100;
    const struct {
        const char* legend;
        int seconds;
        std::string lat, cog;
        bool recorded;
    } rows[] = {
        {"first line: everything differs from zero", 0, "52.5", " 350", true},
        {"turn 5, no move", 1, "52.5", " 355", false},
        {"350 to 10 is a turn of 340", 2, "52.5", "  10", true},
        {"turn 19.5", 3, "52.5", "29.5", false},
        {"turn exactly 20", 4, "52.5", "  30", true},
        {"55.6 m", 5, "52.5005", "  30", false},
        {"111.1 m from the last record", 6, "52.501", "  30", true},
        {"hours later, Track Time off", 9000, "52.501", "  30", false},
    };
    for (const auto& row : rows) {
        const std::int16_t before = history.Count;
        Data(row.seconds, Line(row.lat), row.cog);
        EXPECT_EQ(history.Count > before, row.recorded) << row.legend;
    }
}

TEST_F(TrackWriterTest, PositionIsWholeThousandthsOfAMinuteHalvesToEven) {
    settings.TrackTime = 1;
    const struct {
        const char* legend;
        std::string line;
        std::int32_t lat, lon;
    } rows[] = {
        {"plain degrees", Line("52.5", "-4.25"), 3150000, -255000},
        {"937.5 to 938, 2812.5 to 2812", Line("0.015625", "0.046875"), 938, 2812},
        {"40000 degrees overflow 32 bits: not recorded", Line("40000"), 938, 2812},
    };
    int seconds = 0;
    for (const auto& row : rows) {
        Data(seconds += 2, row.line);
        EXPECT_EQ(Writer().State().LastLat, row.lat) << row.legend;
        EXPECT_EQ(Writer().State().LastLon, row.lon) << row.legend;
    }
    EXPECT_NE(Log().find("line not recorded"), std::string::npos);
}

TEST_F(TrackWriterTest, NotesAndTheirLogDataSwitch) {
    // All thresholds off: no data line is ever recorded; notes are, with SetLogData only.
    Note(0, "start");  // notes off: an empty append that creates the day file
    Data(1);
    Note(2, "dropped");
    EXPECT_EQ(files.files[kDayFile], "");
    Writer().Settings().SetLogData = true;
    Note(3, "");  // never written
    Note(101, "reefed");
    EXPECT_EQ(files.files[kDayFile], "/* 20261115 12:01:41 CZ - reefed\r\n");
    EXPECT_EQ(history.Count, 0);

    // A note flushes the pending records and follows them.
    Writer().Settings().TrackTime = 1;
    Data(102);
    Note(103, "tacked");
    EXPECT_EQ(files.files[kDayFile], "/* 20261115 12:01:41 CZ - reefed\r\n20261115 12:01:42 CZ," +
                                         Line() + "/* 20261115 12:01:43 CZ - tacked\r\n");
}

// The sixtieth record's flush is the refused-append test's, with kept records beside it.
TEST_F(TrackWriterTest, OnlyAnIntervalPassedOrAClockSetBackFlushes) {
    settings.TrackTime = 1;
    settings.DiskWriteInterval = 600;
    Note(0, "start");
    Data(600);  // exactly the interval after the flush at 0: still pending
    EXPECT_EQ(Writer().PendingCount(), 1u);
    Data(601);
    EXPECT_EQ(files.files[kDayFile],
              "20261115 12:10:00 CZ," + Line() + "20261115 12:10:01 CZ," + Line());

    // The clock set back an hour: 12:10:01 less 3600 s is 11:10:01. The line meets Track Time
    // and is flushed at once; the next second is a record of its own, kept for later.
    const std::size_t flushed = files.files[kDayFile].size();
    Data(601 - 3600);
    EXPECT_EQ(Writer().PendingCount(), 0u);
    EXPECT_EQ(files.files[kDayFile].substr(flushed), "20261115 11:10:01 CZ," + Line());
    Data(602 - 3600);
    EXPECT_EQ(Writer().PendingCount(), 1u);
}

TEST_F(TrackWriterTest, FilesAreNamedByTheLocalDateStampsCarryTheDataTime) {
    settings.TrackTime = 1;
    DateTime busTime = 0.0;
    Writer().SetSeaTalkTime([&] { return busTime; });
    Note(0, "start");
    Data(1);  // no bus time yet: the program clock
    busTime = DateTimeFromFields({2026, 11, 15, 12, 5, 0});
    Data(2);
    system.localDate = CalendarDate{2026, 11, 16};  // the laptop's zone is past midnight
    Note(3, "flush");
    EXPECT_EQ(files.files["/boat/track/20261116.TRT"],
              "20261115 12:00:01 CZ," + Line() + "20261115 12:05:00 CZ," + Line());
}

TEST_F(TrackWriterTest, WhatAFlushWritesBesideTheTrack) {
    // The history waits until start-up has loaded it.
    files.files[kHistoryFile] = "the saved history";
    settings.TrackTime = 1;
    settings.TraceOn = false;
    Data(0);
    EXPECT_EQ(files.files[kHistoryFile], "the saved history");
    // Without trace the records are discarded, but the history is saved.
    Writer().SetHistoryLoaded();
    Note(1, "flush");
    EXPECT_EQ(files.files.count(kDayFile), 0u);
    EXPECT_EQ(Writer().PendingCount(), 0u);
    EXPECT_EQ(DecodeWindData(files.files[kHistoryFile]).data.Count, 1);
    // A history the disk refuses is logged with the disk's reason and told once.
    files.readOnlyPaths.insert(kHistoryFile);
    Note(2, "flush");
    Note(3, "flush");
    EXPECT_NE(Log().find("TraceWriteLine could not save the wind history: could not write "
                         "/boat/track/wakeline_wc.bin: Read-only file system"),
              std::string::npos);
    EXPECT_EQ(
        dialogs.messages,
        std::vector<std::string>{"The wind history /boat/track/wakeline_wc.bin cannot be saved."});
    // Without a track directory nothing at all is written.
    files.files.clear();
    Writer().Settings().TrackDir = "";
    Writer().Settings().TraceOn = true;
    Note(4, "flush");
    EXPECT_EQ(files.files.size(), 0u);
}

TEST_F(TrackWriterTest, ARefusedAppendKeepsEveryRecordUntilTheDiskWorks) {
    settings.TrackTime = 1;
    Writer().SetHistoryLoaded();
    Note(0, "start");
    files.fullPaths.insert(kDayFile);
    Data(1);
    Note(2, "flush fails");
    Data(3);
    Note(4, "flush fails again");
    EXPECT_EQ(dialogs.messages.size(), 1u) << "shown once, not on every retry";
    EXPECT_NE(Log().find("TraceWriteLine could not append to /boat/track/20261115.TRT: No space "
                         "left on device; 2 records kept for the next write"),
              std::string::npos)
        << "the disk's reason is logged";
    EXPECT_EQ(DecodeWindData(files.files[kHistoryFile]).data.Count, 2) << "saved all the same";

    // Kept records do not count towards the 60: the next retry is after 60 new ones.
    for (int s = 5; s < 63; ++s) {
        Data(s);
    }
    files.fullPaths.clear();
    Data(63);
    EXPECT_EQ(Writer().PendingCount(), 61u) << "59 new records: no retry yet";
    Data(64);
    EXPECT_EQ(Writer().PendingCount(), 0u);
    const std::string first = "20261115 12:00:01 CZ," + Line() + "20261115 12:00:03 CZ," + Line();
    EXPECT_EQ(files.files[kDayFile].substr(0, first.size()), first);
    EXPECT_EQ(files.files[kDayFile].size(), 31 * first.size());
}

TEST_F(TrackWriterTest, TheJournalHoldsExactlyWhatIsPending) {
    settings.TrackTime = 1;
    const auto record = [](int second) {
        return "20261115 12:00:0" + std::to_string(second) + " CZ," + Line();
    };
    Note(0, "start");
    Data(1);
    Data(2);
    EXPECT_EQ(files.files[kJournal], record(1) + record(2));
    Note(3, "flush");
    EXPECT_EQ(files.files[kJournal], "") << "emptied by the flush";
    EXPECT_EQ(files.files[kDayFile], record(1) + record(2));

    // A journal the disk refuses does not stop the record, and is logged once with the reason.
    files.readOnlyPaths.insert(kJournal);
    Data(4);
    Data(5);
    EXPECT_EQ(Writer().PendingCount(), 2u);
    // The journal is back but the track file is full: the flush rewrites the journal whole.
    files.readOnlyPaths.clear();
    files.fullPaths.insert(kDayFile);
    Note(6, "flush fails");
    EXPECT_EQ(files.files[kJournal], record(4) + record(5));
    files.fullPaths.clear();
    Note(7, "flush");
    EXPECT_EQ(files.files[kDayFile], record(1) + record(2) + record(4) + record(5));
    EXPECT_EQ(files.files[kJournal], "");
    const std::string logged =
        "Track journal: could not append to /boat/track/wakeline_pending.txt: Read-only file "
        "system; recording goes on, records since the last flush are in memory only";
    const std::string log = Log();
    ASSERT_NE(log.find(logged), std::string::npos);
    EXPECT_EQ(log.find(logged, log.find(logged) + 1), std::string::npos) << "logged once";
}

TEST_F(TrackWriterTest, StartUpRecoversTheJournalIntoTheDayOfItsRecords) {
    // The clock stands at 2026-11-15 12:00 UTC, the local date is the UTC date.
    const std::string m1 = "20261114 21:00:00 CZ," + Line(), m2 = "20261114 21:00:01 CZ," + Line();
    const std::string cut = "20261114 21:00:01 CZ,52.5,-4",
                      reefed = "/* 20261115 00:10:00 CZ - reefed\r\n";
    const std::string monday = "/boat/track/20261114.TRT",
                      recovered = "Track journal: 2 records recovered into ";
    const struct {
        const char* legend;
        std::string journal;
        bool traceOn, trackRefused;
        std::string file, written;  // the file recovered into, "" if the journal stays as it is
        std::string logged;
    } rows[] = {
        // clang-format off
        {"died the evening before: that evening's file", m1 + m2, true, false, monday, m1 + m2, recovered + monday},
        {"a last record cut by a power cut gets its line end", m1 + cut, true, false, monday, m1 + cut + "\r\n", recovered + monday},
        {"the newest stamp decides; a note's counts", m1 + reefed, true, false, kDayFile, m1 + reefed, recovered + kDayFile},
        {"no readable stamp: today's file", Line(), true, false, kDayFile, Line(), "Track journal: 1 record recovered into " + std::string(kDayFile)},
        {"a refused track file: kept pending", m1, true, true, "", "", "could not append to /boat/track/20261114.TRT: No space left on device; 1 records kept"},
        {"tracing off: the journal is not touched", m1, false, false, "", "", ""},
        {"an empty journal writes nothing", "", true, false, "", "", ""},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.legend);
        files.files = {{kJournal, row.journal}};
        files.fullPaths.clear();
        if (row.trackRefused) {
            files.fullPaths.insert(monday);
        }
        settings.TraceOn = row.traceOn;
        writer.reset();
        SetTime(0);
        Writer().RecoverJournal();
        const std::string log = Log();
        files.files.erase(testing::kLogPath);
        using Files = std::map<std::string, std::string>;
        const Files after = row.file.empty() ? Files{{kJournal, row.journal}}
                                             : Files{{row.file, row.written}, {kJournal, ""}};
        EXPECT_EQ(files.files, after);
        if (!row.logged.empty()) {
            EXPECT_NE(log.find(row.logged), std::string::npos) << log;
        } else {
            EXPECT_EQ(log, "");
        }
        EXPECT_EQ(Writer().PendingCount(), row.trackRefused ? 1u : 0u);
    }
}

}  // namespace
}  // namespace wakeline
