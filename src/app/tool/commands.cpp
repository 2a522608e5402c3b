#include "app/tool/commands.h"

namespace wakeline::tool {

// Each subcommand's file defines its entry point; the table names them in one place.
const std::vector<Command>& AllCommands() {
    static const std::vector<Command> commands = {};
    return commands;
}

}  // namespace wakeline::tool
