// Start-up, command line and close of the run, against in-memory files, settings and dialogs.

#include "shell/navigation_centre.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "base/line_reader.h"
#include "support/fakes.h"
#include "support/run_fakes.h"
#include "wind/wind_file.h"

namespace wakeline {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kLogPath = "/state/WakelineDebug.txt";
constexpr const char* kIni = "/boat/SeaClear_2.ini";
constexpr const char* kDayFile = "/boat/traces/20261115.TRT";
const std::string kData =
    "52.5,-4.25,6.5,1.5708,1.5708,0,10,0.7854,0.5236,2.3562,5,7,4,1.5708,6.2,,,,,,,,";
const std::string kNoDde = "DDE=1 statement missing, no DDE interface started; click help button";
const std::string kCannotStart = "Cannot start, no seaclear inifile found:\r\n";

// A boat computer with the chart plotter's settings in /boat and its traces directory.
struct Boat {
    Boat() {
        files.files[kIni] = "[Program Setup]\r\nDDE=1\r\nTrack Time=10\r\nTrack Distance=50\r\n";
        files.directories = {"/boat", "/boat/traces"};
    }

    NavigationCentre& Start(const std::string& commandLine) {
        const ProgramInfo program{"Wakeline",
                                  1,
                                  1,
                                  35,
                                  "/opt/wakeline",
                                  "wakeline",
                                  "/usr/share/wakeline",
                                  "https://wakeline.org",
                                  ""};
        centre = std::make_unique<NavigationCentre>(
            PlatformServices{clock, files, dialogs, settings, frame, programs, battery, alarm,
                             sound, program, kLogPath, dialogsIntoLog});
        started = centre->FormLoad(commandLine);
        return *centre;
    }

    // The log's lines without their time stamps, each ended by '|'.
    std::string LogLines() const {
        std::string lines;
        for (const std::string& line : SplitLines(files.files.at(kLogPath))) {
            lines += line.substr(std::string("15-11-2026 23:42:16 ").size()) + "|";
        }
        return lines;
    }

    testing::FakeClock clock;
    testing::FakeFileSystem files;
    testing::FakeProgramStarter programs;
    testing::FakeBattery battery;
    testing::RecordingAlarm alarm;
    testing::FakeSoundLevels sound;
    testing::RecordingDialogs dialogs;
    MemorySettingsStore settings;
    DetachedFrame frame;
    bool dialogsIntoLog = false;
    std::unique_ptr<NavigationCentre> centre;
    bool started = false;
};

TEST(StartUp, RunsEveryStepInOrderAndLogsIt) {
    Boat boat;
    boat.settings.Set("Settings", "SetLogData", "garbage");
    NavigationCentre& centre = boat.Start("/boat/SeaClear_2.ini,,,F");
    ASSERT_TRUE(boat.started);
    EXPECT_EQ(
        boat.LogLines(),
        "Started with Command line:\"/boat/SeaClear_2.ini,,,F\"|Form_Load processed commandline |"
        "DDEInit setting up DDE interface|DDEInit set up complete|DDEInit prepared strings|"
        "Form_Load performed DDEInit |DetermineFiles starts|"
        "DetermineFiles Inifile selected: /boat/SeaClear_2.ini|"
        "DetermineFiles Trackfile selected: /boat/traces|DetermineFiles SeaClear file: |"
        "Wakeline  V1.1.35|Form_Load performed Determinefiles |Form_Load no Polar tables found|"
        "Form_Load initialised Winddata 1|initialised Winddata 2|Form_Load complete|");
    EXPECT_TRUE(boat.dialogs.messages.empty());
    EXPECT_EQ(boat.frame.Caption(), "Wakeline  V1.1.35");
    EXPECT_EQ(centre.State().Timer1Interval, 100);
    EXPECT_EQ(centre.LinkStatus().text,
              "waiting for Seaclear input\r\nsee tooltip for instruction");
    // The per-user settings exist in the store after the first run; a stored value that is no
    // truth value reads and is stored again as False.
    EXPECT_EQ(boat.settings.Get("Settings", "SetLogData"), "False");
    EXPECT_EQ(boat.settings.Get("Settings", "FormWidth"), "4000");
    EXPECT_EQ(boat.frame.Width(), 4000);
}

TEST(StartUp, CommandLineFields) {
    // Debug mode, SeaTalk mode, DDE mode, trace, disk interval, tables locked, depth in feet.
    using Fields = std::tuple<int, int, bool, bool, int, bool, bool>;
    const std::string ini = kIni;
    const std::tuple<const char*, std::string, Fields> cases[] = {
        {"SeaTalk SB, 600 s, log file", ini + ",SB,600,F", {2, 1, false, true, 600, false, false}},
        {"lower case x, notrace, i", ini + ",x,notrace,i", {1, 0, true, false, 900, true, false}},
        {"SC is SeaTalk variant 2", ini + ",sc", {0, 2, false, true, 900, false, false}},
        {"M: depth in feet", ini + ",m", {0, 0, true, true, 900, false, true}},
        {"a blank before SB matches nothing", ini + ", SB", {0, 0, true, true, 900, false, false}},
        {"interval 0 keeps 900", ini + ",,0", {0, 0, true, true, 900, false, false}},
        {"halves round to even", ini + ",,600.5,3.5", {4, 0, true, true, 600, false, false}},
        {"too large for 16 bits", ini + ",,99999,70000", {0, 0, true, true, 900, false, false}},
    };
    for (const auto& [legend, line, expected] : cases) {
        Boat boat;
        const RunState& s = boat.Start(line).State();
        EXPECT_EQ(Fields(s.DebugMode, s.SeaTalkMode, s.DdeMode, s.TraceOn, s.DiskWriteInterval,
                         s.TablesLocked, s.LiveOptionM),
                  expected)
            << legend;
    }
}

TEST(StartUp, MessagesComeInOrderAndGoIntoTheLogFileWhenThePlatformAsks) {
    // No trace and no settings file: the trace message comes before the files' two.
    const Texts own = {"No tracefile will be made",
                       "ini file in command line does not exist: \r\n\r\n/nowhere/SeaClear_2.ini",
                       kCannotStart};
    const std::string at = "15-11-2026 23:42:16 ",
                      ddeInit = at + "Form_Load performed DDEInit \r\n";
    const std::string files = at + "DetermineFiles starts\r\n";
    const struct {
        const char* legend;
        bool intoLog;
        const char* mode;
        std::string logFromDdeInit;  // each message logged where it arose
    } cases[] = {
        // A message's line breaks are one space each in the log.
        {"asked, log file", true, "F",
         ddeInit + at + own[0] + "\r\n" + files + at +
             "ini file in command line does not exist:   /nowhere/SeaClear_2.ini\r\n" + at +
             "Cannot start, no seaclear inifile found: \r\n"},
        {"not asked", false, "F", ddeInit + files},
        // In mode I each log line is a message box already: not shown twice.
        {"asked, message boxes", true, "I", ""},
    };
    for (const auto& c : cases) {
        Boat boat;
        boat.dialogsIntoLog = c.intoLog;
        boat.files.files["/opt/wakeline/SEACLEAR_2.INI"] = "";  // no stand-in for the one named
        boat.Start("/nowhere/SeaClear_2.ini,,NOTRACE," + std::string(c.mode));
        EXPECT_FALSE(boat.started) << c.legend;
        EXPECT_EQ(boat.centre->State().Timer1Interval, 0) << c.legend;
        Texts shown;  // mode I also shows the log lines as messages: pick the start-up's own
        std::copy_if(boat.dialogs.messages.begin(), boat.dialogs.messages.end(),
                     std::back_inserter(shown), [&](const std::string& m) {
                         return std::find(own.begin(), own.end(), m) != own.end();
                     });
        EXPECT_EQ(shown, own) << c.legend;
        const std::string& log = boat.files.files[kLogPath];
        EXPECT_EQ(log.find(ddeInit) == std::string::npos ? "" : log.substr(log.find(ddeInit)),
                  c.logFromDdeInit)
            << c.legend;
    }
}

TEST(StartUp, DataSourceFollowsTheDdeKey) {
    const std::string oddDde = "Warning: DDE=5 seems wrong, attempting DDE interface anyway";
    const struct {
        const char* legend;
        const char* ddeLine;
        const char* source;
        int interval;
        std::string message;
    } cases[] = {
        {"DDE missing: no timer", "", "", 0, kNoDde},
        {"an odd value warns and links", "DDE=5\r\n", "", 100, oddDde},
        {"SeaTalk: no key, a port warning", "", ",SB", 5000, kSeaTalkPortWarning},
    };
    for (const auto& c : cases) {
        Boat boat;
        boat.files.files[kIni] = std::string("[Program Setup]\r\n") + c.ddeLine;
        const RunState& state = boat.Start(kIni + std::string(c.source)).State();
        EXPECT_TRUE(boat.started) << c.legend;
        EXPECT_EQ(state.Timer1Interval, c.interval) << c.legend;
        EXPECT_EQ(boat.dialogs.messages, Texts{c.message}) << c.legend;
    }
}

TEST(StartUp, TrackNotesAndTheWindHistoryAcrossARestart) {
    const std::string historyPath = "/boat/traces/wakeline_wc.bin";
    Boat boat;
    boat.settings.Set("Settings", "SetLogData", "True");
    WindData saved;  // half an hour old
    AddWindObservation(saved, 12.5F, 240.0F, DateTimeFromFields({2026, 11, 15, 23, 12, 16}), 7);
    boat.files.files[historyPath] = EncodeWindData(saved);

    NavigationCentre& centre = boat.Start(kIni);
    const std::string startNote =
        "/* 20261115 23:42:16 CZ - Wakeline  V1.1.35 started commandline: /boat/SeaClear_2.ini\r\n";
    EXPECT_EQ(boat.files.files[kDayFile], startNote);
    // The start-up note's flush comes before the history is loaded and must not save it.
    EXPECT_EQ(boat.files.files[historyPath], EncodeWindData(saved));
    EXPECT_EQ(centre.WindHistory().Count, 1);

    ASSERT_TRUE(centre.FormUnload());
    EXPECT_EQ(boat.files.files[kDayFile],
              startNote + "/* 20261115 23:42:16 CZ - normal closedown\r\n");
    EXPECT_EQ(boat.files.files[historyPath], EncodeWindData(saved));
}

TEST(DataLine, IsShownAndRecordedUnlessItFails) {
    Boat boat;
    NavigationCentre& centre = boat.Start(kIni);
    EXPECT_TRUE(centre.HandleDataLine(kData + "\r\n"));
    boat.clock.now.minute = 43;
    EXPECT_FALSE(centre.HandleDataLine("1,2,3"));
    EXPECT_EQ(centre.Fields()[0].Shown, "052 30.000 N");
    ASSERT_TRUE(centre.FormUnload());
    EXPECT_EQ(boat.files.files[kDayFile], "20261115 23:42:16 CZ," + kData + "\r\n");
}

TEST(Link, StartsTheChartPlotterBesideTheProgramAndAsksBeforeClosing) {
    Boat boat;
    boat.battery.status = {50, BatteryStatus::kChargingFlag};
    boat.files.files["/opt/wakeline/SeaClear_2.exe"] = "";
    boat.files.files["/opt/wakeline/SEACLEAR_2.INI"] = "[Program Setup]\r\nDDE=1\r\n";
    boat.files.directories.insert("/opt/wakeline/traces");
    NavigationCentre& linked = boat.Start("");
    ASSERT_TRUE(linked.Timer1_Timer());
    // Every tick checks the battery; the first one runs the sound check, not loud by default.
    EXPECT_EQ(linked.Power().StatusText(), "50% - charging  00:00");
    EXPECT_EQ(boat.alarm.soundChecks, (std::vector<std::pair<bool, bool>>{{false, false}}));
    EXPECT_FALSE(linked.OnLinkConnectFailed());
    EXPECT_EQ(boat.programs.started, Texts{"/opt/wakeline/SeaClear_2.exe"});

    // Closed after data: the next failure asks to end the voyage; a refusal keeps the run.
    ASSERT_TRUE(linked.Timer1_Timer());
    linked.OnLinkConnected();
    EXPECT_TRUE(linked.OnLinkLine(kData).newLine);
    EXPECT_EQ(linked.LinkStatus().text, "15-11-2026 23:42:16 (CZ)");
    linked.OnLinkClosed();
    ASSERT_TRUE(linked.Timer1_Timer());
    EXPECT_TRUE(linked.OnLinkConnectFailed());
    boat.dialogs.okCancelAnswer = false;
    EXPECT_FALSE(linked.FormUnload());
    EXPECT_FALSE(linked.Link().LinkSeen());
    boat.dialogs.okCancelAnswer = true;
    EXPECT_TRUE(linked.FormUnload());
    EXPECT_EQ(boat.dialogs.messages.back(), "ending trace function");
    // The alarm window's button, read now: charging's state (-1) moves on to normal.
    boat.clock.now.second = 20;
    linked.AcknowledgeAlarm();
    EXPECT_EQ(linked.Power().State().AlarmState, 0);
    EXPECT_EQ(linked.Power().State().LastNoticed, DateTimeFromFields({2026, 11, 15, 23, 42, 20}));
}

TEST(Close, PutsTheSailorsSoundLevelsBackWhenTheCheckChangedThem) {
    using Checks = std::vector<std::pair<bool, bool>>;  // (loud, restore)
    const std::tuple<const char*, bool, bool, bool, Checks> cases[] = {
        // legend, levels changed at start, close unasked, OK, the checks at the close
        {"raised at start, OK", true, false, true, {{true, true}}},
        {"raised at start, closed without a window", true, true, true, {{true, true}}},
        {"raised at start, Cancel keeps them", true, false, false, {}},
        {"nothing changed, nothing to put back", false, false, true, {}},
    };
    for (const auto& [legend, changed, unasked, ok, expected] : cases) {
        Boat boat;
        boat.settings.Set("Settings", "SetSoundLoud", "True");
        NavigationCentre& centre = boat.Start(kIni);
        boat.sound.changed = changed;
        boat.dialogs.okCancelAnswer = ok;
        if (unasked) {
            centre.CloseUnasked();
        } else {
            EXPECT_EQ(centre.FormUnload(), ok) << legend;
        }
        EXPECT_EQ(boat.sound.checks, expected) << legend;
    }
}

TEST(Battery, ALowBatteryFlushesThePendingTrackOncePerEntry) {
    // A disk write interval of an hour: only the battery (or the suspend) writes the records.
    Boat boat;
    NavigationCentre& centre = boat.Start(std::string(kIni) + ",,3600,F");
    const std::tuple<const char*, int, bool, bool> steps[] = {
        // legend, percent, charging, the record written at once
        {"35 % on battery: kept for the interval", 35, false, false},
        {"29 %: entering the warning flushes", 29, false, true},
        {"28 %: still in the warning", 28, false, false},
        {"19 %: entering the escalation flushes", 19, false, true},
        {"21 %: back in the warning is no new entry", 21, false, false},
        {"19 % again is no new entry either", 19, false, false},
        {"the charger at 19 %", 19, true, false},
        {"unplugged at 25 %: a new warning", 25, false, true},
        {"unknown: nothing changes", 255, false, false},
        {"15 %: straight from the warning into the escalation", 15, false, true},
    };
    int index = 0;
    for (const auto& [legend, percent, charging, flushed] : steps) {
        // 0.001 degrees of latitude, some 111 m, each: past the 50 m threshold.
        ASSERT_TRUE(centre.HandleDataLine(std::to_string(52.5 + ++index * 0.001) + kData.substr(4) +
                                          "\r\n"));
        ASSERT_EQ(centre.Track().PendingCount(), 1u) << legend;
        boat.battery.status = {percent, charging ? BatteryStatus::kChargingFlag : std::uint8_t{0}};
        centre.Timer1_Timer();
        EXPECT_EQ(centre.Track().PendingCount(), flushed ? 0u : 1u) << legend;
        if (!flushed) {
            centre.PrepareForSleep(true);  // the records pending go before a suspend
        }
    }
    centre.PrepareForSleep(false);  // the resume has nothing to write
    const std::string log = boat.LogLines();
    EXPECT_NE(log.find("|Track flushed, battery below 30 % on battery: 1 pending records|"),
              std::string::npos);
    EXPECT_NE(log.find("|Track flushed, battery below 20 % on battery: 1 pending records|"),
              std::string::npos);
    EXPECT_NE(log.find("|Track flushed, the system is about to suspend: 1 pending records|"),
              std::string::npos);
    EXPECT_EQ(
        std::count(boat.files.files[kDayFile].begin(), boat.files.files[kDayFile].end(), '\n'), 10);
}

TEST(MainWindow, SizeFollowsTheRowsShownAndTheSailorsCommandsAreKept) {
    // The window's sizes in twips; see the layout's own test for where 1500, 1035 and 1440
    // come from (the rows' top before and after the status label shrinks, and at 2300).
    Boat boat;
    NavigationCentre& centre = boat.Start(kIni);
    EXPECT_EQ(boat.frame.Width(), 4000);
    EXPECT_EQ(centre.Layout().CreatedRows(), kFieldCount);
    EXPECT_EQ(boat.frame.Height(), 1500 + 14 * 270 + 330);

    // The first data shrink the status label; a waypoint value shows the rows to 22, and a
    // line without one takes them away again.
    const std::string waypoint = kData.substr(0, kData.size() - 8) + ",52.4,-4.3,,,,,,Home";
    centre.OnLinkLine(kData);
    EXPECT_EQ(boat.frame.Height(), 1035 + 14 * 270 + 330);
    centre.OnLinkLine(waypoint);
    EXPECT_EQ(boat.frame.Height(), 1035 + 22 * 270 + 330);
    centre.OnLinkLine(kData);
    EXPECT_EQ(boat.frame.Height(), 1035 + 14 * 270 + 330);
    centre.OnLinkLine(kData);
    EXPECT_EQ(centre.LinkStatus().text, "unchanged 15-11-2026 23:42:16 (CZ)");

    // Dragged too narrow: back to the minimum, remembered, the buttons wrapped.
    boat.frame.SetWidth(1000);
    centre.FormResize();
    EXPECT_EQ(boat.frame.Width(), 2300);
    EXPECT_EQ(boat.settings.Get("Settings", "FormWidth"), "2300");
    EXPECT_EQ(boat.frame.Height(), 1440 + 14 * 270 + 330);

    // The log note: Cancel and an empty answer write nothing, not even a flush.
    const int appends = boat.files.appendCalls;
    centre.CmdLog();
    boat.dialogs.textAnswer = "";
    centre.CmdLog();
    EXPECT_EQ(boat.dialogs.prompts, Texts(2, "Enter log Information"));
    EXPECT_EQ(boat.files.appendCalls, appends);
    boat.dialogs.textAnswer = "Reefed";
    centre.CmdLog();
    EXPECT_NE(boat.files.files[kDayFile].find(kData), std::string::npos);

    // The window's own settings outlast the run.
    centre.SetNightPalette(true);
    centre.SetStayOnTop(true);
    EXPECT_TRUE(boat.Start(kIni).State().NightPalette);
    EXPECT_TRUE(boat.centre->State().StayOnTop);
}

TEST(SeaTalk, ACompletedDatagramTakesTheRoadOfADataLine) {
    Boat boat;
    NavigationCentre& centre = boat.Start("/boat/SeaClear_2.ini,SC");
    ASSERT_TRUE(centre.SeaTalkPortWanted());
    EXPECT_EQ(centre.LinkStatus().text, "working in SeaTalk mode");
    EXPECT_FALSE(centre.LinkStatus().colour);
    // Depth 10.0 feet: command 0x00 marked by a parity error (FF 00 00 under parity marking),
    // attribute 0x02 (five bytes), then 0x00 0x64 0x00. Stored as 3.0 m, sent as 3.0 + 0.3.
    const std::vector<std::uint8_t> stream = {0xFF, 0x00, 0x00, 0x02, 0x00, 0x64, 0x00};
    centre.OnSeaTalkBytes(stream);
    EXPECT_EQ(centre.Fields()[6].Shown, " 3.3   ");
    EXPECT_EQ(centre.LinkStatus().text, "15-11-2026 23:42:16 (CZ)");
    EXPECT_EQ(centre.LinkStatus().colour, 255U);
    ASSERT_EQ(centre.Track().PendingCount(), 1U);
    EXPECT_EQ(centre.Track().PendingRecords()[0].substr(0, 21), "20261115 23:42:16 CZ,");
}

TEST(StartUp, PolarTablesGiveCorrectedWindAndTargetSpeed) {
    Boat boat;
    boat.settings.Set("Settings", "SetLogData", "True");
    boat.files.files[kIni] += "SeaClear Dir=/plotter\r\n";
    boat.files.files["/boat/traces/WakelinePolar.txt"] =
        "[DampingFactor=1.0000]\r\n[PolarTable=Genoa]\r\n                 52,   90\r\n"
        "06,  40,  4.8,  5.3,  6.1\r\n12,  38,  6.0,  6.5,  7.2\r\n[PolarTableCurrent=Genoa]\r\n";
    NavigationCentre& centre = boat.Start("/boat/SeaClear_2.ini,,,F");
    ASSERT_TRUE(centre.State().PolarTablesOn);
    // The note names the chart plotter's directory, not the one the file came from.
    EXPECT_NE(boat.files.files[kDayFile].find(
                  "/* 20261115 23:42:16 CZ - Polar tables:/plotter/WakelinePolar.txt\r\n"),
              std::string::npos);

    // TWA 45 degrees at 9.7 knots: no correction, and the target between the 6 and 12 knot
    // rows, mapped into their upwind ranges, is 5.7755.
    ASSERT_TRUE(centre.HandleDataLine(kData + "\r\n"));
    EXPECT_EQ(centre.Fields()[7].Shown, "  45 C:  45");
    EXPECT_EQ(centre.Fields()[14].Shown, " 6.2 T: 5.8");
}

}  // namespace
}  // namespace wakeline
