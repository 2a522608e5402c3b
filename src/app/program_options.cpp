#include "app/program_options.h"

namespace wakeline {

ParsedOptions ParseProgramOptions(const std::vector<std::string>& words) {
    ProgramOptions options;
    std::vector<std::string> lineWords;
    bool onlyWords = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (onlyWords || word.size() < 2 || word.compare(0, 2, "--") != 0) {
            lineWords.push_back(word);
            continue;
        }
        if (word == "--") {
            onlyWords = true;
            continue;
        }
        std::string name = word;
        std::optional<std::string> value;
        if (const auto equals = word.find('='); equals != std::string::npos) {
            name = word.substr(0, equals);
            value = word.substr(equals + 1);
        }
        auto takeValue = [&]() -> std::optional<std::string> {
            if (value) {
                return value;
            }
            if (i + 1 < words.size()) {
                return words[++i];
            }
            return std::nullopt;
        };
        if (name == "--headless" || name == "--help" || name == "--version") {
            if (value) {
                return {std::nullopt, name + " takes no value"};
            }
            if (name == "--headless") {
                options.headless = true;
            } else if (name == "--help") {
                options.help = true;
            } else {
                options.version = true;
            }
            continue;
        }
        std::string* target = nullptr;
        std::optional<std::string>* optionalTarget = nullptr;
        if (name == "--link") {
            target = &options.link;
        } else if (name == "--serial") {
            target = &options.serial;
        } else if (name == "--replay") {
            optionalTarget = &options.replay;
        } else if (name == "--seatalk-replay") {
            optionalTarget = &options.seaTalkReplay;
        } else if (name == "--log") {
            optionalTarget = &options.logPath;
        } else if (name == "--power-supply") {
            optionalTarget = &options.powerSupply;
        } else {
            return {std::nullopt, "unknown option " + name};
        }
        const auto given = takeValue();
        if (!given || given->empty()) {
            return {std::nullopt, name + " needs a value"};
        }
        if (target != nullptr) {
            *target = *given;
        } else {
            *optionalTarget = *given;
        }
    }
    for (std::size_t k = 0; k < lineWords.size(); ++k) {
        options.commandLine += (k == 0 ? "" : " ") + lineWords[k];
    }
    return {options, ""};
}

std::string ProgramUsage() {
    return "usage: wakeline [OPTIONS] [COMMAND LINE]\n"
           "\n"
           "The navigation centre. COMMAND LINE is comma-separated:\n"
           "  SETTINGS,SOURCE,TRACE,DIAGNOSTICS\n"
           "  SETTINGS     path of the chart plotter's SeaClear_2.ini (default: SEACLEAR_2.INI\n"
           "               beside the program)\n"
           "  SOURCE       SB or SC: SeaTalk bus; M: depth in feet; X: tables locked;\n"
           "               empty: the chart plotter's link\n"
           "  TRACE        NOTRACE: no track file; a number: disk write interval in seconds\n"
           "               (default 900)\n"
           "  DIAGNOSTICS  I: message boxes; F: log file; a number: the diagnostic mode\n"
           "\n"
           "options:\n"
           "  --headless             no windows: messages go to standard error, answered OK\n"
           "  --link HOST:PORT       the chart-plotter link (default 127.0.0.1:20175)\n"
           "  --replay FILE|-        data lines from a file or standard input\n"
           "  --serial DEVICE        the SeaTalk port (default /dev/ttyS0)\n"
           "  --seatalk-replay FILE  a recorded SeaTalk byte stream instead of the port\n"
           "  --log FILE             the diagnostic log (default\n"
           "                         $XDG_STATE_HOME/wakeline/WakelineDebug.txt)\n"
           "  --power-supply DIR     read the battery from DIR, laid out like\n"
           "                         /sys/class/power_supply (default: UPower, then the kernel)\n"
           "  --help, --version\n";
}

}  // namespace wakeline
