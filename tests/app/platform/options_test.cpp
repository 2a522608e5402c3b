// The command lines of `wakeline` and `wakeline-tool`: what the words ask for, and what a usage
// error prints (one line naming the problem, then a pointer to --help, exit status 2).

#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <string>
#include <vector>

#include "app/program_options.h"
#include "wakeline_version.h"

namespace {

struct Ran {
    int status = -1;
    std::string out, err;
};

// Runs `program` in a directory of its own, with its settings and state there too.
Ran RunProgram(const char* program, const std::vector<std::string>& words) {
    QTemporaryDir dir;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_CONFIG_HOME", dir.filePath("config"));
    env.insert("XDG_STATE_HOME", dir.filePath("state"));
    // No display: a run without --headless says so and goes on without windows.
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        env.remove(name);
    }
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

// The options that differ from the defaults, in a fixed order.
std::string Describe(const wakeline::ProgramOptions& o) {
    const wakeline::ProgramOptions d;
    std::string s;
    auto add = [&](bool on, const std::string& text) { s += on ? text + " " : ""; };
    add(o.headless, "headless");
    add(o.help, "help");
    add(o.version, "version");
    add(o.link != d.link, "link=" + o.link);
    add(o.replay.has_value(), "replay=" + o.replay.value_or(""));
    add(o.serial != d.serial, "serial=" + o.serial);
    add(o.seaTalkReplay.has_value(), "seatalk-replay=" + o.seaTalkReplay.value_or(""));
    add(o.logPath.has_value(), "log=" + o.logPath.value_or(""));
    add(o.powerSupply.has_value(), "power-supply=" + o.powerSupply.value_or(""));
    add(!o.commandLine.empty(), "[" + o.commandLine + "]");
    return s;
}

// Rows of a program run: legend, words, exit status, a fragment of standard output, and
// standard error: exactly, or after "~" a fragment of it.
struct RunRow {
    const char* legend;
    std::vector<std::string> words;
    int status;
    std::string out, err;
};

void ExpectRuns(const char* program, const std::vector<RunRow>& rows) {
    for (const RunRow& row : rows) {
        SCOPED_TRACE(row.legend);
        const Ran ran = RunProgram(program, row.words);
        EXPECT_EQ(ran.status, row.status) << ran.err;
        EXPECT_NE(ran.out.find(row.out), std::string::npos) << ran.out;
        if (row.err.starts_with("~")) {
            EXPECT_NE(ran.err.find(row.err.substr(1)), std::string::npos) << ran.err;
        } else {
            EXPECT_EQ(ran.err, row.err);
        }
    }
}

std::string Try(const std::string& program) {
    return "Try '" + program + " --help' for more information.\n";
}

TEST(Options, WakelineWordsGiveTheRunsOptionsOrOneLineUsageError) {
    // Legend, words, the options that differ from the defaults, or after "!" a fragment of the
    // one-line usage error.
    const struct {
        const char* legend;
        std::vector<std::string> words;
        std::string result;
    } rows[] = {
        {"-h after --headless is help, not the settings file", {"--headless", "-h"}, "help "},
        {"-h behind an unknown option is still help", {"--bogus", "-h"}, "help "},
        {"-v", {"-v"}, "version "},
        {"values by = or as the next word",
         {"--link=10.0.0.2:2000", "--replay", "-", "--serial=/dev/ttyUSB0", "--seatalk-replay",
          "bus.bin", "--log=debug.txt", "--power-supply", "power"},
         "link=10.0.0.2:2000 replay=- serial=/dev/ttyUSB0 seatalk-replay=bus.bin log=debug.txt "
         "power-supply=power "},
        {"words around options join with single spaces; commas stay",
         {"/home/my", "--headless", "boat/SeaClear_2.ini,,600,F"},
         "headless [/home/my boat/SeaClear_2.ini,,600,F] "},
        {"after -- dashed words are the command line", {"--", "-h", "--link"}, "[-h --link] "},
        {"an unknown option, named with its dashes", {"--bogus"}, "!'--bogus'"},
        {"an empty value is no value", {"--log="}, "!--log needs a value"},
        {"a switch given a value", {"--headless=yes"}, "!'--headless'"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.legend);
        const wakeline::ParsedOptions parsed = wakeline::ParseProgramOptions(row.words);
        if (!row.result.starts_with("!")) {
            EXPECT_EQ(parsed.exitStatus, 0);
            ASSERT_TRUE(parsed.options);
            EXPECT_EQ(Describe(*parsed.options), row.result);
        } else {
            EXPECT_EQ(parsed.exitStatus, 2);
            EXPECT_NE(parsed.error.find(row.result.substr(1)), std::string::npos) << parsed.error;
            EXPECT_EQ(parsed.error.find('\n'), std::string::npos) << parsed.error;
        }
    }

    ExpectRuns(
        WAKELINE_BINARY,
        {
            {"-h", {"-h"}, 0, "usage: wakeline [OPTIONS] [COMMAND LINE]\n", ""},
            {"--version", {"--version"}, 0, WAKELINE_TITLE " " WAKELINE_VERSION_TEXT "\n", ""},
            {"a usage error: one line and the pointer to --help",
             {"--headless", "--link"},
             2,
             "",
             "wakeline: Missing value after '--link'.\n" + Try("wakeline")},
            {"no --headless and no display: said, then the run without windows",
             {"SeaClear_2.ini"},
             1,
             "",
             "~wakeline: no display ($WAYLAND_DISPLAY and $DISPLAY are not set): running headless"},
        });
}

TEST(Options, ToolAndSubcommandWordsGiveTheirRunOrOneLineUsageError) {
    const std::string polar = std::string(WAKELINE_TEST_DATA) + "/polar_file/WakelinePolar.txt";
    const std::string sim = "wakeline-tool simulate";
    ExpectRuns(
        WAKELINE_TOOL_BINARY,
        {
            {"no subcommand: the overview, as an error", {}, 2, "", "~usage: wakeline-tool"},
            {"-h: the overview", {"-h"}, 0, "usage: wakeline-tool SUBCOMMAND", ""},
            {"an unknown subcommand",
             {"nope"},
             2,
             "",
             "wakeline-tool: unknown subcommand 'nope'\n" + Try("wakeline-tool")},
            {"an unknown option is no missing value",
             {"simulate", "--bogus"},
             2,
             "",
             sim + ": Unknown option '--bogus'.\n" + Try(sim)},
            {"a bad value", {"polar", polar, "--target=71"}, 2, "", "~--target takes TWA,TWS"},
            {"a missing argument",
             {"seatalk", "--json"},
             2,
             "",
             "wakeline-tool seatalk: missing FILE, DEVICE or -\n" + Try("wakeline-tool seatalk")},
        });
}

}  // namespace
