// The command lines of `wakeline` and `wakeline-tool`: what the words ask for, and what a usage
// error prints (one line naming the problem, then a pointer to --help, exit status 2).

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <string>
#include <vector>

#include "app/program_options.h"
#include "wakeline_version.h"

namespace {

using wakeline::ParseProgramOptions;
using wakeline::ProgramOptions;

struct Ran {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs `program` in its own directory, with settings and state there too, and nothing on
// standard input.
Ran RunProgram(const char* program, const std::vector<std::string>& words) {
    QTemporaryDir dir;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_CONFIG_HOME", dir.filePath("config"));
    env.insert("XDG_STATE_HOME", dir.filePath("state"));
    QProcess process;
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(dir.path());
    QStringList arguments;
    for (const std::string& word : words) {
        arguments.append(QString::fromStdString(word));
    }
    process.start(program, arguments);
    process.closeWriteChannel();
    Ran ran;
    if (process.waitForFinished(10000) && process.exitStatus() == QProcess::NormalExit) {
        ran.status = process.exitCode();
    }
    ran.out = process.readAllStandardOutput().toStdString();
    ran.err = process.readAllStandardError().toStdString();
    return ran;
}

std::string Try(const std::string& program) {
    return "Try '" + program + " --help' for more information.\n";
}

// The default options with `change` applied.
template <typename Change>
ProgramOptions With(Change change) {
    ProgramOptions options;
    change(options);
    return options;
}

void ExpectSame(const ProgramOptions& got, const ProgramOptions& want) {
    EXPECT_EQ(got.headless, want.headless);
    EXPECT_EQ(got.help, want.help);
    EXPECT_EQ(got.version, want.version);
    EXPECT_EQ(got.link, want.link);
    EXPECT_EQ(got.replay, want.replay);
    EXPECT_EQ(got.serial, want.serial);
    EXPECT_EQ(got.seaTalkReplay, want.seaTalkReplay);
    EXPECT_EQ(got.logPath, want.logPath);
    EXPECT_EQ(got.powerSupply, want.powerSupply);
    EXPECT_EQ(got.commandLine, want.commandLine);
}

TEST(Options, WakelineWordsGiveTheRunsOptionsOrOneLineUsageError) {
    // Rows: legend, words after the program's name, exit status, and the options of the run
    // (status 0) or the problem the one-line usage error names (status 2).
    struct Row {
        const char* legend;
        std::vector<std::string> words;
        int status;
        ProgramOptions options;
        std::string problem;
    };
    const std::vector<Row> rows = {
        {"no words: the defaults, no window asked for", {}, 0, {}, ""},
        {"-h after --headless is help, not the settings file",
         {"--headless", "-h"},
         0,
         With([](auto& o) { o.help = true; }),
         ""},
        {"-h behind an unknown option is still help",
         {"--bogus", "-h"},
         0,
         With([](auto& o) { o.help = true; }),
         ""},
        {"--help", {"--help"}, 0, With([](auto& o) { o.help = true; }), ""},
        {"-v", {"-v"}, 0, With([](auto& o) { o.version = true; }), ""},
        {"every option with its value given by = or as the next word",
         {"--headless", "--link=10.0.0.2:2000", "--replay", "-", "--serial=/dev/ttyUSB0",
          "--seatalk-replay", "bus.bin", "--log=debug.txt", "--power-supply", "power"},
         0,
         With([](auto& o) {
             o.headless = true;
             o.link = "10.0.0.2:2000";
             o.replay = "-";
             o.serial = "/dev/ttyUSB0";
             o.seaTalkReplay = "bus.bin";
             o.logPath = "debug.txt";
             o.powerSupply = "power";
         }),
         ""},
        {"the words around options join with single spaces; commas stay",
         {"/home/my", "--headless", "boat/SeaClear_2.ini,,600,F"},
         0,
         With([](auto& o) {
             o.headless = true;
             o.commandLine = "/home/my boat/SeaClear_2.ini,,600,F";
         }),
         ""},
        {"a command line of commas only",
         {",,600,F"},
         0,
         With([](auto& o) { o.commandLine = ",,600,F"; }),
         ""},
        {"after -- words with dashes are the command line",
         {"--headless", "--", "-h", "--link"},
         0,
         With([](auto& o) {
             o.headless = true;
             o.commandLine = "-h --link";
         }),
         ""},
        {"unknown long option, named with its dashes", {"--bogus"}, 2, {}, "'--bogus'"},
        {"unknown short option", {"-x", "a.ini"}, 2, {}, "'-x'"},
        {"a value missing at the end", {"a.ini", "--link"}, 2, {}, "'--link'"},
        {"an empty value is no value", {"--log="}, 2, {}, "--log needs a value"},
        {"a switch given a value", {"--headless=yes"}, 2, {}, "'--headless'"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.legend);
        const wakeline::ParsedOptions parsed = ParseProgramOptions(row.words);
        EXPECT_EQ(parsed.exitStatus, row.status);
        if (row.status == 0) {
            ASSERT_TRUE(parsed.options);
            ExpectSame(*parsed.options, row.options);
        } else {
            EXPECT_FALSE(parsed.options);
            EXPECT_NE(parsed.error.find(row.problem), std::string::npos) << parsed.error;
            EXPECT_EQ(parsed.error.find('\n'), std::string::npos) << parsed.error;
        }
    }

    // Rows: legend, words, exit status, a fragment of standard output, standard error exactly
    // (or, after "~", a fragment of it).
    struct ProgramRow {
        const char* legend;
        std::vector<std::string> words;
        int status;
        std::string out;
        std::string err;
    };
    const std::vector<ProgramRow> runs = {
        {"-h prints the usage", {"-h"}, 0, "usage: wakeline [OPTIONS] [COMMAND LINE]\n", ""},
        {"--version", {"--version"}, 0, WAKELINE_TITLE " " WAKELINE_VERSION_TEXT "\n", ""},
        {"an unknown option: one line and the pointer to --help",
         {"--headless", "--bogus"},
         2,
         "",
         "wakeline: Unknown option '--bogus'.\n" + Try("wakeline")},
        {"a missing value",
         {"--headless", "--link"},
         2,
         "",
         "wakeline: Missing value after '--link'.\n" + Try("wakeline")},
        {"no --headless: not a usage error, but no run either",
         {"SeaClear_2.ini"},
         1,
         "",
         "wakeline: this build has no window yet; start it with --headless\n"},
        {"--link=VALUE is taken; the run then fails on the missing settings file",
         {"--link=127.0.0.1:9", "--headless", "missing.ini"},
         1,
         "",
         "~ini file in command line does not exist"},
    };
    for (const ProgramRow& row : runs) {
        SCOPED_TRACE(row.legend);
        const Ran ran = RunProgram(WAKELINE_BINARY, row.words);
        EXPECT_EQ(ran.status, row.status) << ran.err;
        EXPECT_NE(ran.out.find(row.out), std::string::npos) << ran.out;
        if (row.err.starts_with("~")) {
            EXPECT_NE(ran.err.find(row.err.substr(1)), std::string::npos) << ran.err;
            EXPECT_EQ(ran.err.find("Try '"), std::string::npos) << ran.err;
        } else {
            EXPECT_EQ(ran.err, row.err);
        }
    }
}

TEST(Options, ToolAndSubcommandWordsGiveTheirRunOrOneLineUsageError) {
    const std::string polarFile = std::string(WAKELINE_TEST_DATA) + "/polar_file/WakelinePolar.txt";
    // Rows: legend, words after the program's name, exit status, a fragment of standard output
    // (with lines >= 0: that many lines), standard error exactly (or, after "~", a fragment).
    struct Row {
        const char* legend;
        std::vector<std::string> words;
        int status;
        std::string out;
        std::string err;
        int lines = -1;
    };
    const std::string tool = "wakeline-tool";
    const std::vector<Row> rows = {
        {"no subcommand: the overview, as an error", {}, 2, "", "~usage: wakeline-tool SUBCOMMAND"},
        {"-h: the overview", {"-h"}, 0, "usage: wakeline-tool SUBCOMMAND", ""},
        {"help: the overview", {"help"}, 0, "usage: wakeline-tool SUBCOMMAND", ""},
        {"-v", {"-v"}, 0, "wakeline-tool " WAKELINE_VERSION_TEXT "\n", ""},
        {"an unknown subcommand",
         {"nope"},
         2,
         "",
         "wakeline-tool: unknown subcommand 'nope'\n" + Try(tool)},
        {"an unknown option before the subcommand",
         {"--bogus", "simulate"},
         2,
         "",
         "wakeline-tool: Unknown option '--bogus'.\n" + Try(tool)},
        {"simulate takes --count=2", {"simulate", "--count=2", "--interval=0"}, 0, "", "", 2},
        {"simulate -h", {"simulate", "-h"}, 0, "usage: wakeline-tool simulate", ""},
        {"simulate --version", {"simulate", "--version"}, 0, WAKELINE_VERSION_TEXT, ""},
        {"simulate: an unknown option is no missing value",
         {"simulate", "--bogus"},
         2,
         "",
         "wakeline-tool simulate: Unknown option '--bogus'.\n" + Try(tool + " simulate")},
        {"simulate: a missing value",
         {"simulate", "--interval=0", "--count"},
         2,
         "",
         "wakeline-tool simulate: Missing value after '--count'.\n" + Try(tool + " simulate")},
        {"simulate: a count below 1",
         {"simulate", "--interval=0", "--count", "0"},
         2,
         "",
         "wakeline-tool simulate: --count needs a whole number of at least 1, not '0'\n" +
             Try(tool + " simulate")},
        {"display: an unknown option",
         {"display", "--no-such-option"},
         2,
         "",
         "wakeline-tool display: Unknown option '--no-such-option'.\n" + Try(tool + " display")},
        {"display: no positional arguments",
         {"display", "extra"},
         2,
         "",
         "wakeline-tool display: unexpected argument 'extra'\n" + Try(tool + " display")},
        {"polar without FILE",
         {"polar", "--json"},
         2,
         "",
         "wakeline-tool polar: FILE is missing\n" + Try(tool + " polar")},
        {"polar: --target needs TWA,TWS",
         {"polar", polarFile, "--target=71"},
         2,
         "",
         "wakeline-tool polar: --target takes TWA,TWS as two numbers, not '71'\n" +
             Try(tool + " polar")},
        {"polar --help", {"polar", "--help"}, 0, "usage: wakeline-tool polar FILE", ""},
        {"seatalk without a source",
         {"seatalk", "--json"},
         2,
         "",
         "wakeline-tool seatalk: missing FILE, DEVICE or -\n" + Try(tool + " seatalk")},
        {"seatalk: an unknown mode",
         {"seatalk", "--mode", "SX", "-"},
         2,
         "",
         "wakeline-tool seatalk: mode must be SB or SC, not 'SX'\n" + Try(tool + " seatalk")},
        {"seatalk: after -- a dashed word is the file, which does not exist",
         {"seatalk", "--", "-h"},
         1,
         "",
         "~wakeline-tool seatalk: cannot open -h: "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.legend);
        const Ran ran = RunProgram(WAKELINE_TOOL_BINARY, row.words);
        EXPECT_EQ(ran.status, row.status) << ran.err;
        EXPECT_NE(ran.out.find(row.out), std::string::npos) << ran.out;
        if (row.lines >= 0) {
            EXPECT_EQ(std::count(ran.out.begin(), ran.out.end(), '\n'), row.lines);
        }
        if (row.err.starts_with("~")) {
            EXPECT_NE(ran.err.find(row.err.substr(1)), std::string::npos) << ran.err;
        } else {
            EXPECT_EQ(ran.err, row.err);
        }
    }
}

}  // namespace
