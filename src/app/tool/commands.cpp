#include "app/tool/commands.h"

namespace wakeline::tool {

// Each subcommand's file defines its entry point; the table names them in one place.
int RunPolar(const Arguments& args);

const std::vector<Command>& AllCommands() {
    static const std::vector<Command> commands = {
        {"polar", "check a polar file; target speed and wind correction lookups", RunPolar},
    };
    return commands;
}

}  // namespace wakeline::tool
