#pragma once
// The chart plotter's own settings file and the choice of the files the program works with:
// which settings file, where the track files go, where the chart plotter's program lies.

#include <cstdint>
#include <string>

#include "base/diagnostic_log.h"
#include "base/file_system.h"
#include "base/user_dialogs.h"

namespace wakeline {

// Values read from the chart plotter's settings file; zero or empty until read.
struct ChartPlotterSettings {
    std::int16_t Dde = 0;     // 1: the chart plotter offers its data over the link
    float TrackTime = 0;      // seconds between track records, 0 = off
    float TrackDistance = 0;  // metres between track records, 0 = off
    float TrackCompDev = 0;   // degrees of course change between track records, 0 = off
    std::string TrackDir;     // as written in the file
    std::string SeaClearDir;  // as written in the file
};

// The files chosen at start-up, program-wide for the run.
struct ProgramFiles {
    std::string IniPath;      // the settings file in use
    std::string TrackDir;     // empty: no track, wind history or polar file
    std::string SeaClearDir;  // the chart plotter's directory
    std::string SeaClearExe;  // its program, empty when not found
    ChartPlotterSettings Ini;
};

// Reads the settings file with deliberately literal rules: a line starting with "[" is the
// section exactly as written; a key is section + ".[" + the untrimmed text before the first
// "=" + "]", compared with case; the value runs to the second "=" or the line's end. "DDE"
// takes the whole-number value (a value outside 16 bits keeps the old one and is logged), the
// thresholds the leading number, the directories the text as it stands. The last line of a
// key wins. A file that cannot be read leaves `settings` as it was and is logged.
void IniFileGet(const std::string& path, const FileSystem& files, DiagnosticLog& log,
                ChartPlotterSettings& settings);

// What DetermineFiles needs to know of the run.
struct DetermineFilesInput {
    std::string commandLine;  // the whole command line, empty when none was given
    std::string programDir;   // the directory of the running program, no trailing "/"
    // The user's own settings file, taken without a command line when the program's directory
    // holds no "SEACLEAR_2.INI" (an installed program); empty: none.
    std::string userIniPath;
};

// Chooses the settings file, reads it, chooses the track directory and the chart plotter's
// program, showing each problem in one message and going on with the value emptied. Without a
// command line the file is "SEACLEAR_2.INI" beside the program, else `userIniPath`, which the
// message then names when it is missing too. `out` is
// reset first. Returns false when no settings file could be found, after showing the message
// "Cannot start, no seaclear inifile found:": the caller then ends the program. A settings
// path shorter than the 14 characters the track directory's cut removes leaves "traces".
bool DetermineFiles(const DetermineFilesInput& input, const FileSystem& files, UserDialogs& dialogs,
                    DiagnosticLog& log, ProgramFiles& out);

}  // namespace wakeline
