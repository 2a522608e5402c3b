#include "app/tool/commands.h"

namespace wakeline::tool {

int RunDisplay(const Arguments& args);
int RunPolar(const Arguments& args);
int RunSeaTalk(const Arguments& args);
int RunSimulate(const Arguments& args);

// Each subcommand's file defines its entry point; the table names them in one place.
const std::vector<Command>& AllCommands() {
    static const std::vector<Command> commands = {
        {"display", "the live display's texts for data lines from standard input", RunDisplay},
        {"polar", "check a polar file, look up target speeds and corrections", RunPolar},
        {"seatalk", "monitor a SeaTalk bus or a recorded stream: datagrams and data lines",
         RunSeaTalk},
        {"simulate", "a made-up voyage as data lines, the demo's data source", RunSimulate},
    };
    return commands;
}

}  // namespace wakeline::tool
