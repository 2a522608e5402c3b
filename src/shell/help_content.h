#pragma once
// What the help window shows: its title, the four information labels (settings file, track
// directory, the chart plotter's program, the command line), the four threshold labels, and
// the help text, read from "Wakeline.txt" beside the program or in the installed data
// directory, else a short help of its own.

#include <array>
#include <string>

#include "base/file_system.h"

namespace wakeline {

struct HelpInput {
    std::string title;        // the program's title
    std::string version;      // major.minor.revision
    std::string programDir;   // directory of the running program, no trailing "/"
    std::string programName;  // the program's file name
    std::string dataDir;      // the installed data directory, empty when none
    std::string homepage;     // the project's web address, named by the built-in help
    std::string iniPath;
    std::string trackDir;
    bool traceOn = true;
    std::string seaClearExe;
    std::string commandLine;
    float trackTime = 0;
    float trackCompDev = 0;
    float trackDistance = 0;
    int diskWriteInterval = 900;
};

struct HelpContent {
    std::string title;                       // the title label
    std::array<std::string, 4> information;  // heading, CR LF, value
    std::array<std::string, 4> thresholds;   // "Time 10", "CompDev 20", ...
    std::string text;                        // every line ended by CR LF but the built-in last
    std::string textSource;                  // the file read, empty for the built-in help
};

// The help file counts only under its exact name "Wakeline.txt": a "wakeline.txt" is not it.
// A file that is there but cannot be read gives the built-in help.
HelpContent MakeHelpContent(const HelpInput& input, const FileSystem& files);

// A threshold as the labels show it: the shortest text that gives the 32-bit value back, "."
// as the decimal point ("10", "0.5").
std::string ThresholdText(float value);

}  // namespace wakeline
