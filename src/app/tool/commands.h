#pragma once
// The subcommands of wakeline-tool. Each takes the arguments after its own name and returns
// the exit status: 0 success, 1 a failure it reported, 2 a usage error.

#include <optional>
#include <string>
#include <vector>

class QCommandLineParser;

namespace wakeline::tool {

using Arguments = std::vector<std::string>;

// One subcommand: its name, a one-line summary for the overview, and its entry point.
struct Command {
    const char* name;
    const char* summary;
    int (*run)(const Arguments& args);
};

// All subcommands, in the order the overview lists them.
const std::vector<Command>& AllCommands();

// "wakeline-tool VERSION", the answer to -v/--version of the program and each subcommand.
void PrintToolVersion();

// Parses a subcommand's arguments with `parser`, which holds the subcommand's own options.
// Returns the exit status when the subcommand ends here, after printing what is due: `help` on
// standard output for -h/--help (0), the version for -v/--version (0), or a usage error naming
// the problem (2). Returns nothing when the subcommand should run with what `parser` holds.
std::optional<int> ParseSubcommand(QCommandLineParser& parser, const Arguments& args,
                                   const char* name, const char* help);

// The program name a subcommand's usage errors start with: "wakeline-tool NAME".
std::string SubcommandProgram(const char* name);

}  // namespace wakeline::tool
