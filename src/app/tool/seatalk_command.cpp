// wakeline-tool seatalk: a SeaTalk bus monitor. It reads the byte stream of the SeaTalk port
// (live from a serial device, or recorded in a file) through the same decoding as the
// navigation centre and prints, for every receive event that completed a datagram, the report
// and the data line composed from it.

#include <sys/stat.h>

#include <QCommandLineParser>
#include <QCoreApplication>
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
#include "base/clock.h"
#include "base/platform/system_clock.h"
#include "seatalk/platform/serial_port.h"
#include "seatalk/seatalk_input.h"
#include "shell/platform/signal_watcher.h"

namespace wakeline::tool {
namespace {

constexpr const char* kHelp =
    "usage: wakeline-tool seatalk [--mode SB|SC] [--json] [--capture OUT] FILE|DEVICE|-\n"
    "\n"
    "Reads a SeaTalk byte stream as the serial port delivers it with parity errors marked\n"
    "(a command byte as FF 00 b, a data byte FF as FF FF): from a recorded FILE, from standard\n"
    "input (-), or live from a serial DEVICE (a path under /dev or a character device), which\n"
    "is set to 4800 baud, 8 data bits and space parity and read until Ctrl-C.\n"
    "\n"
    "For every receive event that completed a datagram it prints the report (one line per\n"
    "datagram: the bytes in hex and, after \"m:\", what they say), the data line composed from\n"
    "all values decoded so far, and its time stamp; with --json one object per event:\n"
    "  {\"report\": \"...\", \"line\": \"...\", \"timeStamp\": \"...\"}\n"
    "with the texts as they are (the line ends in \"\\r\\n\"), 8-bit text as Latin-1.\n"
    "\n"
    "options:\n"
    "  --mode SB|SC   how command bytes are recognised (default SC): SC by the parity error\n"
    "                 alone; SB also takes a byte with an odd number of 1 bits\n"
    "  --json         one JSON object per event\n"
    "  --capture OUT  also write the raw stream to OUT, to replay it later\n"
    "  -h, --help     this text\n"
    "  -v, --version  the program's name and version\n"
    "\n"
    "exit status: 0 the stream was read to its end (or Ctrl-C), 1 it could not be read,\n"
    "2 usage error\n";

struct Options {
    std::int16_t mode = kSeaTalkModeSC;
    bool json = false;
    std::optional<std::string> capture;
    std::string source;
};

// The events of one read, printed as they come; also the raw capture.
class Monitor {
  public:
    Monitor(const Options& options, std::FILE* capture)
        : options_(options), capture_(capture), clock_(systemClock_), input_(options.mode) {}

    // False when the capture could not be written.
    bool Feed(std::span<const std::uint8_t> bytes) {
        if (capture_ != nullptr && !bytes.empty()) {
            if (std::fwrite(bytes.data(), 1, bytes.size(), capture_) != bytes.size() ||
                std::fflush(capture_) != 0) {
                return false;
            }
        }
        Print(input_.Feed(bytes, clock_.NowUtc()));
        return true;
    }

    void Finish() { Print(input_.Finish(clock_.NowUtc())); }

    std::optional<std::string> TakePortWarning() { return input_.TakePortWarning(); }

  private:
    void Print(const std::vector<SeaTalkEvent>& events) {
        for (const SeaTalkEvent& event : events) {
            if (options_.json) {
                const nlohmann::ordered_json object = {
                    {"report", Latin1ToUtf8(event.report)},
                    {"line", Latin1ToUtf8(event.line)},
                    {"timeStamp", Latin1ToUtf8(event.timeStamp)}};
                std::puts(object.dump().c_str());
            } else {
                std::string text = event.report + "\r\n" + event.line + event.timeStamp + "\r\n";
                // A terminal's lines end with LF alone.
                std::string plain;
                for (std::size_t i = 0; i < text.size(); ++i) {
                    if (!(text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')) {
                        plain += text[i];
                    }
                }
                std::fwrite(plain.data(), 1, plain.size(), stdout);
                std::fputc('\n', stdout);
            }
        }
        std::fflush(stdout);
    }

    const Options& options_;
    std::FILE* capture_;
    SystemClock systemClock_;
    ProgramClock clock_;
    SeaTalkInput input_;
};

bool IsDevice(const std::string& path) {
    if (path.starts_with("/dev/")) {
        return true;
    }
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISCHR(info.st_mode);
}

int ReadStream(const Options& options, Monitor& monitor) {
    std::FILE* in = options.source == "-" ? stdin : std::fopen(options.source.c_str(), "rb");
    if (in == nullptr) {
        std::fprintf(stderr, "wakeline-tool seatalk: cannot open %s: %s\n", options.source.c_str(),
                     std::strerror(errno));
        return 1;
    }
    std::vector<std::uint8_t> chunk(4096);
    int status = 0;
    for (;;) {
        const std::size_t got = std::fread(chunk.data(), 1, chunk.size(), in);
        if (got > 0 && !monitor.Feed({chunk.data(), got})) {
            std::fprintf(stderr, "wakeline-tool seatalk: cannot write the capture\n");
            status = 1;
            break;
        }
        if (got < chunk.size()) {
            if (std::ferror(in)) {
                std::fprintf(stderr, "wakeline-tool seatalk: cannot read %s\n",
                             options.source.c_str());
                status = 1;
            }
            break;
        }
    }
    monitor.Finish();
    if (in != stdin) {
        std::fclose(in);
    }
    return status;
}

int ReadDevice(const Options& options, Monitor& monitor) {
    BlockTerminationSignals();
    static int argc = 1;
    static char name[] = "wakeline-tool";
    static char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    SignalWatcher watcher;

    if (const auto warning = monitor.TakePortWarning()) {
        std::fprintf(stderr, "%s\n", warning->c_str());
    }
    SeaTalkSerialPort port(QString::fromLocal8Bit(options.source.c_str()));
    int status = 0;
    const auto toStderr = [](const QString& text) {
        std::fprintf(stderr, "wakeline-tool seatalk: %s\n", text.toLocal8Bit().constData());
    };
    // Messages of the opening wait until it is known to have worked: a tool that cannot open
    // its device ends at once instead of trying again as the navigation centre does.
    std::vector<QString> opening;
    bool started = false;
    QObject::connect(&port, &SeaTalkSerialPort::userMessage, [&](const QString& text) {
        if (started) {
            toStderr(text);
        } else {
            opening.push_back(text);
        }
    });
    QObject::connect(&port, &SeaTalkSerialPort::bytesReceived, [&](const QByteArray& bytes) {
        const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
        if (!monitor.Feed({data, std::size_t(bytes.size())})) {
            toStderr(QStringLiteral("cannot write the capture"));
            status = 1;
            app.quit();
        }
    });
    QObject::connect(&watcher, &SignalWatcher::terminationRequested, &app, &QCoreApplication::quit);
    if (const Status opened = port.Start(); !opened.Ok()) {
        port.Stop();
        toStderr(QString::fromStdString(opened.Message()));
        return 1;
    }
    started = true;
    for (const QString& text : opening) {
        toStderr(text);
    }
    app.exec();
    port.Stop();
    return status;
}

}  // namespace

int RunSeaTalk(const Arguments& args) {
    QCommandLineParser parser;
    const QCommandLineOption mode(QStringLiteral("mode"), QString(), QStringLiteral("SB|SC"));
    const QCommandLineOption json(QStringLiteral("json"));
    const QCommandLineOption captureTo(QStringLiteral("capture"), QString(), QStringLiteral("OUT"));
    parser.addOptions({mode, json, captureTo});
    if (const auto status = ParseSubcommand(parser, args, "seatalk", kHelp)) {
        return *status;
    }
    const auto usage = [](const std::string& problem) {
        return ReportUsageError(SubcommandProgram("seatalk"), problem);
    };
    Options options;
    options.json = parser.isSet(json);
    if (parser.isSet(captureTo)) {
        options.capture = Bytes(parser.value(captureTo));
    }
    if (parser.isSet(mode)) {
        const std::string value = Bytes(parser.value(mode));
        if (value == "SB") {
            options.mode = kSeaTalkModeSB;
        } else if (value == "SC") {
            options.mode = kSeaTalkModeSC;
        } else {
            return usage("mode must be SB or SC, not '" + value + "'");
        }
    }
    const QStringList sources = parser.positionalArguments();
    if (sources.isEmpty()) {
        return usage("missing FILE, DEVICE or -");
    }
    if (sources.size() > 1) {
        return usage("unexpected argument '" + Bytes(sources[1]) + "'");
    }
    options.source = Bytes(sources.front());

    std::unique_ptr<std::FILE, int (*)(std::FILE*)> capture(nullptr, &std::fclose);
    if (options.capture) {
        capture.reset(std::fopen(options.capture->c_str(), "wb"));
        if (!capture) {
            std::fprintf(stderr, "wakeline-tool seatalk: cannot write %s: %s\n",
                         options.capture->c_str(), std::strerror(errno));
            return 1;
        }
    }
    Monitor monitor(options, capture.get());
    if (options.source != "-" && IsDevice(options.source)) {
        return ReadDevice(options, monitor);
    }
    return ReadStream(options, monitor);
}

}  // namespace wakeline::tool
