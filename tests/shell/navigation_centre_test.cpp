// Start-up, command line and close of the run, against in-memory files, settings and dialogs.

#include "shell/navigation_centre.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <string>
#include <vector>

#include "support/fakes.h"
#include "wind/wind_file.h"

namespace wakeline {
namespace {

using testing::FakeClock;
using testing::FakeFileSystem;
using testing::FakeProgramStarter;
using testing::RecordingDialogs;

constexpr const char* kLogPath = "/state/WakelineDebug.txt";

// A boat computer with the chart plotter's settings in /boat and its traces directory.
struct Boat {
    Boat() {
        files.files["/boat/SeaClear_2.ini"] =
            "[Program Setup]\r\nDDE=1\r\nTrack Time=10\r\nTrack Distance=50\r\n";
        files.directories.insert("/boat");
        files.directories.insert("/boat/traces");
        clock.now = {2026, 11, 15, 23, 42, 16};
    }

    NavigationCentre& Start(const std::string& commandLine) {
        ProgramInfo program;
        program.major = 1;
        program.minor = 1;
        program.revision = 35;
        program.programDir = "/opt/wakeline";
        centre = std::make_unique<NavigationCentre>(
            PlatformServices{clock, files, dialogs, settings, frame, programs, program, kLogPath});
        started = centre->FormLoad(commandLine);
        return *centre;
    }

    // The log's lines without their time stamps.
    std::vector<std::string> LogLines() const {
        std::vector<std::string> lines;
        auto found = files.files.find(kLogPath);
        if (found == files.files.end()) {
            return lines;
        }
        for (const std::string& line : SplitLines(found->second)) {
            lines.push_back(line.substr(std::string("15-11-2026 23:42:16 ").size()));
        }
        return lines;
    }

    FakeClock clock;
    FakeFileSystem files;
    FakeProgramStarter programs;
    RecordingDialogs dialogs;
    MemorySettingsStore settings;
    DetachedFrame frame;
    std::unique_ptr<NavigationCentre> centre;
    bool started = false;
};

TEST(StartUp, RunsEveryStepInOrderAndLogsIt) {
    Boat boat;
    NavigationCentre& centre = boat.Start("/boat/SeaClear_2.ini,,,F");
    ASSERT_TRUE(boat.started);

    const std::string log = boat.files.files.at(kLogPath);
    EXPECT_EQ(log.substr(0, 20), "15-11-2026 23:42:16 ");
    EXPECT_EQ(log.substr(log.size() - 2), "\r\n");
    const std::vector<std::string> expected = {
        "Started with Command line:\"/boat/SeaClear_2.ini,,,F\"",
        "Form_Load processed commandline ",
        "DDEInit setting up DDE interface",
        "DDEInit set up complete",
        "DDEInit prepared strings",
        "Form_Load performed DDEInit ",
        "DetermineFiles starts",
        "DetermineFiles Inifile selected: /boat/SeaClear_2.ini",
        "DetermineFiles Trackfile selected: /boat/traces",
        "DetermineFiles SeaClear file: ",
        "Wakeline  V1.1.35",
        "Form_Load performed Determinefiles ",
        "Form_Load no Polar tables found",
        "Form_Load initialised Winddata 1",
        "initialised Winddata 2",
        "Form_Load complete",
    };
    EXPECT_EQ(boat.LogLines(), expected);
    EXPECT_TRUE(boat.dialogs.messages.empty());

    EXPECT_EQ(centre.Caption(), "Wakeline  V1.1.35");
    EXPECT_EQ(boat.frame.Caption(), "Wakeline  V1.1.35");
    EXPECT_EQ(centre.State().Timer1Interval, 100);
    EXPECT_EQ(centre.State().AlarmState, -2);
    EXPECT_EQ(centre.Files().TrackDir, "/boat/traces");
    EXPECT_EQ(centre.LinkStatus().text,
              "waiting for Seaclear input\r\nsee tooltip for instruction");

    // The per-user settings exist in the store after the first run.
    EXPECT_EQ(boat.settings.Get("Settings", "SetSoundLoud"), "False");
    EXPECT_EQ(boat.settings.Get("Settings", "SetLogData"), "False");
    EXPECT_EQ(boat.settings.Get("Settings", "FormWidth"), "4000");
    EXPECT_EQ(boat.frame.Width(), 4000);
}

TEST(StartUp, ReadsStoredSettings) {
    Boat boat;
    boat.settings.Set("Settings", "SetSoundLoud", "True");
    boat.settings.Set("Settings", "SetLogData", "garbage");
    boat.settings.Set("Settings", "FormWidth", "5200");
    const RunState& state = boat.Start("/boat/SeaClear_2.ini").State();
    EXPECT_TRUE(state.SetSoundLoud);
    EXPECT_FALSE(state.SetLogData);
    EXPECT_EQ(boat.settings.Get("Settings", "SetLogData"), "False");
    EXPECT_EQ(state.FormWidth, 5200);
}

TEST(StartUp, CommandLineFields) {
    struct Case {
        const char* legend;
        std::string line;
        std::int16_t debugMode;
        std::int16_t seaTalkMode;
        bool ddeMode;
        bool traceOn;
        std::int16_t interval;
        bool tablesLocked;
        bool feet;
    };
    const std::string ini = "/boat/SeaClear_2.ini";
    const std::vector<Case> cases = {
        {"settings file only: link, trace on, 900 s, no log", ini, 0, 0, true, true, 900, false,
         false},
        {"empty source field, NOTRACE", ini + ",,NOTRACE", 0, 0, true, false, 900, false, false},
        {"SeaTalk SB, 600 s, log file", ini + ",SB,600,F", 2, 1, false, true, 600, false, false},
        {"lower case x, notrace and i", ini + ",x,notrace,i", 1, 0, true, false, 900, true, false},
        {"SC is SeaTalk variant 2", ini + ",sc", 0, 2, false, true, 900, false, false},
        {"a blank before SB matches nothing", ini + ", SB", 0, 0, true, true, 900, false, false},
        {"M: depth in feet", ini + ",m", 0, 0, true, true, 900, false, true},
        {"interval 0 keeps 900", ini + ",,0", 0, 0, true, true, 900, false, false},
        {"a word keeps 900 and trace on", ini + ",,abc", 0, 0, true, true, 900, false, false},
        {"leading blanks before a number", ini + ",, 60", 0, 0, true, true, 60, false, false},
        {"half rounds to even", ini + ",,600.5,2.5", 2, 0, true, true, 600, false, false},
        {"3.5 rounds up to 4", ini + ",,,3.5", 4, 0, true, true, 900, false, false},
        {"text diagnostic mode is 0", ini + ",,,abc", 0, 0, true, true, 900, false, false},
        {"too large for 16 bits keeps defaults", ini + ",,99999,70000", 0, 0, true, true, 900,
         false, false},
    };
    for (const Case& c : cases) {
        Boat boat;
        const RunState& state = boat.Start(c.line).State();
        SCOPED_TRACE(c.legend);
        EXPECT_EQ(state.DebugMode, c.debugMode);
        EXPECT_EQ(state.SeaTalkMode, c.seaTalkMode);
        EXPECT_EQ(state.DdeMode, c.ddeMode);
        EXPECT_EQ(state.TraceOn, c.traceOn);
        EXPECT_EQ(state.DiskWriteInterval, c.interval);
        EXPECT_EQ(state.TablesLocked, c.tablesLocked);
        EXPECT_EQ(state.LiveOptionM, c.feet);
    }
}

TEST(StartUp, MessagesInOrderAndTheEndWithoutSettingsFile) {
    {
        SCOPED_TRACE("no command line and nothing beside the program");
        Boat boat;
        boat.Start("");
        EXPECT_FALSE(boat.started);
        const std::vector<std::string> expected = {
            "Seaclear ini file cannot be found: \r\n\r\n/opt/wakeline/SEACLEAR_2.INI",
            "Cannot start, no seaclear inifile found:\r\n",
        };
        EXPECT_EQ(boat.dialogs.messages, expected);
        EXPECT_EQ(boat.centre->State().Timer1Interval, 0);
    }
    {
        SCOPED_TRACE("the trace message comes before the files are determined");
        Boat boat;
        boat.Start("/nowhere/SeaClear_2.ini,,NOTRACE,I");
        EXPECT_FALSE(boat.started);
        ASSERT_GE(boat.dialogs.messages.size(), 3U);
        // Mode I shows the log lines as messages too; pick the start-up's own messages.
        std::vector<std::string> own;
        for (const std::string& m : boat.dialogs.messages) {
            if (m == "No tracefile will be made" || m.rfind("ini file in command", 0) == 0 ||
                m.rfind("Cannot start", 0) == 0) {
                own.push_back(m);
            }
        }
        const std::vector<std::string> expected = {
            "No tracefile will be made",
            "ini file in command line does not exist: \r\n\r\n/nowhere/SeaClear_2.ini",
            "Cannot start, no seaclear inifile found:\r\n",
        };
        EXPECT_EQ(own, expected);
        EXPECT_EQ(boat.dialogs.messages.front(),
                  "Started with Command line:\"/nowhere/SeaClear_2.ini,,NOTRACE,I\"");
    }
}

TEST(StartUp, DataSourceFollowsTheDdeKey) {
    struct Case {
        const char* legend;
        const char* ddeLine;
        const char* source;
        int interval;
        std::vector<std::string> messages;
    };
    const std::vector<Case> cases = {
        {"DDE missing: no timer",
         "",
         "",
         0,
         {"DDE=1 statement missing, no DDE interface started; click help button"}},
        {"DDE with a blank before = is not the key",
         "DDE = 1\r\n",
         "",
         0,
         {"DDE=1 statement missing, no DDE interface started; click help button"}},
        {"an odd DDE value warns and links",
         "DDE=5\r\n",
         "",
         100,
         {"Warning: DDE=5 seems wrong, attempting DDE interface anyway"}},
        {"SeaTalk ignores the key", "", ",SB", 5000, {}},
    };
    for (const Case& c : cases) {
        Boat boat;
        boat.files.files["/boat/SeaClear_2.ini"] = std::string("[Program Setup]\r\n") + c.ddeLine;
        const RunState& state = boat.Start(std::string("/boat/SeaClear_2.ini") + c.source).State();
        SCOPED_TRACE(c.legend);
        EXPECT_TRUE(boat.started);
        EXPECT_EQ(state.Timer1Interval, c.interval);
        EXPECT_EQ(boat.dialogs.messages, c.messages);
    }
}

TEST(StartUp, TrackNotesAndTheWindHistoryAcrossARestart) {
    // 23:42:16 on 2026-11-15; the saved observations are 30 minutes and 1 h 1 s old.
    const DateTime now = DateTimeFromFields({2026, 11, 15, 23, 42, 16});
    const std::string historyPath = "/boat/traces/wakeline_wc.bin";
    for (const double ageSeconds : {1800.0, 3601.0}) {
        SCOPED_TRACE(ageSeconds);
        Boat boat;
        boat.settings.Set("Settings", "SetLogData", "True");
        WindData saved;
        AddWindObservation(saved, 12.5F, 240.0F, now - ageSeconds / 86400.0, 7);
        const std::string savedBytes = EncodeWindData(saved);
        boat.files.files[historyPath] = savedBytes;

        NavigationCentre& centre = boat.Start("/boat/SeaClear_2.ini");
        ASSERT_TRUE(boat.started);
        const std::string trackPath = "/boat/traces/20261115.TRT";
        const std::string startNote =
            "/* 20261115 23:42:16 CZ - Wakeline  V1.1.35 started commandline: "
            "/boat/SeaClear_2.ini\r\n";
        EXPECT_EQ(boat.files.files[trackPath], startNote);
        // The start-up note's flush comes before the history is loaded and must not save it.
        EXPECT_EQ(boat.files.files[historyPath], savedBytes);
        const bool kept = ageSeconds < 3600;
        EXPECT_EQ(centre.WindHistory().Count, kept ? 1 : 0);

        ASSERT_TRUE(centre.FormUnload());
        EXPECT_EQ(boat.files.files[trackPath],
                  startNote + "/* 20261115 23:42:16 CZ - normal closedown\r\n");
        WindData expected = saved;
        if (!kept) {
            ClearWindData(expected);
        }
        EXPECT_EQ(boat.files.files[historyPath], EncodeWindData(expected));
    }
}

TEST(DataLine, IsShownKeptAsWindAndRecordedUnlessItFails) {
    Boat boat;
    NavigationCentre& centre = boat.Start("/boat/SeaClear_2.ini");
    const std::string line =
        "52.5,-4.25,6.5,1.5708,1.5708,0,10,0.7854,0.5236,2.3562,5,7,4,1.5708,6.2,,,,,,,,\r\n";
    EXPECT_TRUE(centre.HandleDataLine(line));
    EXPECT_EQ(centre.Fields()[0].Shown, "052 30.000 N");
    // Track Time 10 and no record yet: the line is recorded, and its wind sample moves into
    // the history as one observation of 5 m/s = 9.72 kn.
    EXPECT_EQ(centre.Track().PendingCount(), 1U);
    EXPECT_EQ(centre.WindSamples().Count, 0);
    ASSERT_EQ(centre.WindHistory().Count, 1);
    EXPECT_FLOAT_EQ(centre.WindHistory().Obs[0].Speed, 5 * 1.9438444924406F);

    // A short line is logged, not shown and not recorded.
    boat.clock.now.minute = 43;
    EXPECT_FALSE(centre.HandleDataLine("1,2,3"));
    EXPECT_EQ(centre.Fields()[0].Shown, "052 30.000 N");
    EXPECT_EQ(centre.Track().PendingCount(), 1U);

    ASSERT_TRUE(centre.FormUnload());
    EXPECT_EQ(boat.files.files["/boat/traces/20261115.TRT"], "20261115 23:42:16 CZ," + line);
}

TEST(Link, TicksFailuresNotificationsAndTheLostChartPlotter) {
    // Started without a command line: the settings file and the chart plotter's program lie
    // beside this program.
    Boat boat;
    boat.files.files["/opt/wakeline/SeaClear_2.exe"] = "";
    boat.files.files["/opt/wakeline/SEACLEAR_2.INI"] =
        "[Program Setup]\r\nDDE=1\r\nTrack Time=10\r\n";
    boat.files.directories.insert("/opt/wakeline/traces");
    NavigationCentre& linked = boat.Start("");
    ASSERT_TRUE(boat.started);

    // No chart plotter yet: its program is started once, and the link is tried every tick.
    ASSERT_TRUE(linked.Timer1_Timer());
    EXPECT_FALSE(linked.OnLinkConnectFailed());
    EXPECT_EQ(linked.LinkStatus().text, "No seaclear input");
    ASSERT_TRUE(linked.Timer1_Timer());
    EXPECT_FALSE(linked.OnLinkConnectFailed());
    EXPECT_EQ(boat.programs.started, std::vector<std::string>{"/opt/wakeline/SeaClear_2.exe"});

    ASSERT_TRUE(linked.Timer1_Timer());
    linked.OnLinkConnected();
    EXPECT_FALSE(linked.Timer1_Timer());  // linked: nothing to do
    const std::string item =
        "52.5,-4.25,6.5,1.5708,1.5708,0,10,0.7854,0.5236,2.3562,5,7,4,1.5708,6.2,,,,,,,,";
    EXPECT_TRUE(linked.OnLinkLine(item).newLine);
    EXPECT_EQ(linked.LinkStatus().text, "15-11-2026 23:42:16 (CZ)");
    EXPECT_FALSE(linked.OnLinkLine(item).newLine);
    EXPECT_EQ(linked.LinkStatus().text, "unchanged 15-11-2026 23:42:16 (CZ)");
    EXPECT_EQ(linked.Track().PendingRecords().at(0), "20261115 23:42:16 CZ," + item + "\r\n");

    // The chart plotter closes after data: the next failure asks to end the voyage; a
    // refusal keeps the run and stops asking until new data arrive.
    linked.OnLinkClosed();
    ASSERT_TRUE(linked.Timer1_Timer());
    EXPECT_TRUE(linked.OnLinkConnectFailed());
    boat.dialogs.okCancelAnswer = false;
    EXPECT_FALSE(linked.FormUnload());
    ASSERT_TRUE(linked.Timer1_Timer());
    EXPECT_FALSE(linked.OnLinkConnectFailed());
    EXPECT_EQ(boat.programs.started.size(), 1U);
}

TEST(Replay, StampsSetTheClockNotesAreSkipped) {
    Boat replay;
    replay.files.files["/boat/SeaClear_2.ini"] = "[Program Setup]\r\nTrack Time=10\r\n";
    ProgramInfo program;
    replay.centre = std::make_unique<NavigationCentre>(
        PlatformServices{replay.clock, replay.files, replay.dialogs, replay.settings, replay.frame,
                         replay.programs, program, kLogPath});
    replay.centre->UseReplay();
    // No DDE key is needed for a replay, and the tick never tries the link.
    ASSERT_TRUE(replay.centre->FormLoad("/boat/SeaClear_2.ini"));
    EXPECT_TRUE(replay.dialogs.messages.empty());
    EXPECT_EQ(replay.centre->State().Timer1Interval, 100);
    EXPECT_FALSE(replay.centre->Timer1_Timer());

    const std::string data =
        "52.5,-4.25,6.5,1.5708,1.5708,0,10,0.7854,0.5236,2.3562,5,7,4,1.5708,6.2,,,,,,,,";
    replay.centre->HandleReplayLine("/* 20240315 14:30:00 CZ - a note");
    replay.centre->HandleReplayLine("20240315 14:30:24 CZ," + data);
    replay.centre->HandleReplayLine("20240315 14:30:29 CZ," + data + "0");
    replay.centre->HandleReplayLine("20240315 14:30:34 CZ," + data + "1");
    const auto& records = replay.centre->Track().PendingRecords();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0], "20240315 14:30:24 CZ," + data + "\r\n");
    EXPECT_EQ(records[1], "20240315 14:30:34 CZ," + data + "1\r\n");
    // The clock keeps the last stamp through the close.
    ASSERT_TRUE(replay.centre->FormUnload());
    EXPECT_EQ(replay.files.files["/boat/traces/20240315.TRT"],
              "20240315 14:30:24 CZ," + data + "\r\n20240315 14:30:34 CZ," + data + "1\r\n");
}

TEST(StartUp, PolarTablesGiveCorrectedWindAndTargetSpeed) {
    Boat boat;
    boat.settings.Set("Settings", "SetLogData", "True");
    boat.files.files["/boat/SeaClear_2.ini"] += "SeaClear Dir=/plotter\r\n";
    boat.files.files["/boat/traces/WakelinePolar.txt"] =
        "[DampingFactor=1.0000]\r\n"
        "[PolarTable=Genoa]\r\n"
        "                 52,   90\r\n"
        "06,  40,  4.8,  5.3,  6.1\r\n"
        "12,  38,  6.0,  6.5,  7.2\r\n"
        "[PolarTableCurrent=Genoa]\r\n";
    NavigationCentre& centre = boat.Start("/boat/SeaClear_2.ini,,,F");
    ASSERT_TRUE(boat.started);
    EXPECT_TRUE(centre.State().PolarTablesOn);
    const std::vector<std::string> log = boat.LogLines();
    // The texts name the chart plotter's directory, not the one the file came from.
    EXPECT_NE(std::find(log.begin(), log.end(),
                        "Form_Load loaded Polar tables/plotter/WakelinePolar.txt"),
              log.end());
    EXPECT_NE(boat.files.files["/boat/traces/20261115.TRT"].find(
                  "/* 20261115 23:42:16 CZ - Polar tables:/plotter/WakelinePolar.txt\r\n"),
              std::string::npos);

    // TWA 0.7854 rad is 45 degrees, TWS 5 m/s is 9.7 knots. Damping 1 and the default
    // corrections leave 45. The target between the rows of 6 and 12 knots: t = 2.3 / 6, the
    // interpolated best angle m = 38.767, u = (45 - m) / (52 - m) = 0.4710; the 6-knot row at
    // 45.652 degrees gives 4.8 + 0.5 u = 5.0355, the 12-knot row at 44.594 gives 6.2355;
    // f = 3.7 / 6 mixes them to 5.7755, shown as 5.8.
    ASSERT_TRUE(centre.HandleDataLine(
        "52.5,-4.25,6.5,1.5708,1.5708,0,10,0.7854,0.5236,2.3562,5,7,4,1.5708,6.2,,,,,,,,\r\n"));
    EXPECT_EQ(centre.Fields()[7].Shown, "  45 C:  45");
    EXPECT_EQ(centre.Fields()[14].Shown, " 6.2 T: 5.8");
}

TEST(Close, OkEndsTheRunCancelKeepsIt) {
    Boat boat;
    NavigationCentre& centre = boat.Start("/boat/SeaClear_2.ini");
    boat.dialogs.okCancelAnswer = false;
    EXPECT_FALSE(centre.FormUnload());
    EXPECT_FALSE(centre.Link().LinkSeen());
    boat.dialogs.okCancelAnswer = true;
    EXPECT_TRUE(centre.FormUnload());
    EXPECT_EQ(boat.dialogs.messages.back(), "ending trace function");
}

}  // namespace
}  // namespace wakeline
