#pragma once
// The options of `wakeline` and the words that form its comma-separated command line.

#include <optional>
#include <string>
#include <vector>

#include "shell/platform/run_options.h"

namespace wakeline {

// What the words asked for: the options of a run (help and version are among them), or a usage
// error in one line and the exit status it ends with.
struct ParsedOptions {
    std::optional<ProgramOptions> options;
    std::string error;   // when `options` is empty: the problem, without the program's name
    int exitStatus = 0;  // 2 with an error
};

// `words` are the arguments after the program's name. Options may stand anywhere before "--";
// every other word, and every word after "--", belongs to the command line, joined with single
// spaces. Never throws; bad words give an error.
ParsedOptions ParseProgramOptions(const std::vector<std::string>& words);

// The usage text of --help.
std::string ProgramUsage();

}  // namespace wakeline
