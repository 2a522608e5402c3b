#pragma once
// The options of `wakeline` and the words that form its comma-separated command line.

#include <optional>
#include <string>
#include <vector>

#include "shell/platform/run_options.h"

namespace wakeline {

struct ParsedOptions {
    std::optional<ProgramOptions> options;
    std::string error;  // set when the words could not be understood
};

// Options may stand anywhere before "--"; every other word belongs to the command line.
ParsedOptions ParseProgramOptions(const std::vector<std::string>& words);

// The usage text of --help.
std::string ProgramUsage();

}  // namespace wakeline
