#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>

#include "base/date_time.h"
#include "support/fakes.h"
#include "wind/wind_file.h"

namespace wakeline {
namespace {

std::string Bytes(std::initializer_list<int> values) {
    std::string out;
    for (int v : values) {
        out.push_back(static_cast<char>(v));
    }
    return out;
}

TEST(EncodeWindData, FixedLittleEndianRecordWithEverySlot) {
    WindData data;
    data.Count = 1;
    data.Obs[0] = {1.5f, 270.0f, 45000.5, 7};
    data.Obs[1000] = {1.5f, 0.0f, 0.0, -2};  // stale, written all the same
    const std::string file = EncodeWindData(data);

    ASSERT_EQ(file.size(), 18020u);
    // Count 1.
    EXPECT_EQ(file.substr(0, 2), Bytes({0x01, 0x00}));
    // 1.5 = 0x3FC00000.
    EXPECT_EQ(file.substr(2, 4), Bytes({0x00, 0x00, 0xC0, 0x3F}));
    // 270 = 1.0546875 x 2^8: exponent 0x87, fraction 0x070000 -> 0x43870000.
    EXPECT_EQ(file.substr(6, 4), Bytes({0x00, 0x00, 0x87, 0x43}));
    // 45000.5 = 1010111111001000.1b = 1.0101111110010001b x 2^15 -> 0x40E5F91000000000.
    EXPECT_EQ(file.substr(10, 8), Bytes({0x00, 0x00, 0x00, 0x00, 0x10, 0xF9, 0xE5, 0x40}));
    EXPECT_EQ(file.substr(18, 2), Bytes({0x07, 0x00}));
    // Slot 1 is all zero; slot 1000 starts at 2 + 18 x 1000 and ends the file.
    EXPECT_EQ(file.substr(20, 18), std::string(18, '\0'));
    EXPECT_EQ(file.substr(18002, 4), Bytes({0x00, 0x00, 0xC0, 0x3F}));
    EXPECT_EQ(file.substr(18018, 2), Bytes({0xFE, 0xFF}));
}

TEST(DecodeWindData, ReadsByPositionAndRefusesImpossibleContents) {
    WindData saved;
    saved.Count = 2;
    saved.Obs[0] = {1.5f, 270.0f, 45000.5, 7};
    saved.Obs[1] = {2.5f, 10.0f, 45000.75, 1};
    saved.Obs[2] = {9.0f, 9.0f, std::numeric_limits<double>::quiet_NaN(), 9};  // stale
    const std::string whole = EncodeWindData(saved);

    const WindDecode roundTrip = DecodeWindData(whole + "extra bytes are ignored");
    EXPECT_EQ(roundTrip.data.Obs[1].Time, 45000.75);
    EXPECT_EQ(roundTrip.data.Obs[2].Samples, 9) << "a stale slot is read, not judged";

    const auto withCount = [](std::string file, int low, int high) {
        file[0] = static_cast<char>(low);
        file[1] = static_cast<char>(high);
        return file;
    };
    WindData clean = saved;
    clean.Obs[2].Time = 0.0;
    WindData nanSpeed = clean;
    nanSpeed.Obs[1].Speed = std::numeric_limits<float>::quiet_NaN();
    WindData infiniteDirection = clean;
    infiniteDirection.Obs[0].Direction = std::numeric_limits<float>::infinity();
    const struct {
        const char* legend;
        std::string file;
        std::int16_t count;
        bool damaged;
    } rows[] = {
        {"count 1001 is a full buffer", withCount(EncodeWindData(clean), 0xE9, 0x03), 1001, false},
        {"count 1002", withCount(EncodeWindData(clean), 0xEA, 0x03), 0, true},
        {"count 3 holds slot 2's NaN time", withCount(whole, 0x03, 0x00), 0, true},
        {"a held NaN speed", EncodeWindData(nanSpeed), 0, true},
        {"a held infinite direction", EncodeWindData(infiniteDirection), 0, true},
    };
    for (const auto& row : rows) {
        const WindDecode decoded = DecodeWindData(row.file);
        EXPECT_EQ(decoded.data.Count, row.count) << row.legend;
        EXPECT_EQ(!decoded.problem.empty(), row.damaged) << row.legend;
    }
}

TEST(LoadWindHistory, KeepsAHistoryUpToOneHourOld) {
    // 13:00 to 14:00 on this day is one of the hours whose raw date-time difference comes out
    // a hair above 1/24.
    const DateTime newest = DateTimeFromFields({2026, 11, 15, 13, 0, 0});
    WindData saved;
    AddWindObservation(saved, 5.0f, 180.0f, newest, 3);
    const std::string file = EncodeWindData(saved);

    using Outcome = WindLoadOutcome;
    const std::string empty = EncodeWindData(WindData{});
    const struct {
        const char* legend;
        std::optional<std::string> bytes;
        CalendarFields now;
        Outcome outcome;
        std::int16_t count;
    } rows[] = {
        {"exactly one hour", file, {2026, 11, 15, 14, 0, 0}, Outcome::Continued, 1},
        {"one hour and a second", file, {2026, 11, 15, 14, 0, 1}, Outcome::TooOld, 0},
        {"no file", std::nullopt, {2026, 11, 15, 13, 0, 0}, Outcome::Missing, 0},
        {"empty history of any age", empty, {2030, 1, 1, 0, 0, 0}, Outcome::Continued, 0},
        {"count 2000", Bytes({0xD0, 0x07}), {2026, 11, 15, 13, 0, 0}, Outcome::Damaged, 0},
    };
    for (const auto& row : rows) {
        const WindHistoryLoad load = LoadWindHistory(row.bytes, DateTimeFromFields(row.now));
        EXPECT_EQ(load.outcome, row.outcome) << row.legend;
        EXPECT_EQ(load.history.Count, row.count) << row.legend;
    }
}

// A disk on which files cannot be read whole, as a history of hundreds of megabytes should
// not be: only the start of a file can be had.
class StartOnlyFileSystem : public testing::FakeFileSystem {
  public:
    Result<std::string> ReadFile(const std::string& path) const override {
        return Status::FromErrno("read", path, EFBIG);
    }
    Result<std::string> ReadFileStart(const std::string& path,
                                      std::size_t maxBytes) const override {
        return files.at(path).substr(0, maxBytes);
    }
};

TEST(LoadWindHistoryFile, ReadsOnlyTheRecordOfALongerFile) {
    const DateTime newest = DateTimeFromFields({2026, 11, 15, 13, 0, 0});
    WindData saved;
    AddWindObservation(saved, 5.0f, 180.0f, newest, 3);
    StartOnlyFileSystem files;
    files.files["/t/wakeline_wc.bin"] = EncodeWindData(saved) + std::string(100000, '\xff');
    const WindHistoryLoad load = LoadWindHistoryFile(files, "/t/wakeline_wc.bin", newest);
    EXPECT_EQ(load.outcome, WindLoadOutcome::Continued) << load.problem;
    EXPECT_EQ(load.history.Count, 1);
}

}  // namespace
}  // namespace wakeline
