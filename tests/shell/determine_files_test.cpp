#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "shell/configuration.h"
#include "support/harness.h"

namespace wakeline {
namespace {

using Texts = std::vector<std::string>;

const std::string kProgramDir = "/opt/wl";
const std::string kScDir = "/home/u/sc";
const std::string kIni = kScDir + "/SeaClear_2.ini";

struct Chooser : testing::Harness {
    bool Start(const std::string& commandLine) {
        return DetermineFiles({commandLine, kProgramDir}, files, dialogs, log, out);
    }
    ProgramFiles out;
};

TEST(DetermineFiles, NoSettingsFileEndsTheStart) {
    const struct {
        std::string commandLine, existing, message;
    } rows[] = {
        // File names are case-sensitive: a lower-case file beside the program is not the one.
        {"", kProgramDir + "/seaclear_2.ini",
         "Seaclear ini file cannot be found: \r\n\r\n/opt/wl/SEACLEAR_2.INI"},
        // A missing file on the command line is not replaced by the one beside the program.
        {kIni + ",SC,NOTRACE,2", kProgramDir + "/SEACLEAR_2.INI",
         "ini file in command line does not exist: \r\n\r\n" + kIni},
    };
    for (const auto& row : rows) {
        Chooser run;
        run.files.files[row.existing] = "[Program Setup]\r\nDDE=1\r\n";
        EXPECT_FALSE(run.Start(row.commandLine)) << row.commandLine;
        EXPECT_EQ(run.dialogs.messages,
                  (Texts{row.message, "Cannot start, no seaclear inifile found:\r\n"}));
    }
}

TEST(DetermineFiles, TrackDirectory) {
    const struct {
        const char* legend;
        std::string iniPath;  // also the command line
        std::string trackDirValue;
        std::string existing;  // the one directory that exists
        bool missing;
    } rows[] = {
        {"derived beside the settings file", kIni, "", kScDir + "/traces", false},
        {"the cut counts 14 characters whatever the name", kScDir + "/my.ini", "", "/hotraces",
         false},
        {"taken from the file", kIni, "/data/tracks", "/data/tracks", false},
        {"missing: shown and emptied, no fallback", kIni, "/data/gone", kScDir + "/traces", true},
    };
    for (const auto& row : rows) {
        Chooser run;
        run.files.files[row.iniPath] = "[Program Setup]\r\nTrack Dir=" + row.trackDirValue + "\r\n";
        run.files.directories.insert(row.existing);
        ASSERT_TRUE(run.Start(row.iniPath)) << row.legend;
        const std::string expected = row.missing ? "" : row.existing;
        EXPECT_EQ(run.out.TrackDir, expected) << row.legend;
        EXPECT_EQ(run.dialogs.messages,
                  row.missing ? Texts{"Directory for tracking does not exist, no trackingfile "
                                      "created\r\n\r\n/data/gone"}
                              : Texts{})
            << row.legend;
        EXPECT_NE(run.Log().find("Trackfile selected: " + expected + "\r\n"), std::string::npos)
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
        std::string commandLine;
        std::string seaClearDirValue;
        std::string exeDir;  // where the one program file lies, if anywhere
        std::string seaClearDir;
        bool found;
        std::string message;
    } rows[] = {
        {"from the file but not there: no fallback", kIni, "/win/sc", kProgramDir, "/win/sc", false,
         notInIniDir},
        {"beside the settings file, name in any case", kScDir + "/SEACLEAR_2.INI,M", "", kScDir,
         kScDir, true, ""},
        {"not beside the settings file", kIni, "", kProgramDir, kProgramDir, true, ""},
        {"another settings name", kScDir + "/my.ini", "", kScDir, kProgramDir, false, ""},
        {"nowhere, without a command line", "", "", "", kProgramDir, false, noExe},
    };
    for (const auto& row : rows) {
        Chooser run;
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
