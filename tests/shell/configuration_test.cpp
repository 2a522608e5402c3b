// Reading the chart plotter's settings file and choosing the program's files from it.

#include "shell/configuration.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/harness.h"

namespace wakeline {
namespace {

using Texts = std::vector<std::string>;

const std::string kProgramDir = "/opt/wl";
const std::string kScDir = "/home/u/sc";
const std::string kIni = kScDir + "/SeaClear_2.ini";

struct Config : testing::Harness {
    ChartPlotterSettings Read(const std::string& text, ChartPlotterSettings settings = {}) {
        files.files[kIni] = text;
        IniFileGet(kIni, files, log, settings);
        return settings;
    }
    bool Start(const std::string& commandLine) {
        return DetermineFiles({commandLine, kProgramDir, ""}, files, dialogs, log, out);
    }
    ProgramFiles out;
};

TEST(IniFileGet, SectionAndKeyAreMatchedLiterally) {
    const struct {
        const char* legend;
        const char* text;
        std::int16_t dde;
    } rows[] = {
        {"spaces around = belong to the name", "[Program Setup]\r\nDDE = 1\r\n", 0},
        {"space after = is skipped in the value", "[Program Setup]\r\nDDE= 1\r\n", 1},
        {"section case matters", "[program setup]\r\nDDE=1\r\n", 0},
        {"key case matters", "[Program Setup]\r\ndde=1\r\n", 0},
        {"other section", "[Program Setup]\r\n[Other]\r\nDDE=1\r\n", 0},
        {"the last line wins", "[Program Setup]\r\nDDE=1\r\nDDE=0\r\n", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Config().Read(row.text).Dde, row.dde) << row.legend;
    }
}

TEST(IniFileGet, ThresholdsAndDirectories) {
    const ChartPlotterSettings read = Config().Read(
        "[Program Setup]\r\nTrack Time=30=x\r\nTrack Distance=  12.5 m\r\n"
        "Track CompDev=-7.25\r\nTrack Dir= /data/tracks =old\r\nSeaClear Dir=/opt/sc\r\n");
    EXPECT_EQ(read.TrackTime, 30.0f) << "the value ends at the second =";
    EXPECT_EQ(read.TrackDistance, 12.5f);
    EXPECT_EQ(read.TrackCompDev, -7.25f);
    EXPECT_EQ(read.TrackDir, " /data/tracks ") << "directories keep their blanks";
    EXPECT_EQ(read.SeaClearDir, "/opt/sc");
}

TEST(IniFileGet, WhatCannotBeReadKeepsTheOldValueAndIsLogged) {
    // 40000 leaves 16 bits, 1e39 a 32-bit float, 1e400 a double.
    Config config;
    const ChartPlotterSettings read =
        config.Read("[Program Setup]\r\nDDE=40000\r\nTrack Time=1" + std::string(39, '0') +
                        "\r\nTrack Distance=1" + std::string(400, '0') + "\r\n",
                    {1, 30, 100, 0, "", ""});
    EXPECT_EQ(read.Dde, 1);
    EXPECT_EQ(read.TrackTime, 30.0f);
    EXPECT_EQ(read.TrackDistance, 100.0f);
    for (const char* key : {"DDE", "Track Time", "Track Distance"}) {
        EXPECT_NE(config.Log().find(key), std::string::npos) << key;
    }
    // A file that cannot be read changes nothing.
    ChartPlotterSettings settings{1, 0, 0, 0, "/t", ""};
    IniFileGet("/nowhere.ini", config.files, config.log, settings);
    EXPECT_EQ(settings.Dde, 1);
    EXPECT_EQ(settings.TrackDir, "/t");
    EXPECT_NE(config.Log().find("/nowhere.ini"), std::string::npos);
}

TEST(IniFileGet, GarbageIsReadToTheEnd) {
    // Bytes of every value, "=" and "[" included, from a fixed pseudo-random sequence.
    std::string garbage;
    std::uint32_t state = 12345;
    for (int i = 0; i < 200000; ++i) {
        state = state * 1103515245u + 12345u;
        garbage += static_cast<char>(state >> 24);
    }
    EXPECT_EQ(Config().Read(garbage + "\n[Program Setup]\nDDE=1\nTrack Time=9\n").TrackTime, 9.0f);
}

TEST(DetermineFiles, NoSettingsFileEndsTheStart) {
    // File names are case-sensitive: a lower-case file beside the program is not the one.
    Config run;
    run.files.files[kProgramDir + "/seaclear_2.ini"] = "[Program Setup]\r\nDDE=1\r\n";
    EXPECT_FALSE(run.Start(""));
    EXPECT_EQ(run.dialogs.messages,
              (Texts{"Seaclear ini file cannot be found: \r\n\r\n/opt/wl/SEACLEAR_2.INI",
                     "Cannot start, no seaclear inifile found:\r\n"}));
}

TEST(DetermineFiles, WithoutACommandLineTheUsersFileFollowsTheProgramsOwn) {
    const std::string user = "/home/u/.config/Wakeline/SeaClear_2.ini";
    const std::string beside = kProgramDir + "/SEACLEAR_2.INI";
    const struct {
        const char* legend;
        std::string commandLine, userIniPath;
        Texts present;        // the settings files that exist
        std::string iniPath;  // chosen, empty when the start ends
        std::string message;  // the first message, if any
    } rows[] = {
        {"a build tree's file comes first", "", user, {beside, user}, beside, ""},
        {"installed: the user's file", "", user, {user}, user, ""},
        {"neither: the message names the user's file",
         "",
         user,
         {},
         "",
         "Seaclear ini file cannot be found: \r\n\r\n" + user},
        {"a command line is never replaced",
         kIni,
         user,
         {user},
         "",
         "ini file in command line does not exist: \r\n\r\n" + kIni},
    };
    for (const auto& row : rows) {
        Config run;
        for (const std::string& path : row.present) {
            run.files.files[path] = "[Program Setup]\r\nDDE=1\r\n";
        }
        const bool started = DetermineFiles({row.commandLine, kProgramDir, row.userIniPath},
                                            run.files, run.dialogs, run.log, run.out);
        EXPECT_EQ(started, !row.iniPath.empty()) << row.legend;
        if (started) {
            EXPECT_EQ(run.out.IniPath, row.iniPath) << row.legend;
            EXPECT_EQ(run.out.Ini.Dde, 1) << row.legend;
        } else {
            ASSERT_FALSE(run.dialogs.messages.empty()) << row.legend;
            EXPECT_EQ(run.dialogs.messages.front(), row.message) << row.legend;
        }
    }
}

TEST(DetermineFiles, TrackDirectory) {
    const std::string gone =
        "Directory for tracking does not exist, no trackingfile created\r\n\r\n/data/gone";
    const struct {
        const char* legend;
        // The settings file (also the command line), its value, the one directory that exists.
        std::string iniPath, trackDirValue, existing, trackDir, message;
    } rows[] = {
        // Beside the settings file: the cut counts 14 characters whatever the name.
        {"derived", kScDir + "/my.ini", "", "/hotraces", "/hotraces", ""},
        {"taken from the file", kIni, "/data/tracks", "/data/tracks", "/data/tracks", ""},
        {"missing: emptied, no fallback", kIni, "/data/gone", kScDir + "/traces", "", gone},
    };
    for (const auto& row : rows) {
        Config run;
        run.files.files[row.iniPath] = "[Program Setup]\r\nTrack Dir=" + row.trackDirValue + "\r\n";
        run.files.directories.insert(row.existing);
        ASSERT_TRUE(run.Start(row.iniPath)) << row.legend;
        EXPECT_EQ(run.out.TrackDir, row.trackDir) << row.legend;
        EXPECT_EQ(run.dialogs.messages, row.message.empty() ? Texts{} : Texts{row.message})
            << row.legend;
        EXPECT_NE(run.Log().find("Trackfile selected: " + row.trackDir + "\r\n"), std::string::npos)
            << row.legend;
    }
}

TEST(DetermineFiles, ChartPlotterProgram) {
    const std::string notInIniDir =
        "SeaClear_2.exe not found in  directory specified in Wakeplot .inifile\r\n" + kIni +
        "\r\n/win/sc";
    const std::string noExe =
        "SeaClear_2.exe not found in Wakeplot directory\r\n/opt/wl/SEACLEAR_2.INI\r\n/opt/wl";
    const struct {
        const char* legend;
        std::string commandLine, seaClearDirValue;
        std::string exeDir;  // where the one program file lies, if anywhere
        std::string seaClearDir;
        bool found;
        std::string message;
    } rows[] = {
        {"in the file, not there: no fallback", kIni, "/win/sc", kProgramDir, "/win/sc", false,
         notInIniDir},
        {"beside the settings file, any case", kScDir + "/SEACLEAR_2.INI,M", "", kScDir, kScDir,
         true, ""},
        {"not beside the settings file", kIni, "", kProgramDir, kProgramDir, true, ""},
        {"another settings name", kScDir + "/my.ini", "", kScDir, kProgramDir, false, ""},
        {"nowhere, without a command line", "", "", "", kProgramDir, false, noExe},
    };
    for (const auto& row : rows) {
        Config run;
        const std::string settings = "[Program Setup]\r\nSeaClear Dir=" + row.seaClearDirValue;
        for (const std::string& name : {kIni, kScDir + "/SEACLEAR_2.INI", kScDir + "/my.ini",
                                        kProgramDir + "/SEACLEAR_2.INI"}) {
            run.files.files[name] = settings;
        }
        run.files.directories = {kScDir + "/traces", kProgramDir + "/traces", "/hotraces"};
        if (!row.exeDir.empty()) {
            run.files.files[row.exeDir + "/SeaClear_2.exe"] = "";
        }
        ASSERT_TRUE(run.Start(row.commandLine)) << row.legend;
        EXPECT_EQ(run.out.SeaClearDir, row.seaClearDir) << row.legend;
        EXPECT_EQ(run.out.SeaClearExe, row.found ? row.seaClearDir + "/SeaClear_2.exe" : "")
            << row.legend;
        EXPECT_EQ(run.dialogs.messages, row.message.empty() ? Texts{} : Texts{row.message})
            << row.legend;
    }
}

}  // namespace
}  // namespace wakeline
