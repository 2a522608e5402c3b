#include "shell/navigation_centre.h"

#include "base/ascii_case.h"
#include "base/text_number.h"
#include "livedata/replay_line.h"
#include "performance/polar_file_reader.h"
#include "performance/polar_file_writer.h"
#include "performance/table_defaults.h"
#include "shell/command_line.h"
#include "wind/wind_file.h"
#include "wind/wind_graph.h"

namespace wakeline {
namespace {

constexpr const char* kSettingsSection = "Settings";
constexpr int kDefaultFormWidth = 4000;

constexpr const char* kDdeToolTip =
    "To enable DDE, add the following line to the [Program Setup] section in the "
    "seaclear_2.ini file: \"DDE = 1\" ;note that there are other sections in this .ini file "
    "also!";

const char* BoolText(bool value) {
    return value ? "True" : "False";
}

}  // namespace

NavigationCentre::NavigationCentre(const PlatformServices& services)
    : services_(services),
      clock_(services.clock),
      log_(clock_, services.files, services.dialogs, services.logPath),
      dialogs_(services.dialogs, log_, services.dialogsIntoLog),
      link_(log_, services.programs),
      track_(TrackSettings{}, clock_, services.files, log_, dialogs_, windHistory_, windSamples_),
      power_(services.battery, services.alarm) {}

bool NavigationCentre::ReadFlagSetting(const char* key) {
    bool value = false;
    if (const auto stored = services_.settings.Get(kSettingsSection, key)) {
        const std::string upper = UpperCase(*stored);
        if (upper == "TRUE") {
            value = true;
        } else if (upper != "FALSE") {
            // A number stands for a flag the way the store's own texts do: 0 is false.
            value = IsDecimalNumber(*stored) && LeadingNumber(*stored) != 0.0;
        }
    }
    // Writing back makes the keys exist in the store after the first run.
    StoreSetting(key, BoolText(value));
    return value;
}

void NavigationCentre::StoreSetting(const char* key, const std::string& value) {
    const Status stored = services_.settings.Set(kSettingsSection, key, value);
    if (!stored.Ok() && settingsProblem_.empty()) {
        settingsProblem_ = stored.Message();
    }
}

void NavigationCentre::ReadUserSettings() {
    state_.SetSoundLoud = ReadFlagSetting("SetSoundLoud");
    state_.SetLogData = ReadFlagSetting("SetLogData");

    int width = kDefaultFormWidth;
    if (const auto stored = services_.settings.Get(kSettingsSection, "FormWidth")) {
        const double value = RoundHalfEven(LeadingNumber(*stored));
        // A width no screen has is a damaged setting: start at the default instead.
        if (value > 0 && value < 1e6) {
            width = static_cast<int>(value);
        }
    }
    services_.window.SetWidth(width);
    state_.FormWidth = services_.window.Width();
    StoreSetting("FormWidth", std::to_string(state_.FormWidth));

    state_.NightPalette = ReadOptionalFlag("NightPalette");
    state_.StayOnTop = ReadOptionalFlag("StayOnTop");

    services_.window.SetHeight(0);
    state_.CaptionHeight = services_.window.Height();
}

bool NavigationCentre::ReadOptionalFlag(const char* key) const {
    const auto stored = services_.settings.Get(kSettingsSection, key);
    return stored && UpperCase(*stored) == "TRUE";
}

void NavigationCentre::ParseCommandLine() {
    const std::vector<std::string> fields = SplitCommandLine(commandLine_);
    // The diagnostic mode comes first, so that every following line obeys it.
    if (fields.size() > 3) {
        if (const auto mode = ParseDebugMode(fields[3])) {
            state_.DebugMode = *mode;
        }
    }
    log_.SetMode(state_.DebugMode);
    log_.DebugWriteLine("Started with Command line:\"" + commandLine_ + "\"");
    if (fields.size() > 3 && !ParseDebugMode(fields[3])) {
        log_.DebugWriteLine("Diagnostic mode out of range, ignored: " + fields[3]);
    }

    if (fields.size() > 1) {
        const SourceOptions source = ParseSourceOptions(fields[1]);
        state_.SeaTalkMode = source.SeaTalkMode;
        state_.LiveOptionM = source.LiveOptionM;
        state_.TablesLocked = source.TablesLocked;
        state_.DdeMode = state_.SeaTalkMode < 1;
    } else {
        state_.DdeMode = true;
    }

    state_.DiskWriteInterval = 900;
    if (fields.size() > 2) {
        const TraceOptions trace = ParseTraceOptions(fields[2]);
        state_.TraceOn = trace.TraceOn;
        if (trace.DiskWriteInterval) {
            state_.DiskWriteInterval = *trace.DiskWriteInterval;
        }
        if (trace.IntervalOutOfRange) {
            log_.DebugWriteLine("Disk write interval out of range, kept 900: " + fields[2]);
        }
    } else {
        state_.TraceOn = true;
    }
}

void NavigationCentre::DDEInit() {
    log_.DebugWriteLine("DDEInit setting up DDE interface");
    if (state_.DdeMode) {
        linkStatus_.text = "waiting for Seaclear input\r\nsee tooltip for instruction";
    } else {
        linkStatus_.text = "working in SeaTalk mode";
    }
    log_.DebugWriteLine("DDEInit set up complete");
    if (!state_.TraceOn) {
        linkStatus_.text += " NO TRACE FILE";
    }
    linkStatus_.toolTip = kDdeToolTip;
    InitFieldTable(fieldTable_);
    LayOut();
    log_.DebugWriteLine("DDEInit prepared strings");
}

void NavigationCentre::LoadPolarTables() {
    performance_.Correction = DefaultCorrectionTable();
    if (state_.TablesLocked) {
        state_.PolarTablesOn = false;
        return;
    }
    // The polar file lies beside the track files.
    const std::string path = files_.TrackDir + "/WakelinePolar.txt";
    if (!files_.TrackDir.empty() && services_.files.FileExists(path)) {
        const PolarReadReport report = ReadPolarFile(services_.files, path, performance_);
        for (const std::string& message : report.messages) {
            dialogs_.ShowMessage(message);
        }
        state_.PolarTablesOn = performance_.Polars.Current >= 0;
        // Both texts name the chart plotter's directory, not the one the file was read
        // from: sailors know these lines in their track files as they are.
        const std::string named = files_.SeaClearDir + "/WakelinePolar.txt";
        log_.DebugWriteLine("Form_Load loaded Polar tables" + named);
        if (state_.TraceOn) {
            track_.TraceWriteLine("Polar tables:" + named, true);
        }
    } else {
        performance_.Polars = PlaceholderPolarSet(8, 7);
        log_.DebugWriteLine("Form_Load no Polar tables found");
    }
    tableLookup_.SetPolarTablesOn(state_.PolarTablesOn);
    display_.SetPerformance(&tableLookup_);
}

void NavigationCentre::LoadWindHistory() {
    ClearWindData(windHistory_);
    if (!files_.TrackDir.empty()) {
        const WindHistoryLoad load =
            LoadWindHistoryFile(services_.files, WindHistoryPath(files_.TrackDir), clock_.NowUtc());
        windHistory_ = load.history;
        if (load.outcome == WindLoadOutcome::Damaged) {
            log_.DebugWriteLine("Wind history cleared: " + load.problem);
        }
    }
    // From here on a flush may save the history: it now holds what the file held.
    track_.SetHistoryLoaded();
    log_.DebugWriteLine("Form_Load initialised Winddata 1");
    ClearWindData(windSamples_);
    log_.DebugWriteLine("initialised Winddata 2");
}

void NavigationCentre::ChooseDataSource() {
    if (!state_.DdeMode) {
        state_.Timer1Interval = 5000;
        seaTalk_ = std::make_unique<SeaTalkInput>(state_.SeaTalkMode);
        // Opening the port: the warning comes first, once per run.
        if (const auto warning = seaTalk_->TakePortWarning()) {
            dialogs_.ShowMessage(*warning);
        }
        // Records take the bus's own time once it has sent one.
        track_.SetSeaTalkTime([this] { return seaTalkLineTime_; });
        return;
    }
    if (state_.Replay) {
        // The recorded lines stand in for the link; the tick keeps the battery check going.
        state_.Timer1Interval = 100;
        return;
    }
    const std::int16_t dde = files_.Ini.Dde;
    if (dde == 0) {
        // Without the link there is no data source and no battery check until a restart.
        dialogs_.ShowMessage(
            "DDE=1 statement missing, no DDE interface started; click help button");
        return;
    }
    if (dde != 1) {
        dialogs_.ShowMessage("Warning: DDE=" + std::to_string(dde) +
                             " seems wrong, attempting DDE interface anyway");
    }
    state_.Timer1Interval = 100;
}

bool NavigationCentre::FormLoad(std::string_view commandLine) {
    commandLine_ = std::string(commandLine);
    ReadUserSettings();
    displayCounter_ = 0;
    displayFactor_ = 1.0F;

    ParseCommandLine();
    display_.SetFeetOption(state_.LiveOptionM);
    log_.DebugWriteLine("Form_Load processed commandline ");
    // The settings are stored before the command line says where diagnostics go.
    if (!settingsProblem_.empty()) {
        log_.DebugWriteLine("Per-user settings not stored: " + settingsProblem_);
    }
    DDEInit();
    log_.DebugWriteLine("Form_Load performed DDEInit ");
    if (!state_.TraceOn) {
        dialogs_.ShowMessage("No tracefile will be made");
    }

    const DetermineFilesInput input{commandLine_, services_.program.programDir,
                                    services_.program.userIniPath};
    if (!DetermineFiles(input, services_.files, dialogs_, log_, files_)) {
        return false;
    }

    const ProgramInfo& program = services_.program;
    caption_ = program.title + "  V" + std::to_string(program.major) + "." +
               std::to_string(program.minor) + "." + std::to_string(program.revision);
    services_.window.SetCaption(caption_);
    log_.DebugWriteLine(caption_);

    TrackSettings& track = track_.Settings();
    track.TrackTime = files_.Ini.TrackTime;
    track.TrackDistance = files_.Ini.TrackDistance;
    track.TrackCompDev = files_.Ini.TrackCompDev;
    track.TrackDir = files_.TrackDir;
    track.DiskWriteInterval = state_.DiskWriteInterval;
    track.TraceOn = state_.TraceOn;
    track.SetLogData = state_.SetLogData;
    // What a run that died left pending goes into the track before this run writes anything.
    track_.RecoverJournal();
    if (state_.TraceOn) {
        track_.TraceWriteLine(caption_ + " started commandline: " + commandLine_, true);
    }
    log_.DebugWriteLine("Form_Load performed Determinefiles ");

    LoadPolarTables();
    LoadWindHistory();

    power_.StartWithSoundCheck();
    ChooseDataSource();
    displayMark_ = 999.0F;
    // The window opens showing the rows a first line will show, not its caption alone.
    FitHeight();
    log_.DebugWriteLine("Form_Load complete");
    return true;
}

bool NavigationCentre::Timer1_Timer() {
    power_.PowerCheck(clock_.NowUtc(), state_.SetSoundLoud);
    if (const auto why = lowBatteryFlush_.Check(power_.Level())) {
        FlushTrack(*why);
    }
    return state_.DdeMode && !state_.Replay && link_.OnTimerTick();
}

void NavigationCentre::OnLinkConnected() {
    link_.OnConnected();
}

bool NavigationCentre::OnLinkConnectFailed() {
    const LinkFailure failure = link_.OnConnectFailed(files_.SeaClearExe);
    linkStatus_.text = failure.statusText;
    return failure.askClose;
}

void NavigationCentre::OnLinkClosed() {
    link_.OnLinkClosed();
}

LinkNotification NavigationCentre::OnLinkLine(std::string_view itemText) {
    LinkNotification notification =
        link_.OnNotification(itemText, clock_.NowUtc(), !files_.TrackDir.empty(), *this);
    linkStatus_.text = notification.statusText;
    if (notification.layOutAgain) {
        LayOut();
    }
    return notification;
}

void NavigationCentre::HandleReplayLine(std::string_view line) {
    const ReplayLine replay = ClassifyReplayLine(line);
    switch (replay.kind) {
        case ReplayLine::Kind::Note:
            return;
        case ReplayLine::Kind::Stamped:
            clock_.SetReplayTime(replay.time);
            break;
        case ReplayLine::Kind::Plain:
            break;
    }
    OnLinkLine(replay.text);
}

bool NavigationCentre::TraceDisplayLine(const std::string& line) {
    lastDisplay_ = display_.TraceDisplayLine(line);
    if (lastDisplay_.windSample) {
        AddWindObservation(windSamples_, lastDisplay_.windSample->twsKnots,
                           lastDisplay_.windSample->twdDegrees, clock_.NowUtc(), 1);
    }
    if (!lastDisplay_.Displayed()) {
        log_.DebugWriteLine(lastDisplay_.error);
        return false;
    }
    // The waypoint rows show only while a waypoint value arrives.
    shownLastRow_ = static_cast<std::size_t>(lastDisplay_.lastRow);
    FitHeight();
    return true;
}

void NavigationCentre::TraceWriteLine(const std::string& line, bool force) {
    track_.TraceWriteLine(line, force, fieldTable_[kFieldCog].Shown);
}

bool NavigationCentre::HandleDataLine(std::string_view line) {
    const std::string text(line);
    const bool displayed = TraceDisplayLine(text);
    if (displayed && !files_.TrackDir.empty()) {
        TraceWriteLine(text, false);
    }
    return displayed;
}

void NavigationCentre::OnSeaTalkBytes(std::span<const std::uint8_t> bytes) {
    if (seaTalk_) {
        HandleSeaTalkEvents(seaTalk_->Feed(bytes, clock_.NowUtc()));
    }
}

void NavigationCentre::OnSeaTalkEnd() {
    if (seaTalk_) {
        HandleSeaTalkEvents(seaTalk_->Finish(clock_.NowUtc()));
    }
}

void NavigationCentre::HandleSeaTalkEvents(const std::vector<SeaTalkEvent>& events) {
    for (const SeaTalkEvent& event : events) {
        // One read may complete several events; each line is recorded at its own bus time.
        seaTalkLineTime_ = event.busTime;
        HandleDataLine(event.line);
        linkStatus_.text = event.timeStamp;
        linkStatus_.colour = 255;
        LayOut();
    }
}

void NavigationCentre::LayOut() {
    layout_.TextWidthSize(services_.window.Width(), state_.SetLogData,
                          link_.StatusLabelHeight().value_or(DisplayLayout::kStatusStartHeight));
    // The rows may have moved (a shrunk status label, wrapped buttons): the height follows.
    FitHeight();
}

void NavigationCentre::FormResize() {
    const int width = services_.window.Width();
    const int resized = DisplayLayout::ResizedWidth(width);
    if (resized != width) {
        services_.window.SetWidth(resized);
    }
    state_.FormWidth = resized;
    StoreSetting("FormWidth", std::to_string(resized));
    LayOut();
}

void NavigationCentre::FitHeight() {
    const int height = state_.CaptionHeight + layout_.ContentHeight(shownLastRow_);
    if (services_.window.Height() != height) {
        services_.window.SetHeight(height);
    }
}

void NavigationCentre::CmdLog() {
    const std::optional<std::string> text =
        dialogs_.AskText("Enter log Information", services_.program.title);
    if (text && !text->empty()) {
        track_.TraceWriteLine(*text, true);
    }
}

std::unique_ptr<TablesEditor> NavigationCentre::OpenTables() {
    return std::make_unique<TablesEditor>(performance_);
}

void NavigationCentre::CloseTables(TablesEditor& editor, std::string_view dampingText) {
    editor.TakeDampingText(dampingText);
    if (!state_.TablesLocked) {
        state_.PolarTablesOn = performance_.Polars.Current >= 0;
        tableLookup_.SetPolarTablesOn(state_.PolarTablesOn);
    }
    if (!editor.TablesChanged()) {
        return;
    }
    if (files_.TrackDir.empty()) {
        dialogs_.ShowMessage("The tables are in use, but not saved: there is no track directory");
        return;
    }
    const std::string path = files_.TrackDir + "/WakelinePolar.txt";
    const Status written = WritePolarFile(services_.files, path, performance_, clock_.NowUtc());
    if (!written.Ok()) {
        dialogs_.ShowMessage("The tables are in use, but not saved: " + written.Message());
        return;
    }
    log_.DebugWriteLine("Polar tables written: " + path);
}

void NavigationCentre::SetWindGraphOpen(std::function<void()> redraw) {
    windGraphOpen_ = static_cast<bool>(redraw);
    track_.SetGraphRedraw(std::move(redraw));
}

std::optional<DateTime> NavigationCentre::AskGraphStart() {
    const std::optional<std::string> entry = dialogs_.AskText(
        "enter start time HH:MM\r\nor date/time: yyyy/mm/dd HH:MM", "Change Start Time");
    if (!entry || entry->empty()) {
        return std::nullopt;
    }
    // An "HH:MM" is on the day of the newest observation.
    const DateTime reference =
        windHistory_.Count > 0
            ? windHistory_.Obs[static_cast<std::size_t>(windHistory_.Count - 1)].Time
            : clock_.NowUtc();
    const std::optional<DateTime> start = ParseGraphStart(*entry, reference);
    if (!start) {
        dialogs_.ShowMessage("Invalid time value: " + *entry);
    }
    return start;
}

HelpContent NavigationCentre::Help() const {
    const ProgramInfo& program = services_.program;
    HelpInput input;
    input.title = program.title;
    input.version = std::to_string(program.major) + "." + std::to_string(program.minor) + "." +
                    std::to_string(program.revision);
    input.programDir = program.programDir;
    input.programName = program.programName;
    input.dataDir = program.dataDir;
    input.homepage = program.homepage;
    input.iniPath = files_.IniPath;
    input.trackDir = files_.TrackDir;
    input.traceOn = state_.TraceOn;
    input.seaClearExe = files_.SeaClearExe;
    input.commandLine = commandLine_;
    input.trackTime = files_.Ini.TrackTime;
    input.trackCompDev = files_.Ini.TrackCompDev;
    input.trackDistance = files_.Ini.TrackDistance;
    input.diskWriteInterval = state_.DiskWriteInterval;
    return MakeHelpContent(input, services_.files);
}

void NavigationCentre::SetNightPalette(bool on) {
    state_.NightPalette = on;
    StoreSetting("NightPalette", BoolText(on));
}

void NavigationCentre::SetStayOnTop(bool on) {
    state_.StayOnTop = on;
    StoreSetting("StayOnTop", BoolText(on));
}

void NavigationCentre::PrepareForSleep(bool starting) {
    if (starting) {
        FlushTrack("the system is about to suspend");
    }
}

void NavigationCentre::FlushTrack(const std::string& why) {
    log_.DebugWriteLine("Track flushed, " + why + ": " + std::to_string(track_.PendingCount()) +
                        " pending records");
    // An empty forced entry writes no note of its own but flushes, as the close's note does.
    track_.TraceWriteLine("", true);
}

bool NavigationCentre::FormUnload() {
    if (!dialogs_.AskOkCancel("ending trace function")) {
        // A lost link no longer closes the window by itself until new data have arrived.
        link_.OnCloseRefused();
        return false;
    }
    // The forced note flushes every pending record and saves the wind history.
    track_.TraceWriteLine("normal closedown", true);
    RestoreSoundLevels();
    return true;
}

void NavigationCentre::RestoreSoundLevels() {
    if (!services_.sound.SoundChanged()) {
        return;
    }
    const std::int16_t restored = services_.sound.CheckSoundLevels(state_.SetSoundLoud, true);
    log_.DebugWriteLine("Form_Unload restored the sound levels (" + std::to_string(restored) + ")");
}

CloseOutcome NavigationCentre::CloseUnasked() {
    track_.TraceWriteLine("normal closedown", true);
    RestoreSoundLevels();
    CloseOutcome outcome;
    for (const std::string& entry : track_.PendingRecords()) {
        ++outcome.unsavedRecords;
        outcome.unsavedText += entry;
    }
    // Put for the record only: the answer cannot undo a close that has happened.
    dialogs_.AskOkCancel("ending trace function");
    return outcome;
}

void NavigationCentre::AcknowledgeAlarm() {
    power_.Noticed(clock_.NowUtc());
}

void NavigationCentre::ShowMessage(const std::string& text) {
    dialogs_.ShowMessage(text);
}

void NavigationCentre::DebugWriteLine(std::string_view text) {
    log_.DebugWriteLine(text);
}

}  // namespace wakeline
