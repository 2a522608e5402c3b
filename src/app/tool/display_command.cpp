// wakeline-tool display: the texts of the live display for data lines read from standard
// input, one JSON object per line, through the same computation as the navigation centre.

#include <unistd.h>

#include <QCommandLineParser>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/command_line_options.h"
#include "app/tool/commands.h"
#include "app/tool/latin1.h"
#include "base/file_system.h"
#include "base/line_reader.h"
#include "display/display_computation.h"
#include "display/performance_lookup.h"
#include "livedata/field_table.h"
#include "performance/polar_file_reader.h"
#include "performance/table_defaults.h"
#include "performance/table_lookup.h"

namespace wakeline::tool {
namespace {

// A data line is a few hundred bytes; anything far longer is not one.
constexpr std::size_t kMaxLineLength = 65536;

constexpr const char* kHelp =
    "usage: wakeline-tool display [--feet] [--polar FILE]\n"
    "\n"
    "Reads data lines (23 comma-separated fields) from standard input and prints, for each,\n"
    "one JSON object with the texts the live display shows:\n"
    "  {\"shown\": [23 texts, field 0 first], \"lastRow\": 14 or 22}\n"
    "or {\"error\": \"...\"} when the line cannot be displayed (fewer than 23 fields, a value\n"
    "too large). lastRow is 22 when a waypoint field (15 to 21) holds a value.\n"
    "\n"
    "An input line ends at LF, CR LF or CR; it is handled without its ending and nothing is\n"
    "added to it, so the last field (the waypoint name) is shown as it was typed. Lines go\n"
    "through one display in order, as a voyage would. A line longer than 65536 bytes is\n"
    "dropped with an error object. 8-bit texts are carried as Latin-1 characters.\n"
    "\n"
    "options:\n"
    "  --feet         depth arrives in feet and the water speed without its decimal point\n"
    "                 (the navigation centre's \"M\" option)\n"
    "  --polar FILE   damp and correct the wind and show target speeds from a polar file\n"
    "  -h, --help     this text\n"
    "  -v, --version  the program's name and version\n"
    "\n"
    "exit status: 0 every line displayed, 1 some line failed, 2 usage error\n";

struct Options {
    bool feet = false;
    std::optional<std::string> polarPath;
};

// The performance tables of a polar file, for --polar, or the reason they cannot be had.
struct LoadedPerformance {
    std::unique_ptr<PerformanceTables> tables;
    std::unique_ptr<TableLookup> lookup;
    std::string error;
};

// Reads the polar file as start-up does: the correction defaults first, then the file; the
// tables are in use when the file names a current sail. What the reader reports goes to
// standard error, as the window would show it.
LoadedPerformance LoadPerformance(const std::string& path) {
    LoadedPerformance loaded;
    loaded.tables = std::make_unique<PerformanceTables>();
    loaded.tables->Correction = DefaultCorrectionTable();
    StdFileSystem files;
    const PolarReadReport report = ReadPolarFile(files, path, *loaded.tables);
    for (const std::string& message : report.messages) {
        std::fprintf(stderr, "wakeline-tool display: %s\n", message.c_str());
    }
    if (!report.fileStatus.Ok()) {
        loaded.error =
            "--polar " + path + ": the file cannot be read (" + report.fileStatus.Reason() + ")";
        return loaded;
    }
    loaded.lookup = std::make_unique<TableLookup>(*loaded.tables);
    loaded.lookup->SetPolarTablesOn(loaded.tables->Polars.Current >= 0);
    return loaded;
}

void PrintJson(const nlohmann::ordered_json& object) {
    const std::string text = object.dump();
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void PrintError(std::string_view text) {
    PrintJson({{"error", Latin1ToUtf8(text)}});
}

}  // namespace

int RunDisplay(const Arguments& args) {
    QCommandLineParser parser;
    const QCommandLineOption feet(QStringLiteral("feet"));
    const QCommandLineOption polar(QStringLiteral("polar"), QString(), QStringLiteral("FILE"));
    parser.addOption(feet);
    parser.addOption(polar);
    if (const auto status = ParseSubcommand(parser, args, "display", kHelp)) {
        return *status;
    }
    if (!parser.positionalArguments().isEmpty()) {
        return ReportUsageError(
            SubcommandProgram("display"),
            "unexpected argument '" + Bytes(parser.positionalArguments().front()) + "'");
    }
    Options options;
    options.feet = parser.isSet(feet);
    if (parser.isSet(polar)) {
        options.polarPath = Bytes(parser.value(polar));
    }

    FieldTable table;
    InitFieldTable(table);
    DisplayComputation display(table);
    display.SetFeetOption(options.feet);
    LoadedPerformance performance;
    if (options.polarPath) {
        performance = LoadPerformance(*options.polarPath);
        if (!performance.lookup) {
            std::fprintf(stderr, "wakeline-tool display: %s\n", performance.error.c_str());
            return 1;
        }
        display.SetPerformance(performance.lookup.get());
    }

    bool failed = false;
    const auto show = [&](const LineEvent& event) {
        if (event.kind == LineEvent::Kind::TooLong) {
            PrintError("line longer than 65536 bytes dropped");
            failed = true;
            return;
        }
        // The line as read: its ending is gone and no CR LF is added, as for every input line
        // of the tool, so the waypoint name shows without one.
        const DisplayOutcome outcome = display.TraceDisplayLine(event.text);
        if (!outcome.Displayed()) {
            PrintError(outcome.error);
            failed = true;
            return;
        }
        nlohmann::ordered_json shown = nlohmann::ordered_json::array();
        for (const FieldEntry& entry : table) {
            shown.push_back(Latin1ToUtf8(entry.Shown));
        }
        PrintJson({{"shown", std::move(shown)}, {"lastRow", outcome.lastRow}});
    };
    // read() rather than stdio: each line is answered as soon as it has arrived.
    LineReader reader(LineEnds::LfCrLfOrCr, kMaxLineLength);
    std::vector<char> chunk(64 * 1024);
    while (true) {
        const ssize_t got = ::read(STDIN_FILENO, chunk.data(), chunk.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            PrintError(std::string("cannot read standard input: ") + std::strerror(errno));
            failed = true;
            break;
        }
        if (got == 0) {
            break;
        }
        for (const LineEvent& event :
             reader.Feed(std::string_view(chunk.data(), std::size_t(got)))) {
            show(event);
        }
    }
    if (std::optional<std::string> last = reader.Finish()) {
        show(LineEvent{LineEvent::Kind::Line, std::move(*last)});
    }
    return failed ? 1 : 0;
}

}  // namespace wakeline::tool
