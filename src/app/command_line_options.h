#pragma once
// The command-line conventions both programs and every wakeline-tool subcommand share, on top of
// Qt's QCommandLineParser: -h/--help, -v/--version, "--option=value" as well as
// "--option value", "--" ending the options, and a usage error told in one line that names the
// problem plus a pointer to --help, with exit status 2.

#include <QCommandLineParser>
#include <string>
#include <string_view>
#include <vector>

namespace wakeline {

// Exit statuses of both programs.
inline constexpr int kExitOk = 0;          // the run ended normally
inline constexpr int kExitFailed = 1;      // a failure the program reported
inline constexpr int kExitUsageError = 2;  // the words could not be understood

// What a program's words asked for.
struct CommandLineRequest {
    enum class Kind { Run, Help, Version, UsageError };
    Kind kind = Kind::Run;
    std::string problem;  // for UsageError: one line naming it, without the program's name
};

// Adds -h/--help and -v/--version to `parser` (which holds the program's own options) and
// parses `words`, the arguments after the program's or subcommand's name. Help anywhere among
// the options wins over everything else, then the version, then a usage error. Words pass
// through Qt as Latin-1, one character per byte, so that a file name in any encoding comes back
// unchanged from Bytes().
CommandLineRequest ParseCommandLine(QCommandLineParser& parser,
                                    const std::vector<std::string>& words);

// A value or positional argument the parser handed back, as the bytes that were given.
std::string Bytes(const QString& text);

// "PROGRAM: PROBLEM" and "Try 'PROGRAM --help' for more information.", the two lines a usage
// error prints on standard error. `program` is "wakeline" or "wakeline-tool SUBCOMMAND".
std::string UsageErrorText(std::string_view program, std::string_view problem);

// Writes UsageErrorText() to standard error and returns kExitUsageError.
int ReportUsageError(std::string_view program, std::string_view problem);

}  // namespace wakeline
