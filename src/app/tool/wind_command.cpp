// wakeline-tool wind: shows a saved wind history ("wakeline_wc.bin") as the wind graph reads it,
// with the recent averages and, on request, the oscillation of the wind direction fitted over the
// whole history, so a sailor can study a shifting breeze after the race or off the boat.

#include <QCommandLineParser>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "app/command_line_options.h"
#include "app/tool/commands.h"
#include "base/date_time.h"
#include "base/file_system.h"
#include "wind/wind_data.h"
#include "wind/wind_file.h"
#include "wind/wind_fit.h"
#include "wind/wind_graph.h"

namespace wakeline::tool {
namespace {

constexpr const char* kUsage =
    "usage: wakeline-tool wind [--json] [--fit] FILE\n"
    "Reads a wind history file (wakeline_wc.bin) and shows its observations oldest first (time\n"
    "UTC as YYYYMMDD HH:MM:SS, speed in knots, direction in degrees, samples averaged into it)\n"
    "and the time-weighted averages of the last 5 and 15 minutes before the newest one. The\n"
    "history is shown whatever its age.\n\n"
    "  --fit          fit a sine to the wind direction over the whole history (periods of 2 to\n"
    "                 60 minutes) and show its period, amplitude, mean direction, goodness of\n"
    "                 fit R2 (0..1) and when the next maximum (veer) and minimum (back) fall\n"
    "                 after the newest observation; a sine explaining less than half of the\n"
    "                 variance is no oscillation\n"
    "  --json         one JSON object: observations (an array of {time, speed, direction,\n"
    "                 samples}), average5 and average15 (such an object, time the newest\n"
    "                 observation's and samples the number averaged; null for an empty\n"
    "                 history) and, with --fit, fit: null when no oscillation fits, otherwise\n"
    "                 {periodMinutes, amplitudeDegrees, meanDirection (0..360), r2,\n"
    "                 nextMaximum, nextMinimum}, times as above\n"
    "  -h, --help     this text\n"
    "  -v, --version  the program's name and version\n\n"
    "Exit status: 0 the file was shown, 1 it could not be read or its contents are unusable\n"
    "(the program would clear such a history), 2 usage error.\n";

struct Options {
    std::string file;
    bool json = false;
    bool fit = false;
};

std::optional<Options> ParseOptions(const Arguments& args, int& status) {
    QCommandLineParser parser;
    const QCommandLineOption json(QStringLiteral("json"));
    const QCommandLineOption fit(QStringLiteral("fit"));
    parser.addOptions({json, fit});
    if (const auto ended = ParseSubcommand(parser, args, "wind", kUsage)) {
        status = *ended;
        return std::nullopt;
    }
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1) {
        status = ReportUsageError(SubcommandProgram("wind"),
                                  files.isEmpty() ? "FILE is missing" : "one FILE only");
        return std::nullopt;
    }
    return Options{Bytes(files.front()), parser.isSet(json), parser.isSet(fit)};
}

// A 32-bit value as the shortest decimal that reads back as the same float.
nlohmann::json JsonNumber(float value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    double shortest = 0.0;
    std::from_chars(buffer, result.ptr, shortest);
    return shortest;
}

nlohmann::json ObservationJson(const WindObservation& o) {
    return {{"time", FormatStampTime(o.Time)},
            {"speed", JsonNumber(o.Speed)},
            {"direction", JsonNumber(o.Direction)},
            {"samples", o.Samples}};
}

double Reduced(double direction) {
    const double d = std::fmod(direction, 360.0);
    return d < 0 ? d + 360.0 : d;
}

nlohmann::json FitJson(const std::optional<SineFit>& fit) {
    if (!fit) {
        return nullptr;
    }
    return {{"periodMinutes", fit->overlay.periodMinutes},
            {"amplitudeDegrees", fit->overlay.amplitudeDegrees},
            {"meanDirection", Reduced(fit->overlay.meanDirection)},
            {"r2", fit->r2},
            {"nextMaximum", FormatStampTime(fit->nextMaximum)},
            {"nextMinimum", FormatStampTime(fit->nextMinimum)}};
}

void PrintAverage(const char* span, const WindObservation& average) {
    std::printf("Average of the last %s: %.1f kt from %.1f deg (%d observations to %s)\n", span,
                average.Speed, average.Direction, average.Samples,
                FormatStampTime(average.Time).c_str());
}

void PrintText(const Options& options, const WindData& history, const std::optional<SineFit>& fit) {
    std::printf("Wind history %s: %d observations\n", options.file.c_str(), history.Count);
    if (history.Count > 0) {
        std::printf("  %-17s %6s %9s %7s\n", "time (UTC)", "kt", "direction", "samples");
    }
    for (int i = 0; i < history.Count; ++i) {
        const WindObservation& o = history.Obs[static_cast<std::size_t>(i)];
        std::printf("  %-17s %6.1f %9.1f %7d\n", FormatStampTime(o.Time).c_str(), o.Speed,
                    o.Direction, o.Samples);
    }
    if (history.Count > 0) {
        PrintAverage("5 minutes", AverageLastMinutes(history, 5));
        PrintAverage("15 minutes", AverageLastMinutes(history, 15));
    }
    if (!options.fit) {
        return;
    }
    if (!fit) {
        std::printf(
            "No oscillation: too few observations, or a sine explains little of the "
            "variance of the direction\n");
        return;
    }
    std::printf(
        "Oscillation: period %.2f min, amplitude %.1f deg, mean direction %.1f deg, "
        "R2 %.3f\n",
        fit->overlay.periodMinutes, fit->overlay.amplitudeDegrees,
        Reduced(fit->overlay.meanDirection), fit->r2);
    std::printf("Next maximum (veer) %s, next minimum (back) %s\n",
                FormatStampTime(fit->nextMaximum).c_str(),
                FormatStampTime(fit->nextMinimum).c_str());
}

}  // namespace

int RunWind(const Arguments& args) {
    int status = 0;
    const std::optional<Options> options = ParseOptions(args, status);
    if (!options) {
        return status;
    }
    StdFileSystem files;
    const Result<std::string> bytes = files.ReadFileStart(options->file, kWindFileSize);
    if (!bytes.Ok()) {
        std::fprintf(stderr, "wakeline-tool wind: %s\n", bytes.GetStatus().Message().c_str());
        return 1;
    }
    const WindDecode decoded = DecodeWindData(bytes.Value());
    if (!decoded.problem.empty()) {
        std::fprintf(stderr, "wakeline-tool wind: %s: %s\n", options->file.c_str(),
                     decoded.problem.c_str());
        return 1;
    }
    const WindData& history = decoded.data;
    std::optional<SineFit> fit;
    if (options->fit && history.Count > 0) {
        fit = FitWindOscillation(history, history.Obs[0].Time);
    }

    if (!options->json) {
        PrintText(*options, history, fit);
        return 0;
    }
    nlohmann::json out;
    nlohmann::json observations = nlohmann::json::array();
    for (int i = 0; i < history.Count; ++i) {
        observations.push_back(ObservationJson(history.Obs[static_cast<std::size_t>(i)]));
    }
    out["observations"] = observations;
    const bool empty = history.Count == 0;
    out["average5"] =
        empty ? nlohmann::json(nullptr) : ObservationJson(AverageLastMinutes(history, 5));
    out["average15"] =
        empty ? nlohmann::json(nullptr) : ObservationJson(AverageLastMinutes(history, 15));
    if (options->fit) {
        out["fit"] = FitJson(fit);
    }
    std::printf("%s\n", out.dump().c_str());
    return 0;
}

}  // namespace wakeline::tool
