#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "shell/configuration.h"
#include "support/fakes.h"

namespace wakeline {
namespace {

class IniFileGetTest : public ::testing::Test {
  protected:
    IniFileGetTest() { log_.SetMode(kDebugLogFile); }

    ChartPlotterSettings Read(const std::string& text, ChartPlotterSettings settings = {}) {
        files_.files[kIni] = text;
        IniFileGet(kIni, files_, log_, settings);
        return settings;
    }
    std::string LogText() { return files_.files[kLog]; }

    static constexpr const char* kIni = "/sc/SeaClear_2.ini";
    static constexpr const char* kLog = "/log.txt";
    testing::FakeClock system_;
    ProgramClock clock_{system_};
    testing::FakeFileSystem files_;
    testing::RecordingDialogs dialogs_;
    DiagnosticLog log_{clock_, files_, dialogs_, kLog};
};

TEST_F(IniFileGetTest, DdeKeyIsMatchedLiterally) {
    struct Row {
        const char* legend;
        const char* text;
        std::int16_t dde;
    };
    const Row rows[] = {
        {"plain", "[Program Setup]\r\nDDE=1\r\n", 1},
        {"spaces around = belong to the name", "[Program Setup]\r\nDDE = 1\r\n", 0},
        {"space after = is skipped in the value", "[Program Setup]\r\nDDE= 1\r\n", 1},
        {"section case matters", "[program setup]\r\nDDE=1\r\n", 0},
        {"section with a comment is another", "[Program Setup] ;main\r\nDDE=1\r\n", 0},
        {"key case matters", "[Program Setup]\r\ndde=1\r\n", 0},
        {"no section", "DDE=1\r\n", 0},
        {"other section", "[Program Setup]\r\n[Other]\r\nDDE=1\r\n", 0},
        {"section again", "[Other]\r\nDDE=5\r\n[Program Setup]\r\nDDE=1\r\n", 1},
        {"a comment line is no key", "[Program Setup]\r\n;DDE=1\r\n", 0},
        {"the last line wins", "[Program Setup]\r\nDDE=1\r\nDDE=0\r\n", 0},
        {"halves round to even", "[Program Setup]\nDDE=2.5\n", 2},
        {"negative", "[Program Setup]\nDDE=-3\n", -3},
        {"no number", "[Program Setup]\nDDE=yes\n", 0},
        {"CR ends lines too", "[Program Setup]\rDDE=1\r", 1},
        {"LF alone, no final end", "[Program Setup]\nDDE=1", 1},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Read(row.text).Dde, row.dde) << row.legend;
    }
}

TEST_F(IniFileGetTest, ThresholdsAndDirectories) {
    const ChartPlotterSettings read = Read(
        "[Program Setup]\r\n"
        "Track Time=30=x\r\n"
        "Track Distance=  12.5 m\r\n"
        "Track CompDev=-7.25\r\n"
        "Track Dir= /data/tracks =old\r\n"
        "SeaClear Dir=/opt/sc\r\n");
    EXPECT_EQ(read.TrackTime, 30.0f) << "the value ends at the second =";
    EXPECT_EQ(read.TrackDistance, 12.5f);
    EXPECT_EQ(read.TrackCompDev, -7.25f);
    EXPECT_EQ(read.TrackDir, " /data/tracks ") << "directories keep their blanks";
    EXPECT_EQ(read.SeaClearDir, "/opt/sc");

    ChartPlotterSettings before;
    before.TrackTime = 5;
    before.TrackDir = "/old";
    const ChartPlotterSettings emptied =
        Read("[Program Setup]\r\nTrack Time=\r\nTrack Dir=\r\n", before);
    EXPECT_EQ(emptied.TrackTime, 0.0f);
    EXPECT_EQ(emptied.TrackDir, "");
}

TEST_F(IniFileGetTest, ValuesThatDoNotFitKeepTheOldOneAndAreLogged) {
    ChartPlotterSettings before;
    before.Dde = 1;
    before.TrackTime = 30;
    before.TrackDistance = 100;
    const ChartPlotterSettings read = Read(
        "[Program Setup]\r\n"
        "DDE=40000\r\n"
        "Track Time=1" +
            std::string(39, '0') +
            "\r\n"  // beyond a 32-bit float
            "Track Distance=1" +
            std::string(400, '0') + "\r\n",  // beyond a double
        before);
    EXPECT_EQ(read.Dde, 1);
    EXPECT_EQ(read.TrackTime, 30.0f);
    EXPECT_EQ(read.TrackDistance, 100.0f);
    const std::string log = LogText();
    EXPECT_NE(log.find("DDE"), std::string::npos) << log;
    EXPECT_NE(log.find("Track Time"), std::string::npos) << log;
    EXPECT_NE(log.find("Track Distance"), std::string::npos) << log;
}

TEST_F(IniFileGetTest, AMissingFileChangesNothingAndIsLogged) {
    ChartPlotterSettings settings;
    settings.Dde = 1;
    settings.TrackDir = "/t";
    IniFileGet("/nowhere.ini", files_, log_, settings);
    EXPECT_EQ(settings.Dde, 1);
    EXPECT_EQ(settings.TrackDir, "/t");
    EXPECT_NE(LogText().find("/nowhere.ini"), std::string::npos);
}

TEST_F(IniFileGetTest, GarbageAndHugeFilesAreReadToTheEnd) {
    // Bytes of every value, "=" and "[" included, from a fixed pseudo-random sequence.
    std::string garbage;
    std::uint32_t state = 12345;
    for (int i = 0; i < 200000; ++i) {
        state = state * 1103515245u + 12345u;
        garbage += static_cast<char>(state >> 24);
    }
    EXPECT_EQ(Read(garbage + "\n[Program Setup]\nDDE=1\nTrack Time=9\n").TrackTime, 9.0f);

    std::string many = "[Program Setup]\r\n";
    for (int i = 1; i <= 100000; ++i) {
        many += "Track Time=" + std::to_string(i) + "\r\n";
    }
    EXPECT_EQ(Read(many).TrackTime, 100000.0f);
}

}  // namespace
}  // namespace wakeline
