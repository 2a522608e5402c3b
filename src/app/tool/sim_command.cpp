// wakeline-tool sim: a live voyage for the navigation centre without a boat. It serves the
// chart plotter's link on the loopback interface, so the navigation centre meets it exactly as
// it meets a chart plotter: it connects, receives a data line whenever the voyage changes,
// and takes the close of the link at the end as the end of the voyage. With --stdout it writes
// the voyage as stamped track records instead, as fast as they are made, for
//   wakeline-tool sim --stdout | wakeline --headless --replay - SETTINGS
//
// The lines belong to simulated times fixed by the options alone (line n at n x speed-up /
// rate seconds), never to when the timer happened to fire, so a seed gives the same lines on a
// busy machine as on an idle one.

#include <signal.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <list>
#include <optional>
#include <string>
#include <string_view>

#include "app/command_line_options.h"
#include "app/tool/commands.h"
#include "base/date_time.h"
#include "livedata/replay_line.h"
#include "livedata/sailing_simulator.h"
#include "shell/platform/signal_watcher.h"

namespace wakeline::tool {
namespace {

constexpr const char* kUsage =
    "usage: wakeline-tool sim [--port N] [--rate HZ] [--speedup K] [--seed S] [--duration S]\n"
    "                         [--stdout]\n"
    "A yacht sails a route of three waypoints (a beat to WINDWARD, a reach to WING, a run to\n"
    "LEEWARD, and round again) in a shifting, gusting breeze, at the speeds of the sail \"Genoa\"\n"
    "of demo/WakelinePolar.txt, tacking and gybing on the laylines. Its data lines are served\n"
    "on 127.0.0.1 as the chart plotter's link: one line, ended by LF, to every connected\n"
    "navigation centre whenever it changes; a new connection gets the present line at once.\n\n"
    "  --port N        the port to serve on (default 20175, the navigation centre's default\n"
    "                  --link; 0: a free port, named on standard error)\n"
    "  --rate HZ       lines a second of real time (default 1; 0.01 to 50)\n"
    "  --speedup K     simulated seconds a second of real time (default 1; up to 3600)\n"
    "  --seed S        the voyage's seed (default 1): the same seed gives the same lines\n"
    "  --duration S    simulated seconds after which the link is closed, which the navigation\n"
    "                  centre takes as the end of the voyage (default: no end; 3600 with\n"
    "                  --stdout)\n"
    "  --stdout        write the lines as track records (\"YYYYMMDD HH:MM:SS CZ,\", the line,\n"
    "                  CR LF; from 20260601 10:00:00 UTC) to standard output as fast as they\n"
    "                  are made, instead of serving them\n"
    "  -h, --help      this text\n"
    "  -v, --version   the program's name and version\n\n"
    "One line on standard error tells where the voyage is served. SIGINT, SIGTERM and SIGHUP\n"
    "close the link and end with status 0. Exit status 1 when the port cannot be served (taken\n"
    "by another program) or standard output fails, 2 for a usage error.\n";

constexpr const char* kProgram = "wakeline-tool sim";
constexpr const char* kStampedStart = "20260601 10:00:00";
constexpr double kStdoutDefaultDuration = 3600;
// A client that has not taken this much is not reading: it is dropped rather than let the
// lines pile up in memory.
constexpr qint64 kMaxClientBacklog = 1024 * 1024;

struct Options {
    quint16 port = 20175;
    double rate = 1;
    double speedup = 1;
    std::uint64_t seed = 1;
    std::optional<double> duration;
    bool toStdout = false;
};

template <typename Number>
std::optional<Number> ParseNumber(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

int UsageError(const std::string& why) {
    return ReportUsageError(SubcommandProgram("sim"), why);
}

// A number of `least` to `most` from `text`, or nothing.
std::optional<double> ParsePositive(const std::string& text, double least, double most) {
    const auto value = ParseNumber<double>(text);
    if (!value || !std::isfinite(*value) || *value < least || *value > most) {
        return std::nullopt;
    }
    return value;
}

// The voyage as stamped track records on standard output, one line per `speedup / rate`
// simulated seconds, the stamps advancing by as much.
int WriteStamped(const Options& options) {
    ::signal(SIGPIPE, SIG_IGN);
    const ReplayLine start = ClassifyReplayLine(std::string(kStampedStart) + " CZ,");
    const double step = options.speedup / options.rate;
    const double duration = options.duration.value_or(kStdoutDefaultDuration);
    SailingSimulator voyage(options.seed);
    std::string text;
    for (std::int64_t n = 0;; ++n) {
        const double seconds = static_cast<double>(n) * step;
        if (seconds >= duration) {
            break;
        }
        voyage.AdvanceTo(seconds);
        text = FormatStampTime(start.time + seconds / kSecondsPerDay) + " CZ,";
        text += voyage.DataLine();
        text += "\r\n";
        if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
            break;
        }
    }
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) {
        return kExitOk;
    }
    if (errno == EPIPE) {
        return kExitOk;  // the reader went away: the voyage simply ends
    }
    std::fprintf(stderr, "%s: cannot write: %s\n", kProgram, std::strerror(errno));
    return kExitFailed;
}

// The link's server: the connected navigation centres and the paced voyage.
class VoyageServer {
  public:
    VoyageServer(const Options& options, QCoreApplication& app)
        : options_(options), app_(app), voyage_(options.seed) {
        tick_.setSingleShot(true);
        tick_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&tick_, &QTimer::timeout, [this] { Tick(); });
        QObject::connect(&server_, &QTcpServer::newConnection, [this] { Accept(); });
    }

    bool Listen() {
        if (!server_.listen(QHostAddress(QHostAddress::LocalHost), options_.port)) {
            std::fprintf(stderr, "%s: cannot serve on 127.0.0.1:%u: %s\n", kProgram,
                         unsigned{options_.port}, server_.errorString().toLocal8Bit().constData());
            return false;
        }
        std::fprintf(stderr,
                     "%s: serving a simulated voyage on 127.0.0.1:%u (%g lines a second, %g "
                     "simulated seconds a second)\n",
                     kProgram, unsigned{server_.serverPort()}, options_.rate, options_.speedup);
        clock_.start();
        Tick();
        return true;
    }

    // Closes the link to every client once what was sent has gone, then ends the loop.
    void Finish() {
        if (finishing_) {
            return;
        }
        finishing_ = true;
        tick_.stop();
        server_.close();
        // A client with nothing left to send is gone at once, out of clients_: walk a copy.
        for (QTcpSocket* client : std::list<QTcpSocket*>(clients_)) {
            client->disconnectFromHost();
        }
        EndWhenAllGone();
        // A client that never takes its last bytes must not hold the end up for ever.
        QTimer::singleShot(5000, &app_, [this] { app_.exit(kExitOk); });
    }

  private:
    void Tick() {
        const double seconds = static_cast<double>(ticks_) * options_.speedup / options_.rate;
        if (options_.duration && seconds >= *options_.duration) {
            Finish();
            return;
        }
        voyage_.AdvanceTo(seconds);
        std::string line = voyage_.DataLine();
        if (line != last_) {
            last_ = std::move(line);
            for (QTcpSocket* client : std::list<QTcpSocket*>(clients_)) {
                Send(client);
            }
        }
        ++ticks_;
        // Deadlines from the start, so that late timers do not add up to drift.
        const auto due =
            static_cast<qint64>(std::llround(static_cast<double>(ticks_) * 1000 / options_.rate));
        tick_.start(static_cast<int>(std::max<qint64>(0, due - clock_.elapsed())));
    }

    void Accept() {
        while (QTcpSocket* client = server_.nextPendingConnection()) {
            if (finishing_) {
                client->disconnectFromHost();
                continue;
            }
            clients_.push_back(client);
            std::fprintf(stderr, "%s: a navigation centre connected from port %u\n", kProgram,
                         unsigned{client->peerPort()});
            QObject::connect(client, &QTcpSocket::disconnected, [this, client] {
                clients_.remove(client);
                client->deleteLater();
                if (finishing_) {
                    EndWhenAllGone();
                }
            });
            // The line of the moment at once, as a chart plotter's item is there to be read.
            if (!last_.empty()) {
                Send(client);
            }
        }
    }

    void Send(QTcpSocket* client) {
        if (client->bytesToWrite() > kMaxClientBacklog) {
            std::fprintf(stderr, "%s: a client on port %u reads nothing, dropped\n", kProgram,
                         unsigned{client->peerPort()});
            client->abort();
            return;
        }
        client->write(last_.data(), static_cast<qint64>(last_.size()));
        client->write("\n", 1);
    }

    void EndWhenAllGone() {
        if (clients_.empty()) {
            app_.exit(kExitOk);
        }
    }

    const Options options_;
    QCoreApplication& app_;
    SailingSimulator voyage_;
    QTcpServer server_;
    QTimer tick_;
    QElapsedTimer clock_;
    std::list<QTcpSocket*> clients_;
    std::string last_;
    std::int64_t ticks_ = 0;
    bool finishing_ = false;
};

int Serve(const Options& options) {
    BlockTerminationSignals();
    ::signal(SIGPIPE, SIG_IGN);
    int argc = 1;
    char name[] = "wakeline-tool";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    VoyageServer server(options, app);
    SignalWatcher watcher;
    QObject::connect(&watcher, &SignalWatcher::terminationRequested,
                     [&server](int) { server.Finish(); });
    if (!server.Listen()) {
        return kExitFailed;
    }
    return app.exec();
}

}  // namespace

int RunSim(const Arguments& args) {
    QCommandLineParser parser;
    const QCommandLineOption port(QStringLiteral("port"), QString(), QStringLiteral("N"));
    const QCommandLineOption rate(QStringLiteral("rate"), QString(), QStringLiteral("HZ"));
    const QCommandLineOption speedup(QStringLiteral("speedup"), QString(), QStringLiteral("K"));
    const QCommandLineOption seed(QStringLiteral("seed"), QString(), QStringLiteral("S"));
    const QCommandLineOption duration(QStringLiteral("duration"), QString(), QStringLiteral("S"));
    const QCommandLineOption toStdout(QStringLiteral("stdout"));
    parser.addOptions({port, rate, speedup, seed, duration, toStdout});
    if (const auto status = ParseSubcommand(parser, args, "sim", kUsage)) {
        return *status;
    }
    if (!parser.positionalArguments().isEmpty()) {
        return UsageError("unexpected argument '" + Bytes(parser.positionalArguments().front()) +
                          "'");
    }
    Options options;
    options.toStdout = parser.isSet(toStdout);
    // Reads a given option into `into`; false (after saying why) when its value does not parse.
    std::string problem;
    const auto read = [&](const QCommandLineOption& option, auto& into, auto parse,
                          const char* needs) {
        if (!parser.isSet(option)) {
            return true;
        }
        const std::string text = Bytes(parser.value(option));
        const auto value = parse(text);
        if (!value) {
            problem =
                "--" + Bytes(option.names().front()) + " needs " + needs + ", not '" + text + "'";
            return false;
        }
        into = *value;
        return true;
    };
    const auto between = [](double least, double most) {
        return [=](const std::string& text) { return ParsePositive(text, least, most); };
    };
    if (!read(port, options.port, ParseNumber<quint16>, "a port number from 0 to 65535") ||
        !read(rate, options.rate, between(0.01, 50), "lines a second from 0.01 to 50") ||
        !read(speedup, options.speedup, between(0.01, 3600), "a factor from 0.01 to 3600") ||
        !read(seed, options.seed, ParseNumber<std::uint64_t>, "a whole number of 0 or more") ||
        !read(duration, options.duration, between(1, 3.0e7),
              "simulated seconds from 1 to 30000000")) {
        return UsageError(problem);
    }
    return options.toStdout ? WriteStamped(options) : Serve(options);
}

}  // namespace wakeline::tool
