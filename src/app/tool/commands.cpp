#include "app/tool/commands.h"

#include <QCommandLineParser>
#include <cstdio>

#include "app/command_line_options.h"
#include "wakeline_version.h"

namespace wakeline::tool {

int RunDisplay(const Arguments& args);
int RunInit(const Arguments& args);
int RunPolar(const Arguments& args);
int RunSeaTalk(const Arguments& args);
int RunSim(const Arguments& args);
int RunSimulate(const Arguments& args);
int RunWind(const Arguments& args);

// Each subcommand's file defines its entry point; the table names them in one place.
const std::vector<Command>& AllCommands() {
    static const std::vector<Command> commands = {
        {"display", "the live display's texts for data lines from standard input", RunDisplay},
        {"init", "write a starter settings file and create its track directory", RunInit},
        {"polar", "check a polar file, look up target speeds and corrections", RunPolar},
        {"seatalk", "monitor a SeaTalk bus or a recorded stream: datagrams and data lines",
         RunSeaTalk},
        {"sim", "a live voyage served as the chart plotter's link, the demo's data source", RunSim},
        {"simulate", "a made-up voyage beating to windward as data lines on standard output",
         RunSimulate},
        {"wind", "show a saved wind history, its recent averages and its oscillation", RunWind},
    };
    return commands;
}

void PrintToolVersion() {
    std::printf("wakeline-tool %s\n", WAKELINE_VERSION_TEXT);
}

std::string SubcommandProgram(const char* name) {
    return std::string("wakeline-tool ") + name;
}

std::optional<int> ParseSubcommand(QCommandLineParser& parser, const Arguments& args,
                                   const char* name, const char* help) {
    const CommandLineRequest request = ParseCommandLine(parser, args);
    switch (request.kind) {
        case CommandLineRequest::Kind::Help:
            std::fputs(help, stdout);
            return kExitOk;
        case CommandLineRequest::Kind::Version:
            PrintToolVersion();
            return kExitOk;
        case CommandLineRequest::Kind::UsageError:
            return ReportUsageError(SubcommandProgram(name), request.problem);
        case CommandLineRequest::Kind::Run:
            break;
    }
    return std::nullopt;
}

}  // namespace wakeline::tool
