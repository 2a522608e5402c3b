// wakeline-tool polar: reads a polar file the way start-up does and shows what the program
// would make of it, so a sailor can check the file before a race; optionally looks up a
// target speed and the wind corrections, and writes the tables back in the program's layout.
// With --import it adds a sail from a designer's polar grid first, so that the sailor sees the
// table the program makes of the grid before taking it to sea.

#include <QCommandLineParser>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/command_line_options.h"
#include "app/tool/commands.h"
#include "app/tool/latin1.h"
#include "base/clock.h"
#include "base/file_system.h"
#include "base/number_format.h"
#include "base/platform/system_clock.h"
#include "base/text_number.h"
#include "performance/polar_file_reader.h"
#include "performance/polar_file_writer.h"
#include "performance/polar_import.h"
#include "performance/table_defaults.h"
#include "performance/target_speed.h"
#include "performance/wind_correction.h"

namespace wakeline::tool {
namespace {

constexpr const char* kUsage =
    "usage: wakeline-tool polar FILE [--json] [--target TWA,TWS] [--correct TWA,TWS]\n"
    "                           [--write OUT]\n"
    "       wakeline-tool polar [FILE] --import GRID [--name NAME] [--json] [--target TWA,TWS]\n"
    "                           [--correct TWA,TWS] [--write OUT]\n"
    "Reads a polar file (WakelinePolar.txt) as the navigation centre does at start-up, over the\n"
    "default wind corrections, and shows the damping factor, the correction table, the sails'\n"
    "polar tables and the current sail, with every message the program would show.\n\n"
    "  --json             one JSON object: dampingFactor, correction, tables, current (-1 for\n"
    "                     none), messages; texts are 8-bit, carried as Latin-1\n"
    "  --target TWA,TWS   target boat speed of the current sail at a true wind angle (degrees)\n"
    "                     and speed (knots); -1, -2, -3: the table does not cover the point\n"
    "  --correct TWA,TWS  angle and speed corrections of the true wind at that point\n"
    "  --import GRID      add a sail from a polar grid and make it current (without FILE:\n"
    "                     to no tables, the default corrections and no damping). GRID is text:\n"
    "                     a first line of wind speeds (knots, ascending, at most 11) after a\n"
    "                     corner cell such as TWA\\TWS, then lines of a true wind angle\n"
    "                     (degrees, ascending) and the boat speeds (knots) at it; fields\n"
    "                     separated by tabs, semicolons, commas or blanks, '.' as decimal\n"
    "                     point. What was left out of the grid is said on standard error.\n"
    "  --name NAME        the imported sail's name; default GRID's name less its extension\n"
    "  --write OUT        write the tables back to OUT in the program's own layout\n"
    "  -h, --help         this text\n"
    "  -v, --version      the program's name and version\n\n"
    "Exit status: 0 the file read cleanly, 1 it could not be read, reading reported a problem,\n"
    "the grid could not be imported (nothing is written then) or OUT could not be written,\n"
    "2 usage error.\n";

constexpr const char* kClassNames[] = {"Upwind", "Reaching", "Downwind"};

struct WindPoint {
    float angle = 0.0f;
    float speed = 0.0f;
};

struct Options {
    std::string file;  // empty with --import alone: the import starts from no tables
    std::optional<std::string> importFrom;
    std::optional<std::string> name;
    bool json = false;
    std::optional<WindPoint> target;
    std::optional<WindPoint> correct;
    std::optional<std::string> writeTo;
};

std::optional<WindPoint> ParseWindPoint(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view angle = text.substr(0, comma);
    const std::string_view speed = text.substr(comma + 1);
    if (!IsDecimalNumber(angle) || !IsDecimalNumber(speed)) {
        return std::nullopt;
    }
    return WindPoint{static_cast<float>(LeadingNumber(angle)),
                     static_cast<float>(LeadingNumber(speed))};
}

// Empty when the words are not usable; then `status` holds the exit status, after the help,
// the version or the usage error has been printed.
std::optional<Options> ParseOptions(const Arguments& args, int& status) {
    QCommandLineParser parser;
    const QCommandLineOption json(QStringLiteral("json"));
    const QCommandLineOption target(QStringLiteral("target"), QString(), QStringLiteral("TWA,TWS"));
    const QCommandLineOption correct(QStringLiteral("correct"), QString(),
                                     QStringLiteral("TWA,TWS"));
    const QCommandLineOption write(QStringLiteral("write"), QString(), QStringLiteral("OUT"));
    const QCommandLineOption import(QStringLiteral("import"), QString(), QStringLiteral("GRID"));
    const QCommandLineOption name(QStringLiteral("name"), QString(), QStringLiteral("NAME"));
    parser.addOptions({json, target, correct, write, import, name});
    if (const auto ended = ParseSubcommand(parser, args, "polar", kUsage)) {
        status = *ended;
        return std::nullopt;
    }
    auto fail = [&status](const std::string& why) {
        status = ReportUsageError(SubcommandProgram("polar"), why);
        return std::nullopt;
    };
    Options options;
    options.json = parser.isSet(json);
    for (const QCommandLineOption* option : {&target, &correct}) {
        if (!parser.isSet(*option)) {
            continue;
        }
        const std::string value = Bytes(parser.value(*option));
        const std::optional<WindPoint> point = ParseWindPoint(value);
        if (!point) {
            return fail("--" + Bytes(option->names().front()) +
                        " takes TWA,TWS as two numbers, not '" + value + "'");
        }
        (option == &target ? options.target : options.correct) = point;
    }
    if (parser.isSet(write)) {
        options.writeTo = Bytes(parser.value(write));
    }
    if (parser.isSet(import)) {
        options.importFrom = Bytes(parser.value(import));
    }
    if (parser.isSet(name)) {
        if (!options.importFrom) {
            return fail("--name names an imported sail: it needs --import GRID");
        }
        options.name = Bytes(parser.value(name));
    }
    const QStringList files = parser.positionalArguments();
    if (files.isEmpty() && !options.importFrom) {
        return fail("FILE is missing");
    }
    if (files.size() > 1) {
        return fail("one FILE only");
    }
    if (!files.isEmpty()) {
        options.file = Bytes(files.front());
    }
    return options;
}

// A 32-bit value as the shortest decimal that reads back as the same float, so 4.8 stays 4.8
// in JSON instead of the double nearest to the float.
nlohmann::json JsonNumber(float value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    double shortest = 0.0;
    std::from_chars(buffer, result.ptr, shortest);
    return shortest;
}

nlohmann::json JsonLookup(std::optional<float> value) {
    return value ? JsonNumber(*value) : nlohmann::json(nullptr);
}

// Counts of a corrupt file may run past the arrays; only entries that exist are shown.
int Shown(int count, std::size_t arraySize) {
    return std::clamp(count, 0, static_cast<int>(arraySize) - 1);
}

nlohmann::json CorrectionJson(const CorrectionTable& c) {
    const int speeds = Shown(c.SpeedCount, c.WindSpeed.size());
    nlohmann::json windSpeeds = nlohmann::json::array();
    nlohmann::json kt = nlohmann::json::array();
    nlohmann::json limits = nlohmann::json::array();
    for (int j = 1; j <= speeds; ++j) {
        windSpeeds.push_back(JsonNumber(c.WindSpeed[j]));
        kt.push_back(JsonNumber(c.SpeedCorrectionKt[j]));
        limits.push_back(JsonNumber(c.SpeedCorrectionAngle[j]));
    }
    nlohmann::json classes = nlohmann::json::array();
    for (int k = 1; k <= Shown(c.ClassCount, c.AngleCorrection[0].size()); ++k) {
        nlohmann::json corrections = nlohmann::json::array();
        for (int j = 1; j <= speeds; ++j) {
            corrections.push_back(JsonNumber(c.AngleCorrection[j][k]));
        }
        classes.push_back({{"name", kClassNames[k - 1]},
                           {"angle", JsonNumber(c.ClassAngle[k])},
                           {"angleCorrections", corrections}});
    }
    return {{"speedCount", c.SpeedCount}, {"classCount", c.ClassCount},
            {"windSpeeds", windSpeeds},   {"classes", classes},
            {"speedCorrectionKt", kt},    {"speedCorrectionAngle", limits}};
}

nlohmann::json TableJson(const PolarTable& t) {
    nlohmann::json angles = nlohmann::json::array();
    const int columns = Shown(t.ColumnCount, t.ColumnAngle.size());
    for (int c = 1; c <= columns; ++c) {
        angles.push_back(JsonNumber(t.ColumnAngle[c]));
    }
    nlohmann::json rows = nlohmann::json::array();
    nlohmann::json cells = nlohmann::json::array();
    for (int r = 1; r <= Shown(t.RowCount, t.RowWindSpeed.size()); ++r) {
        rows.push_back(
            {{"windSpeed", JsonNumber(t.RowWindSpeed[r])}, {"twaMin", JsonNumber(t.RowTwaMin[r])}});
        nlohmann::json row = nlohmann::json::array();
        for (int c = 0; c <= columns; ++c) {
            row.push_back(JsonNumber(t.Cell[r][c]));
        }
        cells.push_back(row);
    }
    return {
        {"name", Latin1ToUtf8(t.Name)}, {"rowCount", t.RowCount}, {"columnCount", t.ColumnCount},
        {"columnAngles", angles},       {"rows", rows},           {"cells", cells}};
}

const PolarTable* CurrentTable(const PolarSet& set) {
    if (set.Current < 0 || set.Current >= set.Count) {
        return nullptr;
    }
    return &set.Tables[static_cast<std::size_t>(set.Current)];
}

std::string Format(float value, const char* mask, int width) {
    return FormatToWidth(value, mask, static_cast<std::int16_t>(width));
}

std::string LookupText(std::optional<float> value, const char* mask) {
    return value ? Format(*value, mask, 0) : std::string("arithmetic fault in the table");
}

std::string TargetMeaning(float target) {
    if (target == -1.0f) {
        return " (no target: wind speed outside the rows)";
    }
    if (target == -2.0f) {
        return " (no target: angle below the row's TWA_min)";
    }
    if (target == -3.0f) {
        return " (no target: angle beyond the last column)";
    }
    return target > 0.0f ? " kt" : " (no target shown)";
}

void PrintSummary(const Options& options, const PerformanceTables& tables,
                  const PolarReadReport& report) {
    // The path and the messages that carry it are printed as given on the command line; the
    // sails' 8-bit names are turned into UTF-8 for the terminal.
    if (options.file.empty()) {
        std::printf("No polar file: the import starts from no tables\n");
    } else {
        std::printf("Polar file %s\n", options.file.c_str());
    }
    std::printf("Damping factor %s\n", Format(tables.DampingFactor, "0.0000", 0).c_str());

    const CorrectionTable& c = tables.Correction;
    const int speeds = Shown(c.SpeedCount, c.WindSpeed.size());
    std::printf("\nWind correction (%d wind speeds)\n  %-17s", speeds, "TWS kt");
    for (int j = 1; j <= speeds; ++j) {
        std::printf("%s", Format(c.WindSpeed[j], "0.0", 7).c_str());
    }
    for (int k = 1; k <= Shown(c.ClassCount, c.AngleCorrection[0].size()); ++k) {
        std::printf("\n  %-9s to %s ", kClassNames[k - 1], Format(c.ClassAngle[k], "0", 3).c_str());
        for (int j = 1; j <= speeds; ++j) {
            std::printf("%s", Format(c.AngleCorrection[j][k], "0.0", 7).c_str());
        }
    }
    std::printf("\n  %-17s", "corr kt");
    for (int j = 1; j <= speeds; ++j) {
        std::printf("%s", Format(c.SpeedCorrectionKt[j], "0.0", 7).c_str());
    }
    std::printf("\n  %-17s", "corr angle");
    for (int j = 1; j <= speeds; ++j) {
        std::printf("%s", Format(c.SpeedCorrectionAngle[j], "0", 7).c_str());
    }

    const PolarSet& set = tables.Polars;
    const PolarTable* current = CurrentTable(set);
    std::printf("\n\nSails: %d, current: %s\n", set.Count,
                current ? Latin1ToUtf8(current->Name).c_str() : "none (no target speeds shown)");
    for (int p = 0; p < set.Count; ++p) {
        const PolarTable& t = set.Tables[static_cast<std::size_t>(p)];
        const int columns = Shown(t.ColumnCount, t.ColumnAngle.size());
        std::printf("\n%s %s: %d rows, %d angle columns\n    TWS TWA_min   @min",
                    &t == current ? "*" : " ", Latin1ToUtf8(t.Name).c_str(), t.RowCount,
                    t.ColumnCount);
        for (int col = 1; col <= columns; ++col) {
            std::printf("%s", Format(t.ColumnAngle[col], "0", 7).c_str());
        }
        for (int r = 1; r <= Shown(t.RowCount, t.RowWindSpeed.size()); ++r) {
            std::printf("\n  %s%s", Format(t.RowWindSpeed[r], "0.0", 5).c_str(),
                        Format(t.RowTwaMin[r], "0", 8).c_str());
            for (int col = 0; col <= columns; ++col) {
                std::printf("%s", Format(t.Cell[r][col], "0.0", 7).c_str());
            }
        }
        std::printf("\n");
    }

    if (options.target) {
        const WindPoint w = *options.target;
        std::printf("\nTarget at TWA %s, TWS %s kt: ", Format(w.angle, "0.0", 0).c_str(),
                    Format(w.speed, "0.0", 0).c_str());
        if (!current) {
            std::printf("no current sail\n");
        } else {
            const std::optional<float> target = TargetSpeedAt(w.angle, w.speed, *current);
            std::printf("%s%s\n", LookupText(target, "0.00").c_str(),
                        target ? TargetMeaning(*target).c_str() : "");
        }
    }
    if (options.correct) {
        const WindPoint w = *options.correct;
        std::printf("\nCorrections at TWA %s, TWS %s kt: angle %s deg, speed %s kt\n",
                    Format(w.angle, "0.0", 0).c_str(), Format(w.speed, "0.0", 0).c_str(),
                    LookupText(AngleCorrectionAt(w.angle, w.speed, c), "0.00").c_str(),
                    LookupText(SpeedCorrectionAt(w.angle, w.speed, c), "0.00").c_str());
    }

    if (report.messages.empty()) {
        std::printf(options.file.empty() ? "\nNo messages.\n"
                                         : "\nNo messages: the file reads cleanly.\n");
    } else {
        std::printf("\nMessages the program would show:\n");
        for (const std::string& message : report.messages) {
            std::string text = message;
            for (std::size_t at = text.find("\r\n"); at != std::string::npos;
                 at = text.find("\r\n", at)) {
                text.replace(at, 2, "\n    ");
            }
            std::printf("  %s\n", text.c_str());
        }
    }
}

nlohmann::json ReportJson(const Options& options, const PerformanceTables& tables,
                          const PolarReadReport& report) {
    nlohmann::json out;
    out["file"] =
        options.file.empty() ? nlohmann::json(nullptr) : nlohmann::json(Latin1ToUtf8(options.file));
    out["dampingFactor"] = JsonNumber(tables.DampingFactor);
    out["correction"] = CorrectionJson(tables.Correction);
    nlohmann::json sails = nlohmann::json::array();
    for (int p = 0; p < tables.Polars.Count; ++p) {
        sails.push_back(TableJson(tables.Polars.Tables[static_cast<std::size_t>(p)]));
    }
    out["tables"] = sails;
    out["current"] = tables.Polars.Current;
    nlohmann::json messages = nlohmann::json::array();
    for (const std::string& message : report.messages) {
        messages.push_back(Latin1ToUtf8(message));
    }
    out["messages"] = messages;
    if (options.target) {
        const PolarTable* current = CurrentTable(tables.Polars);
        out["target"] =
            current
                ? JsonLookup(TargetSpeedAt(options.target->angle, options.target->speed, *current))
                : nlohmann::json(nullptr);
    }
    if (options.correct) {
        const WindPoint w = *options.correct;
        out["angleCorrection"] = JsonLookup(AngleCorrectionAt(w.angle, w.speed, tables.Correction));
        out["speedCorrection"] = JsonLookup(SpeedCorrectionAt(w.angle, w.speed, tables.Correction));
    }
    return out;
}

// The sail's name when --name is not given: the grid file's name less its extension, or
// "Imported" when that leaves nothing.
std::string DefaultSailName(const std::string& grid) {
    const std::string stem = std::filesystem::path(grid).stem().string();
    return stem.empty() ? std::string("Imported") : stem;
}

// Reads the grid, makes it a table and adds it to `set` as the current sail; the notes of
// what was left out go to standard error. On failure `set` is as it was.
Status ImportInto(const FileSystem& files, const Options& options, PolarSet& set) {
    const std::string& grid = *options.importFrom;
    const Result<std::string> text = files.ReadFile(grid);
    if (!text.Ok()) {
        return text.GetStatus();
    }
    const Result<PolarImport> import =
        ImportPolarGrid(text.Value(), options.name ? *options.name : DefaultSailName(grid));
    if (!import.Ok()) {
        const Status& why = import.GetStatus();
        return Status::Failure(why.Action(), why.Object() + " " + grid, why.Reason());
    }
    const Result<std::string> added = AddImportedTable(set, import.Value().table);
    if (!added.Ok()) {
        return added.GetStatus();
    }
    const std::string notes = import.Value().message + "\n" + added.Value();
    std::size_t start = 0;
    while (start < notes.size()) {
        const std::size_t end = std::min(notes.find('\n', start), notes.size());
        if (end > start) {
            const std::string note = notes.substr(start, end - start);
            std::fprintf(stderr, "wakeline-tool polar: %s: %s\n", grid.c_str(), note.c_str());
        }
        start = end + 1;
    }
    return {};
}

}  // namespace

int RunPolar(const Arguments& args) {
    int status = 0;
    const std::optional<Options> options = ParseOptions(args, status);
    if (!options) {
        return status;
    }

    StdFileSystem files;
    PerformanceTables tables;
    tables.Correction = DefaultCorrectionTable();
    PolarReadReport report;
    if (!options->file.empty()) {
        report = ReadPolarFile(files, options->file, tables);
        if (!report.fileStatus.Ok()) {
            std::fprintf(stderr, "wakeline-tool polar: %s\n", report.fileStatus.Message().c_str());
            return 1;
        }
    }
    if (options->importFrom) {
        const Status imported = ImportInto(files, *options, tables.Polars);
        if (!imported.Ok()) {
            std::fprintf(stderr, "wakeline-tool polar: %s\n", imported.Message().c_str());
            return 1;
        }
    }

    std::optional<Status> written;
    if (options->writeTo) {
        const SystemClock systemClock;
        const ProgramClock clock(systemClock);
        written = WritePolarFile(files, *options->writeTo, tables, clock.NowUtc());
    }

    if (options->json) {
        nlohmann::json out = ReportJson(*options, tables, report);
        if (written) {
            out["written"] = written->Ok();
        }
        std::printf("%s\n", out.dump().c_str());
    } else {
        PrintSummary(*options, tables, report);
        if (written && written->Ok()) {
            std::printf("\nWritten to %s\n", options->writeTo->c_str());
        }
    }
    if (written && !written->Ok()) {
        std::fprintf(stderr, "wakeline-tool polar: %s\n", written->Message().c_str());
        return 1;
    }
    return report.messages.empty() ? 0 : 1;
}

}  // namespace wakeline::tool
