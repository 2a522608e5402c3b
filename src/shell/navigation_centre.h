#pragma once
// The run of the navigation centre: it holds the program-wide state and the subsystems for
// the whole run, and carries out the main window's start-up, timer tick and close. The
// platform turns window events, timer ticks and incoming data into calls of this object.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "base/diagnostic_log.h"
#include "display/display_computation.h"
#include "display/display_layout.h"
#include "livedata/chart_plotter_link.h"
#include "livedata/field_table.h"
#include "performance/performance_tables.h"
#include "performance/table_lookup.h"
#include "performance/tables_editor.h"
#include "power/battery_flush.h"
#include "power/power_monitor.h"
#include "seatalk/seatalk_input.h"
#include "shell/configuration.h"
#include "shell/help_content.h"
#include "shell/logged_dialogs.h"
#include "shell/platform_services.h"
#include "track/track_writer.h"
#include "wind/wind_data.h"

namespace wakeline {

// Program-wide state set at start-up. Flags are plain booleans.
struct RunState {
    // Per-user settings.
    bool SetSoundLoud = false;
    bool SetLogData = false;
    int FormWidth = 4000;       // twips
    bool NightPalette = false;  // dark window with red text for night watches
    bool StayOnTop = false;     // the window stays above the chart plotter
    // Command line.
    std::int16_t DebugMode = 0;
    std::int16_t SeaTalkMode = 0;
    bool LiveOptionM = false;
    bool TablesLocked = false;  // "X": the tables command is disabled
    bool TraceOn = true;
    std::int16_t DiskWriteInterval = 900;  // seconds
    bool DdeMode = true;
    // Start-up and the run.
    int CaptionHeight = 0;  // twips
    bool PolarTablesOn = false;
    bool Replay = false;     // data lines come from a recorded file, not from the link
    int Timer1Interval = 0;  // milliseconds, 0 = stopped
};

// The link status label's texts before any data arrived.
struct LinkStatusText {
    std::string text;
    std::string toolTip;
    // The text's colour as blue x 65536 + green x 256 + red; empty for the window's own.
    // SeaTalk lines make it 255, pure red.
    std::optional<std::uint32_t> colour;
};

// What the close could not put into the track file: the records and notes the disk still
// refused at the last flush, oldest first, as the file would have held them. The platform
// decides where they go instead.
struct CloseOutcome {
    std::size_t unsavedRecords = 0;
    std::string unsavedText;
};

class NavigationCentre : private DataLineSink {
  public:
    explicit NavigationCentre(const PlatformServices& services);

    // Data lines will come from a replay of recorded lines instead of the link: the link and
    // its settings key are then not used. Call before FormLoad.
    void UseReplay() { state_.Replay = true; }

    // The main window's load: every start-up step in its order, each reported in the log.
    // `commandLine` is the whole comma-separated command line. Returns false when no
    // settings file was found: the program must end (the messages were shown).
    bool FormLoad(std::string_view commandLine);

    // One tick of the main timer (every Timer1Interval milliseconds once it runs). True when
    // the platform is to try to switch the link on now; it reports the outcome with
    // OnLinkConnected or OnLinkConnectFailed. The battery check runs here; when it finds the
    // battery newly below 30 % or 20 % on battery the pending track records are flushed.
    bool Timer1_Timer();
    // The system is about to suspend (`starting`) or has resumed. Before a suspend the pending
    // track records are flushed: a laptop that sleeps on a dying battery may never wake up.
    void PrepareForSleep(bool starting);

    void OnLinkConnected();
    // No server answered: "No seaclear input", the chart plotter's program started once per
    // run. True when data had arrived before, so the chart plotter was closed since: the
    // platform then closes the main window, which asks the user (FormUnload).
    bool OnLinkConnectFailed();
    // The server closed the link; the next tick finds out whether it comes back.
    void OnLinkClosed();
    // One text from the link: a change notification of the item.
    LinkNotification OnLinkLine(std::string_view itemText);
    // One line of a replay, without its line end: a note ("/* ") is skipped; a track
    // record's time stamp sets the program clock and is stripped; the rest is handled as a
    // text from the link.
    void HandleReplayLine(std::string_view line);

    // One data line from the current source: shown through the display computation (a line
    // that fails is logged and neither shown nor recorded), its wind sample kept, and handed
    // to the track writer when there is a track directory.
    // True when it was displayed.
    bool HandleDataLine(std::string_view line);

    // SeaTalk mode: true once start-up chose the bus as the data source (the platform then
    // opens the port, or a recorded stream).
    bool SeaTalkPortWanted() const { return seaTalk_ != nullptr; }
    // Bytes from the SeaTalk port as the kernel delivers them under parity marking. Each
    // receive event that completed a datagram composes a data line, which takes the road of
    // a line from the link; the status text becomes the line's time stamp.
    void OnSeaTalkBytes(std::span<const std::uint8_t> bytes);
    // The end of a recorded SeaTalk stream.
    void OnSeaTalkEnd();

    // The close: asks "ending trace function". OK flushes the track with the closedown note,
    // puts back the sound levels the sound check raised, and returns true (the window closes);
    // Cancel keeps the run and clears LinkSeen.
    bool FormUnload();
    // The close of a run whose dialogs answer OK at once (no windows): the track is flushed
    // with the closedown note first, and only then is "ending trace function" put, so that a
    // standard error nobody reads any more cannot stand between the records and the disk; the
    // sound levels are put back as by FormUnload. Returns what the last flush could not write.
    CloseOutcome CloseUnasked();

    // Form_Resize: the window's width changed. A width below the minimum is set back to it;
    // the width is remembered as FormWidth and everything laid out again for it.
    void FormResize();
    // cmdLog: asks "Enter log Information"; a text that is not empty goes into the track as a
    // note, which flushes the pending records. An empty answer or Cancel does nothing.
    void CmdLog();
    // cmdTab: the tables window edits the run's own tables through this editor. Only one is
    // open at a time (the window is modal).
    std::unique_ptr<TablesEditor> OpenTables();
    // The tables window closes: the damping text is taken, and when anything changed the polar
    // file is written beside the track files (a failure is shown). The tables are in use for
    // the next data line, with a sail checked or none.
    void CloseTables(TablesEditor& editor, std::string_view dampingText);
    // cmdWind: while the wind graph is open every track record redraws it through `redraw`;
    // an empty one says the graph closed.
    void SetWindGraphOpen(std::function<void()> redraw);
    bool WindGraphOpen() const { return windGraphOpen_; }
    // A double click on the graph's start: asks for the new start, answers a bad entry with
    // "Invalid time value: " + the entry. Empty on Cancel, an empty answer or a bad entry.
    std::optional<DateTime> AskGraphStart();
    // What the help window shows (cmdHelp).
    HelpContent Help() const;
    // The window's own settings, remembered for the next start.
    void SetNightPalette(bool on);
    void SetStayOnTop(bool on);

    // The alarm window's button: the user has read the battery alarm now. The alarm state
    // moves on and the alarm keeps quiet for a while; call it after the check that raised the
    // alarm has ended.
    void AcknowledgeAlarm();
    // A message of the platform (a replay that ended, a port that cannot be used), shown as
    // the run shows its own.
    void ShowMessage(const std::string& text);
    // A line of the platform's into the diagnostic log, as the command line's mode decides.
    void DebugWriteLine(std::string_view text);

    // The run's clock: UTC, or a replay's own time while one runs.
    DateTime NowUtc() const { return clock_.NowUtc(); }
    const RunState& State() const { return state_; }
    const ProgramFiles& Files() const { return files_; }
    const std::string& CommandLine() const { return commandLine_; }
    const std::string& Caption() const { return caption_; }
    const LinkStatusText& LinkStatus() const { return linkStatus_; }
    // The main window's layout as the last textWidthSize left it.
    const DisplayLayout& Layout() const { return layout_; }
    const ChartPlotterLink& Link() const { return link_; }
    // The track records not yet written.
    const TrackWriter& Track() const { return track_; }
    const FieldTable& Fields() const { return fieldTable_; }
    const DisplayComputation& Display() const { return display_; }
    const PerformanceTables& Performance() const { return performance_; }
    // What the last data line did to the display (its error, the rows written, the last row).
    const DisplayOutcome& LastDisplay() const { return lastDisplay_; }
    const WindData& WindHistory() const { return windHistory_; }
    // The battery monitor: its status text and alarm state.
    const PowerMonitor& Power() const { return power_; }
    const WindData& WindSamples() const { return windSamples_; }

  private:
    void ReadUserSettings();
    bool ReadFlagSetting(const char* key);
    // A flag of the window's own, read without writing it back: absent means false.
    bool ReadOptionalFlag(const char* key) const;
    // Writes a per-user setting back; the first failure is kept for the log.
    void StoreSetting(const char* key, const std::string& value);
    void ParseCommandLine();
    void DDEInit();
    void ChooseDataSource();
    void LoadPolarTables();
    void LoadWindHistory();
    // textWidthSize for the window's current width.
    void LayOut();
    // The window's height for the rows up to the last one shown.
    void FitHeight();
    // Writes the pending track records now (and saves the wind history), logging why.
    void FlushTrack(const std::string& why);
    // After OK at the close: the sailor's own sound levels come back when the check changed them.
    void RestoreSoundLevels();
    void HandleSeaTalkEvents(const std::vector<SeaTalkEvent>& events);
    // The road of a new data line: the display, then (when recorded) the track.
    bool TraceDisplayLine(const std::string& line) override;
    void TraceWriteLine(const std::string& line, bool force) override;

    PlatformServices services_;
    ProgramClock clock_;
    DiagnosticLog log_;
    LoggedDialogs dialogs_;  // what the run's subsystems ask the user through
    RunState state_;
    ProgramFiles files_;
    std::string settingsProblem_;  // the first per-user setting that could not be stored
    std::string commandLine_;
    std::string caption_;
    LinkStatusText linkStatus_;
    DisplayLayout layout_;
    std::size_t shownLastRow_ = kFieldSpd;  // the last row the window shows
    bool windGraphOpen_ = false;
    ChartPlotterLink link_;
    PerformanceTables performance_;
    TableLookup tableLookup_{performance_};
    FieldTable fieldTable_;
    DisplayComputation display_{fieldTable_};
    DisplayOutcome lastDisplay_;
    WindData windHistory_;
    WindData windSamples_;
    TrackWriter track_;
    std::unique_ptr<SeaTalkInput> seaTalk_;
    PowerMonitor power_;
    LowBatteryFlush lowBatteryFlush_;
    DateTime seaTalkLineTime_ = 0;  // the bus time of the SeaTalk line being handled

    // Values of the display computation that start-up sets and nothing reads; kept so that
    // the start-up order stays complete.
    std::int16_t displayCounter_ = 0;
    float displayFactor_ = 0;
    float displayMark_ = 0;
};

}  // namespace wakeline
