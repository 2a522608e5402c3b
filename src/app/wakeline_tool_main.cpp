// wakeline-tool: small command-line companions of the navigation centre that share its core.

#include <cstdio>
#include <cstring>
#include <string>

#include "app/tool/commands.h"
#include "wakeline_version.h"

namespace {

void PrintOverview(std::FILE* out) {
    std::fprintf(out,
                 "usage: wakeline-tool SUBCOMMAND [OPTIONS]\n"
                 "Companions of the Wakeline navigation centre. Each subcommand has --help.\n\n"
                 "subcommands:\n");
    for (const auto& command : wakeline::tool::AllCommands()) {
        std::fprintf(out, "  %-10s %s\n", command.name, command.summary);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        PrintOverview(stderr);
        return 2;
    }
    const std::string name = argv[1];
    if (name == "--help" || name == "-h" || name == "help") {
        PrintOverview(stdout);
        return 0;
    }
    if (name == "--version") {
        std::printf("wakeline-tool %s\n", WAKELINE_VERSION_TEXT);
        return 0;
    }
    for (const auto& command : wakeline::tool::AllCommands()) {
        if (name == command.name) {
            return command.run(wakeline::tool::Arguments(argv + 2, argv + argc));
        }
    }
    std::fprintf(stderr, "wakeline-tool: unknown subcommand '%s'\n", name.c_str());
    PrintOverview(stderr);
    return 2;
}
