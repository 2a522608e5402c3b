#pragma once
// What every run of the navigation centre takes from this machine, with or without windows:
// the program's own description, where its log and state files go, and where the records the
// close could not write are saved instead.

#include <optional>
#include <string>

#include "base/platform/durable_file_system.h"
#include "base/platform/qt_settings_store.h"
#include "base/platform/system_clock.h"
#include "livedata/platform/program_launcher.h"
#include "power/platform/sleep_watcher.h"
#include "power/platform/system_battery.h"
#include "power/platform/system_sound.h"
#include "shell/platform/run_options.h"
#include "shell/platform_services.h"
#include "shell/starter_settings.h"

namespace wakeline {

class FileSystem;
class NavigationCentre;
struct CloseOutcome;

// The machine's side of a run, the same with or without windows: its clock, disk, per-user
// settings, the chart plotter's program, the battery, the sound and the system's suspend.
struct MachineParts {
    explicit MachineParts(const ProgramOptions& options);
    // The battery is read inside the run's tick; a failed read is told in the run's log.
    void ReportBatteryFailuresTo(NavigationCentre& centre);
    // Once start-up is done: a coming suspend flushes the run's track. Where the suspend
    // cannot be watched (no system bus, no logind) the log says so once and the run goes on.
    void WatchSleepFor(NavigationCentre& centre);

    SystemClock clock;
    DurableFileSystem files;
    QtSettingsStore settings;
    ProgramLauncher launcher;
    SystemBattery battery;
    SystemSound sound;
    SleepWatcher sleep;
};

// True when a window can be shown: a Wayland or X server, or a Qt platform chosen by hand
// (offscreen).
bool HasDisplay();

// The running program's title, version, directory and name, and the installed data directory.
ProgramInfo ThisProgram();

// $XDG_CONFIG_HOME, $XDG_DATA_HOME and $HOME as this process has them.
UserHomes UserHomesFromEnvironment();

// The alarm's chime: "chime.wav" beside the running executable when it is there (a build
// tree), otherwise in the installed data directory.
std::string ChimePath(const ProgramInfo& program);

// $XDG_STATE_HOME/wakeline (~/.local/state/wakeline by default).
std::string StateDirectory();

// The diagnostic log's path when --log does not give one; its directory is created.
std::string PrepareLogPath(const std::optional<std::string>& given);

// Writes the records the close could not put into the track file to
// StateDirectory()/unsaved-YYYYMMDD-HHMMSS.TRT (the local time of the close) and tells the user
// where they went, or that they are lost and why.
void SaveUnsaved(const CloseOutcome& outcome, FileSystem& files, NavigationCentre& centre);

}  // namespace wakeline
