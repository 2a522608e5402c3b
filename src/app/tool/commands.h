#pragma once
// The subcommands of wakeline-tool. Each takes the arguments after its own name and returns
// the exit status: 0 success, 1 a failure it reported, 2 a usage error.

#include <string>
#include <vector>

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

}  // namespace wakeline::tool
