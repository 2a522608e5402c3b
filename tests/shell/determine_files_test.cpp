#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "shell/configuration.h"
#include "support/fakes.h"

namespace wakeline {
namespace {

using Texts = std::vector<std::string>;

class DetermineFilesTest : public ::testing::Test {
  protected:
    DetermineFilesTest() { log_.SetMode(kDebugLogFile); }

    bool Run(const std::string& commandLine) {
        return DetermineFiles({commandLine, kProgramDir}, files_, dialogs_, log_, out_);
    }
    void AddFile(const std::string& path, const std::string& text = "") {
        files_.files[path] = text;
    }

    static constexpr const char* kProgramDir = "/opt/wakeline/bin";
    static constexpr const char* kLog = "/log.txt";
    testing::FakeClock system_;
    ProgramClock clock_{system_};
    testing::FakeFileSystem files_;
    testing::RecordingDialogs dialogs_;
    DiagnosticLog log_{clock_, files_, dialogs_, kLog};
    ProgramFiles out_;
};

TEST_F(DetermineFilesTest, EverythingBesideTheProgram) {
    AddFile("/opt/wakeline/bin/SEACLEAR_2.INI", "[Program Setup]\r\nDDE=1\r\nTrack Time=30\r\n");
    AddFile("/opt/wakeline/bin/SeaClear_2.exe");
    files_.directories.insert("/opt/wakeline/bin/traces");

    ASSERT_TRUE(Run(""));
    EXPECT_EQ(dialogs_.messages, Texts{});
    EXPECT_EQ(out_.IniPath, "/opt/wakeline/bin/SEACLEAR_2.INI");
    EXPECT_EQ(out_.TrackDir, "/opt/wakeline/bin/traces");
    EXPECT_EQ(out_.SeaClearDir, "/opt/wakeline/bin");
    EXPECT_EQ(out_.SeaClearExe, "/opt/wakeline/bin/SeaClear_2.exe");
    EXPECT_EQ(out_.Ini.Dde, 1);
    EXPECT_EQ(out_.Ini.TrackTime, 30.0f);
    EXPECT_EQ(
        files_.files[kLog],
        "15-11-2026 23:42:16 DetermineFiles starts\r\n"
        "15-11-2026 23:42:16 DetermineFiles Inifile selected: "
        "/opt/wakeline/bin/SEACLEAR_2.INI\r\n"
        "15-11-2026 23:42:16 DetermineFiles Trackfile selected: /opt/wakeline/bin/traces\r\n"
        "15-11-2026 23:42:16 DetermineFiles SeaClear file: /opt/wakeline/bin/SeaClear_2.exe\r\n");
}

TEST_F(DetermineFilesTest, NoSettingsFileEndsTheStart) {
    // File names are case-sensitive: a lower-case file beside the program is not the one.
    AddFile("/opt/wakeline/bin/seaclear_2.ini", "[Program Setup]\r\nDDE=1\r\n");
    EXPECT_FALSE(Run(""));
    EXPECT_EQ(dialogs_.messages,
              (Texts{"Seaclear ini file cannot be found: \r\n\r\n/opt/wakeline/bin/SEACLEAR_2.INI",
                     "Cannot start, no seaclear inifile found:\r\n"}));
    EXPECT_EQ(out_.IniPath, "");
}

TEST_F(DetermineFilesTest, AMissingCommandLineFileIsNotReplacedByTheProgramsOwn) {
    AddFile("/opt/wakeline/bin/SEACLEAR_2.INI");
    EXPECT_FALSE(Run("/home/u/sc/SeaClear_2.ini,SC,NOTRACE,2"));
    EXPECT_EQ(dialogs_.messages,
              (Texts{"ini file in command line does not exist: \r\n\r\n/home/u/sc/SeaClear_2.ini",
                     "Cannot start, no seaclear inifile found:\r\n"}));
}

TEST_F(DetermineFilesTest, TrackDirectory) {
    const std::string missing =
        "Directory for tracking does not exist, no trackingfile created\r\n\r\n/data/gone";
    struct Row {
        const char* legend;
        std::string iniPath;  // also the command line
        std::string trackDirLine;
        std::string trackDir;  // the one directory that exists; expected unless a message
        Texts messages;
    };
    const Row rows[] = {
        {"derived beside the settings file",
         "/home/u/sc/SeaClear_2.ini",
         "",
         "/home/u/sc/traces",
         {}},
        {"the cut counts 14 characters whatever the name",
         "/home/u/sc/my.ini",
         "",
         "/hotraces",
         {}},
        {"taken from the file",
         "/home/u/sc/SeaClear_2.ini",
         "Track Dir=/data/tracks\r\n",
         "/data/tracks",
         {}},
        {"missing: shown and emptied",
         "/home/u/sc/SeaClear_2.ini",
         "Track Dir=/data/gone\r\n",
         "/home/u/sc/traces",
         {missing}},
    };
    for (const Row& row : rows) {
        files_ = {};
        dialogs_.messages.clear();
        AddFile(row.iniPath, "[Program Setup]\r\n" + row.trackDirLine);
        AddFile("/home/u/sc/SeaClear_2.exe");
        files_.directories.insert(row.trackDir);
        ASSERT_TRUE(Run(row.iniPath)) << row.legend;
        EXPECT_EQ(dialogs_.messages, row.messages) << row.legend;
        const std::string expected = row.messages.empty() ? row.trackDir : "";
        EXPECT_EQ(out_.TrackDir, expected) << row.legend;
        EXPECT_NE(
            files_.files[kLog].find("DetermineFiles Trackfile selected: " + expected + "\r\n"),
            std::string::npos)
            << row.legend;
    }
}

TEST_F(DetermineFilesTest, ChartPlotterProgram) {
    const std::string noExe =
        "SeaClear_2.exe not found in Wakeplot directory\r\n"
        "/opt/wakeline/bin/SEACLEAR_2.INI\r\n/opt/wakeline/bin";
    const std::string notInIniDir =
        "SeaClear_2.exe not found in  directory specified in Wakeplot .inifile\r\n"
        "/home/u/sc/SeaClear_2.ini\r\n/win/sc";
    struct Row {
        const char* legend;
        std::string commandLine;
        std::string seaClearDirLine;
        std::string exe;  // the one program file that exists, if any
        std::string seaClearDir;
        std::string seaClearExe;
        Texts messages;
    };
    const Row rows[] = {
        {"directory from the file",
         "/home/u/sc/SeaClear_2.ini",
         "SeaClear Dir=/win/sc\r\n",
         "/win/sc/SeaClear_2.exe",
         "/win/sc",
         "/win/sc/SeaClear_2.exe",
         {}},
        {"directory from the file without the program: no fallback",
         "/home/u/sc/SeaClear_2.ini",
         "SeaClear Dir=/win/sc\r\n",
         "/opt/wakeline/bin/SeaClear_2.exe",
         "/win/sc",
         "",
         {notInIniDir}},
        {"beside the settings file, name in any case",
         "/home/u/sc/SEACLEAR_2.INI,M",
         "",
         "/home/u/sc/SeaClear_2.exe",
         "/home/u/sc",
         "/home/u/sc/SeaClear_2.exe",
         {}},
        {"not beside the settings file: the program's directory",
         "/home/u/sc/SeaClear_2.ini",
         "",
         "/opt/wakeline/bin/SeaClear_2.exe",
         "/opt/wakeline/bin",
         "/opt/wakeline/bin/SeaClear_2.exe",
         {}},
        {"another settings name: the program's directory",
         "/home/u/sc/my.ini",
         "",
         "/home/u/sc/SeaClear_2.exe",
         "/opt/wakeline/bin",
         "",
         {}},
        {"nowhere, with a command line: silent",
         "/home/u/sc/SeaClear_2.ini",
         "",
         "",
         "/opt/wakeline/bin",
         "",
         {}},
        {"nowhere, without a command line", "", "", "", "/opt/wakeline/bin", "", {noExe}},
    };
    for (const Row& row : rows) {
        files_ = {};
        dialogs_.messages.clear();
        const std::string settings = "[Program Setup]\r\n" + row.seaClearDirLine;
        AddFile("/home/u/sc/SeaClear_2.ini", settings);
        AddFile("/home/u/sc/SEACLEAR_2.INI", settings);
        AddFile("/home/u/sc/my.ini", settings);
        AddFile("/opt/wakeline/bin/SEACLEAR_2.INI", settings);
        files_.directories = {"/home/u/sc/traces", "/opt/wakeline/bin/traces", "/hotraces"};
        if (!row.exe.empty()) {
            AddFile(row.exe);
        }
        ASSERT_TRUE(Run(row.commandLine)) << row.legend;
        EXPECT_EQ(out_.SeaClearDir, row.seaClearDir) << row.legend;
        EXPECT_EQ(out_.SeaClearExe, row.seaClearExe) << row.legend;
        EXPECT_EQ(dialogs_.messages, row.messages) << row.legend;
    }
}

}  // namespace
}  // namespace wakeline
