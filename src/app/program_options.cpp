#include "app/program_options.h"

#include <QCommandLineParser>

#include "app/command_line_options.h"

namespace wakeline {

namespace {

// An option with a value; an empty value is as good as a missing one.
struct ValueOption {
    const char* name;
    const char* valueName;
    std::string ProgramOptions::*text = nullptr;
    std::optional<std::string> ProgramOptions::*optionalText = nullptr;
};

const ValueOption kValueOptions[] = {
    {"link", "HOST:PORT", &ProgramOptions::link, nullptr},
    {"replay", "FILE", nullptr, &ProgramOptions::replay},
    {"serial", "DEVICE", &ProgramOptions::serial, nullptr},
    {"seatalk-replay", "FILE", nullptr, &ProgramOptions::seaTalkReplay},
    {"log", "FILE", nullptr, &ProgramOptions::logPath},
    {"power-supply", "DIR", nullptr, &ProgramOptions::powerSupply},
};

}  // namespace

ParsedOptions ParseProgramOptions(const std::vector<std::string>& words) {
    QCommandLineParser parser;
    const QCommandLineOption headless(QStringLiteral("headless"), QStringLiteral("no windows"));
    parser.addOption(headless);
    for (const ValueOption& option : kValueOptions) {
        parser.addOption(QCommandLineOption(QString::fromLatin1(option.name), QString(),
                                            QString::fromLatin1(option.valueName)));
    }
    const CommandLineRequest request = ParseCommandLine(parser, words);
    ProgramOptions options;
    switch (request.kind) {
        case CommandLineRequest::Kind::Help:
            options.help = true;
            return {options, "", kExitOk};
        case CommandLineRequest::Kind::Version:
            options.version = true;
            return {options, "", kExitOk};
        case CommandLineRequest::Kind::UsageError:
            return {std::nullopt, request.problem, kExitUsageError};
        case CommandLineRequest::Kind::Run:
            break;
    }
    options.headless = parser.isSet(headless);
    for (const ValueOption& option : kValueOptions) {
        const QString name = QString::fromLatin1(option.name);
        if (!parser.isSet(name)) {
            continue;
        }
        const std::string value = Bytes(parser.value(name));
        if (value.empty()) {
            return {std::nullopt, std::string("--") + option.name + " needs a value",
                    kExitUsageError};
        }
        if (option.text != nullptr) {
            options.*option.text = value;
        } else {
            options.*option.optionalText = value;
        }
    }
    const QStringList lineWords = parser.positionalArguments();
    for (qsizetype k = 0; k < lineWords.size(); ++k) {
        options.commandLine += (k == 0 ? "" : " ") + Bytes(lineWords[k]);
    }
    return {options, "", kExitOk};
}

std::string ProgramUsage() {
    return "usage: wakeline [OPTIONS] [COMMAND LINE]\n"
           "\n"
           "The navigation centre. COMMAND LINE is comma-separated:\n"
           "  SETTINGS,SOURCE,TRACE,DIAGNOSTICS\n"
           "  SETTINGS     path of the chart plotter's SeaClear_2.ini (default: SEACLEAR_2.INI\n"
           "               beside the program, else $XDG_CONFIG_HOME/Wakeline/SeaClear_2.ini,\n"
           "               which wakeline-tool init writes)\n"
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
           "  -h, --help             this text\n"
           "  -v, --version          the program's name and version\n"
           "\n"
           "Options take their value as --option VALUE or --option=VALUE; words after \"--\"\n"
           "belong to the command line even when they start with '-'.\n"
           "\n"
           "exit status: 0 the run ended normally, 1 it failed, 2 usage error\n";
}

}  // namespace wakeline
