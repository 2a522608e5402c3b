#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "shell/configuration.h"
#include "support/harness.h"

namespace wakeline {
namespace {

constexpr const char* kIni = "/sc/SeaClear_2.ini";

class IniFileGetTest : public ::testing::Test, protected testing::Harness {
  protected:
    ChartPlotterSettings Read(const std::string& text, ChartPlotterSettings settings = {}) {
        files.files[kIni] = text;
        IniFileGet(kIni, files, log, settings);
        return settings;
    }
};

TEST_F(IniFileGetTest, SectionAndKeyAreMatchedLiterally) {
    const struct {
        const char* legend;
        const char* text;
        std::int16_t dde;
    } rows[] = {
        {"plain", "[Program Setup]\r\nDDE=1\r\n", 1},
        {"spaces around = belong to the name", "[Program Setup]\r\nDDE = 1\r\n", 0},
        {"space after = is skipped in the value", "[Program Setup]\r\nDDE= 1\r\n", 1},
        {"section case matters", "[program setup]\r\nDDE=1\r\n", 0},
        {"key case matters", "[Program Setup]\r\ndde=1\r\n", 0},
        {"other section", "[Program Setup]\r\n[Other]\r\nDDE=1\r\n", 0},
        {"the last line wins", "[Program Setup]\r\nDDE=1\r\nDDE=0\r\n", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Read(row.text).Dde, row.dde) << row.legend;
    }
}

TEST_F(IniFileGetTest, ThresholdsAndDirectories) {
    const ChartPlotterSettings read = Read(
        "[Program Setup]\r\nTrack Time=30=x\r\nTrack Distance=  12.5 m\r\n"
        "Track CompDev=-7.25\r\nTrack Dir= /data/tracks =old\r\nSeaClear Dir=/opt/sc\r\n");
    EXPECT_EQ(read.TrackTime, 30.0f) << "the value ends at the second =";
    EXPECT_EQ(read.TrackDistance, 12.5f);
    EXPECT_EQ(read.TrackCompDev, -7.25f);
    EXPECT_EQ(read.TrackDir, " /data/tracks ") << "directories keep their blanks";
    EXPECT_EQ(read.SeaClearDir, "/opt/sc");
}

TEST_F(IniFileGetTest, ValuesThatDoNotFitKeepTheOldOneAndAreLogged) {
    // 40000 leaves 16 bits, 1e39 a 32-bit float, 1e400 a double.
    const ChartPlotterSettings read =
        Read("[Program Setup]\r\nDDE=40000\r\nTrack Time=1" + std::string(39, '0') +
                 "\r\nTrack Distance=1" + std::string(400, '0') + "\r\n",
             {1, 30, 100, 0, "", ""});
    EXPECT_EQ(read.Dde, 1);
    EXPECT_EQ(read.TrackTime, 30.0f);
    EXPECT_EQ(read.TrackDistance, 100.0f);
    for (const char* key : {"DDE", "Track Time", "Track Distance"}) {
        EXPECT_NE(Log().find(key), std::string::npos) << key;
    }
}

TEST_F(IniFileGetTest, AMissingFileChangesNothingAndIsLogged) {
    ChartPlotterSettings settings{1, 0, 0, 0, "/t", ""};
    IniFileGet("/nowhere.ini", files, log, settings);
    EXPECT_EQ(settings.Dde, 1);
    EXPECT_EQ(settings.TrackDir, "/t");
    EXPECT_NE(Log().find("/nowhere.ini"), std::string::npos);
}

TEST_F(IniFileGetTest, GarbageIsReadToTheEnd) {
    // Bytes of every value, "=" and "[" included, from a fixed pseudo-random sequence.
    std::string garbage;
    std::uint32_t state = 12345;
    for (int i = 0; i < 200000; ++i) {
        state = state * 1103515245u + 12345u;
        garbage += static_cast<char>(state >> 24);
    }
    EXPECT_EQ(Read(garbage + "\n[Program Setup]\nDDE=1\nTrack Time=9\n").TrackTime, 9.0f);
}

}  // namespace
}  // namespace wakeline
