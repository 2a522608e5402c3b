#pragma once
// How a run of the navigation centre was asked for: the program's options and the words that
// form its comma-separated command line.

#include <optional>
#include <string>

namespace wakeline {

struct ProgramOptions {
    bool headless = false;
    bool help = false;
    bool version = false;
    std::string link = "127.0.0.1:20175";  // the chart-plotter link endpoint
    std::optional<std::string> replay;     // data lines from a file, "-" for standard input
    std::string serial = "/dev/ttyS0";     // the SeaTalk port
    std::optional<std::string> seaTalkReplay;
    std::optional<std::string> logPath;
    // A directory laid out like /sys/class/power_supply to read the battery from, instead of
    // asking UPower and the kernel.
    std::optional<std::string> powerSupply;
    std::string commandLine;  // the remaining words joined with single spaces
};

}  // namespace wakeline
