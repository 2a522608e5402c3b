// wakeline-tool simulate: a made-up voyage as data lines on standard output, paced like the
// chart plotter's link or as fast as possible, plain or as a recorded track, so that the
// navigation centre can be tried without a chart plotter:
//   wakeline-tool simulate | wakeline --headless --replay - SETTINGS
//
// The reader going away (a broken pipe) and Ctrl-C both end the voyage quietly with status 0:
// in a pipeline the shell sends SIGINT to both programs, and the navigation centre's own close
// must not be spoilt by noise from this end.

#include <signal.h>
#include <time.h>

#include <QCommandLineParser>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "app/command_line_options.h"
#include "app/tool/commands.h"
#include "base/date_time.h"
#include "livedata/replay_line.h"
#include "livedata/voyage_simulator.h"

namespace wakeline::tool {
namespace {

constexpr const char* kUsage =
    "usage: wakeline-tool simulate [--interval SECONDS] [--count N] [--stamped]\n"
    "                              [--start \"YYYYMMDD HH:MM:SS\"]\n"
    "Writes the data lines of a made-up voyage to standard output, one line per second of the\n"
    "voyage: a yacht beating to windward in a shifting breeze, tacking every 15 minutes, with a\n"
    "waypoint to windward from the second minute on. Each line is flushed as it is written.\n\n"
    "  --interval SECONDS  real time between lines (default 1; fractions allowed); 0 writes\n"
    "                      as fast as the reader takes them\n"
    "  --count N           number of lines (N at least 1); default: no end when paced, 3600\n"
    "                      (one hour of voyage) with --interval 0\n"
    "  --stamped           write each line as a track record: \"YYYYMMDD HH:MM:SS CZ,\", the\n"
    "                      line and CR LF, the time advancing one second per line, so the\n"
    "                      output replays as a recorded voyage with its own times\n"
    "  --start TIME        the first record's UTC time with --stamped (default\n"
    "                      \"20260601 10:00:00\")\n"
    "  -h, --help          this text\n"
    "  -v, --version       the program's name and version\n\n"
    "Plain lines end with LF. The voyage ends quietly with status 0 after N lines, on SIGINT or\n"
    "SIGTERM, or when the reader goes away. Exit status 1 when standard output fails\n"
    "otherwise, 2 for a usage error.\n";

constexpr const char* kDefaultStart = "20260601 10:00:00";
constexpr std::int64_t kUnpacedDefaultCount = 3600;

struct Options {
    double interval = 1.0;
    std::optional<std::int64_t> count;
    bool stamped = false;
    DateTime start = 0;
};

// A stamp as a track record starts with it; the replay's own rules decide what is valid.
std::optional<DateTime> ParseStart(std::string_view text) {
    const std::string record = std::string(text) + " CZ,";
    const ReplayLine parsed = ClassifyReplayLine(record);
    if (parsed.kind != ReplayLine::Kind::Stamped || !parsed.text.empty()) {
        return std::nullopt;
    }
    return parsed.time;
}

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

int UsageError(const std::string& why) {
    return ReportUsageError(SubcommandProgram("simulate"), why);
}

// The end of a run: the lines were all written, a signal came, the reader left, or the output
// failed.
enum class Stop { None, Quiet, Failed };

// Waits until `deadline` on the monotonic clock, or until SIGINT or SIGTERM arrive (they are
// blocked, so they wait as pending signals).
Stop WaitUntil(const timespec& deadline, const sigset_t& stopSignals) {
    for (;;) {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        std::int64_t left =
            (deadline.tv_sec - now.tv_sec) * 1000000000LL + (deadline.tv_nsec - now.tv_nsec);
        if (left <= 0) {
            return Stop::None;
        }
        const timespec wait{static_cast<time_t>(left / 1000000000LL),
                            static_cast<long>(left % 1000000000LL)};
        const int got = sigtimedwait(&stopSignals, nullptr, &wait);
        if (got > 0) {
            return Stop::Quiet;
        }
        if (got < 0 && errno != EAGAIN && errno != EINTR) {
            return Stop::Failed;
        }
    }
}

bool SignalPending(const sigset_t& stopSignals) {
    sigset_t pending;
    sigemptyset(&pending);
    sigpending(&pending);
    for (const int number : {SIGINT, SIGTERM}) {
        if (sigismember(&stopSignals, number) && sigismember(&pending, number)) {
            return true;
        }
    }
    return false;
}

Stop Write(const std::string& text) {
    const std::size_t written = std::fwrite(text.data(), 1, text.size(), stdout);
    if (written == text.size() && std::fflush(stdout) == 0) {
        return Stop::None;
    }
    if (errno == EPIPE) {
        return Stop::Quiet;
    }
    std::fprintf(stderr, "wakeline-tool simulate: cannot write: %s\n", std::strerror(errno));
    return Stop::Failed;
}

}  // namespace

int RunSimulate(const Arguments& args) {
    QCommandLineParser parser;
    const QCommandLineOption interval(QStringLiteral("interval"), QString(),
                                      QStringLiteral("SECONDS"));
    const QCommandLineOption count(QStringLiteral("count"), QString(), QStringLiteral("N"));
    const QCommandLineOption stamped(QStringLiteral("stamped"));
    const QCommandLineOption start(QStringLiteral("start"), QString(), QStringLiteral("TIME"));
    parser.addOptions({interval, count, stamped, start});
    if (const auto status = ParseSubcommand(parser, args, "simulate", kUsage)) {
        return *status;
    }
    if (!parser.positionalArguments().isEmpty()) {
        return UsageError("unexpected argument '" + Bytes(parser.positionalArguments().front()) +
                          "'");
    }
    Options options;
    options.start = *ParseStart(kDefaultStart);
    options.stamped = parser.isSet(stamped);
    if (parser.isSet(interval)) {
        const std::string text = Bytes(parser.value(interval));
        const auto value = ParseNumber<double>(text);
        if (!value || !std::isfinite(*value) || *value < 0 || *value > 86400) {
            return UsageError("--interval needs seconds from 0 to 86400, not '" + text + "'");
        }
        options.interval = *value;
    }
    if (parser.isSet(count)) {
        const std::string text = Bytes(parser.value(count));
        const auto value = ParseNumber<std::int64_t>(text);
        if (!value || *value < 1) {
            return UsageError("--count needs a whole number of at least 1, not '" + text + "'");
        }
        options.count = *value;
    }
    if (parser.isSet(start)) {
        const std::string text = Bytes(parser.value(start));
        const auto value = ParseStart(text);
        if (!value) {
            return UsageError("--start needs \"YYYYMMDD HH:MM:SS\", not '" + text + "'");
        }
        options.start = *value;
    }
    const bool paced = options.interval > 0;
    if (!options.count && !paced) {
        options.count = kUnpacedDefaultCount;
    }

    // A reader that went away shows as EPIPE on the write, not as a deadly signal.
    ::signal(SIGPIPE, SIG_IGN);
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    sigprocmask(SIG_BLOCK, &stopSignals, nullptr);

    const auto intervalNs = static_cast<std::int64_t>(std::llround(options.interval * 1e9));
    timespec first{};
    clock_gettime(CLOCK_MONOTONIC, &first);
    VoyageSimulator voyage;
    std::string text;
    Stop stop = Stop::None;
    for (std::int64_t n = 0; !options.count || n < *options.count; ++n) {
        if (paced && n > 0) {
            // Deadlines from the first line, so that slow writes do not add up to drift.
            const std::int64_t since = first.tv_nsec + n * intervalNs;
            const timespec deadline{first.tv_sec + static_cast<time_t>(since / 1000000000LL),
                                    static_cast<long>(since % 1000000000LL)};
            stop = WaitUntil(deadline, stopSignals);
        } else if (SignalPending(stopSignals)) {
            stop = Stop::Quiet;
        }
        if (stop != Stop::None) {
            break;
        }
        text.clear();
        if (options.stamped) {
            text =
                FormatStampTime(options.start + static_cast<double>(n) / kSecondsPerDay) + " CZ,";
        }
        text += voyage.DataLine(n);
        text += options.stamped ? "\r\n" : "\n";
        stop = Write(text);
        if (stop != Stop::None) {
            break;
        }
    }
    return stop == Stop::Failed ? 1 : 0;
}

}  // namespace wakeline::tool
