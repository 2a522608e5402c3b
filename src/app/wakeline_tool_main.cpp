// wakeline-tool: small command-line companions of the navigation centre that share its core.

#include <QCommandLineParser>
#include <cstdio>
#include <string>
#include <vector>

#include "app/command_line_options.h"
#include "app/tool/commands.h"

namespace {

void PrintOverview(std::FILE* out) {
    std::fprintf(out,
                 "usage: wakeline-tool SUBCOMMAND [OPTIONS]\n"
                 "Companions of the Wakeline navigation centre. Each subcommand has --help.\n\n"
                 "subcommands:\n");
    for (const auto& command : wakeline::tool::AllCommands()) {
        std::fprintf(out, "  %-10s %s\n", command.name, command.summary);
    }
    std::fprintf(out,
                 "\noptions:\n"
                 "  -h, --help     this text (also: wakeline-tool help)\n"
                 "  -v, --version  the program's name and version\n"
                 "\nexit status: 0 success, 1 a failure the subcommand reported, 2 usage error\n");
}

}  // namespace

int main(int argc, char** argv) {
    QCommandLineParser parser;
    // The subcommand's name ends the program's own options: what follows is the subcommand's.
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    const wakeline::CommandLineRequest request =
        wakeline::ParseCommandLine(parser, std::vector<std::string>(argv + 1, argv + argc));
    switch (request.kind) {
        case wakeline::CommandLineRequest::Kind::Help:
            PrintOverview(stdout);
            return wakeline::kExitOk;
        case wakeline::CommandLineRequest::Kind::Version:
            wakeline::tool::PrintToolVersion();
            return wakeline::kExitOk;
        case wakeline::CommandLineRequest::Kind::UsageError:
            return wakeline::ReportUsageError("wakeline-tool", request.problem);
        case wakeline::CommandLineRequest::Kind::Run:
            break;
    }
    const QStringList words = parser.positionalArguments();
    if (words.isEmpty()) {
        PrintOverview(stderr);
        return wakeline::kExitUsageError;
    }
    const std::string name = wakeline::Bytes(words.front());
    if (name == "help") {
        PrintOverview(stdout);
        return wakeline::kExitOk;
    }
    wakeline::tool::Arguments args;
    for (qsizetype i = 1; i < words.size(); ++i) {
        args.push_back(wakeline::Bytes(words[i]));
    }
    for (const auto& command : wakeline::tool::AllCommands()) {
        if (name == command.name) {
            return command.run(args);
        }
    }
    return wakeline::ReportUsageError("wakeline-tool", "unknown subcommand '" + name + "'");
}
