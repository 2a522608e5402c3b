#include "shell/platform/headless_run.h"

#include <unistd.h>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "base/platform/durable_file_system.h"
#include "base/platform/qt_settings_store.h"
#include "base/platform/system_clock.h"
#include "display/terminal_display.h"
#include "livedata/link_endpoint.h"
#include "livedata/platform/program_launcher.h"
#include "livedata/platform/replay_source.h"
#include "livedata/platform/tcp_link.h"
#include "power/platform/system_battery.h"
#include "seatalk/platform/replay_stream.h"
#include "seatalk/platform/serial_port.h"
#include "shell/navigation_centre.h"
#include "shell/platform/headless_power_alarm.h"
#include "shell/platform/signal_watcher.h"
#include "shell/platform/stderr_dialogs.h"
#include "wakeline_version.h"

namespace wakeline {
namespace {

// The program's state directory, $XDG_STATE_HOME/wakeline (~/.local/state/wakeline by default).
std::string StateDirectory() {
    const char* state = std::getenv("XDG_STATE_HOME");
    std::string base;
    if (state != nullptr && state[0] == '/') {
        base = state;
    } else {
        const char* home = std::getenv("HOME");
        base = std::string(home != nullptr ? home : ".") + "/.local/state";
    }
    return base + "/wakeline";
}

std::string DefaultLogPath() {
    return StateDirectory() + "/WakelineDebug.txt";
}

ProgramInfo ThisProgram() {
    ProgramInfo program;
    program.title = WAKELINE_TITLE;
    program.major = WAKELINE_VERSION_MAJOR;
    program.minor = WAKELINE_VERSION_MINOR;
    program.revision = WAKELINE_VERSION_PATCH;
    program.programDir = QCoreApplication::applicationDirPath().toStdString();
    program.programName =
        QFileInfo(QCoreApplication::applicationFilePath()).fileName().toStdString();
    program.dataDir = WAKELINE_DATA_DIR;
    program.homepage = WAKELINE_HOMEPAGE;
    return program;
}

// 8-bit texts reach a UTF-8 terminal as Latin-1 characters.
std::string Latin1ForTerminal(const std::string& bytes) {
    return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()))
        .toUtf8()
        .toStdString();
}

}  // namespace

struct HeadlessRun::Parts {
    Parts(const std::string& logPath, const std::optional<std::string>& powerSupply)
        : battery(powerSupply),
          centre(PlatformServices{clock, files, dialogs, settings, frame, launcher, battery, alarm,
                                  ThisProgram(), logPath, /*dialogsIntoLog=*/true}) {
        // The battery is read inside the run's tick; a failed read is told in the run's log.
        battery.SetFailureReport([this](const Status& failure) {
            centre.DebugWriteLine("Battery: " + failure.Message());
        });
    }

    SystemClock clock;
    DurableFileSystem files;
    StderrDialogs dialogs;
    QtSettingsStore settings;
    DetachedFrame frame;
    ProgramLauncher launcher;
    SystemBattery battery;
    HeadlessPowerAlarm alarm;
    NavigationCentre centre;
    QTimer timer1;
    SignalWatcher termination;
    std::unique_ptr<TcpLink> link;
    std::unique_ptr<ReplaySource> replay;
    std::unique_ptr<SeaTalkSerialPort> serial;
    std::unique_ptr<SeaTalkReplayStream> seaTalkReplay;
    bool drawOnTerminal = false;
    std::string loggedStatus;
    std::string loggedFailure;  // the last connect failure logged
    std::string drawnPowerStatus;
    bool closing = false;
    int exitStatus = 0;  // 1 once the run failed: a source that could not be read
};

HeadlessRun::HeadlessRun(ProgramOptions options, QObject* parent)
    : QObject(parent), options_(std::move(options)) {}

HeadlessRun::~HeadlessRun() = default;

int HeadlessRun::Start() {
    const auto endpoint = ParseLinkEndpoint(options_.link);
    if (!endpoint) {
        std::fprintf(stderr, "wakeline: --link needs HOST:PORT, not '%s'\n", options_.link.c_str());
        return 2;
    }
    const std::string logPath = options_.logPath.value_or(DefaultLogPath());
    // The log's directory is made up front; whether anything is written is the command
    // line's choice. A directory that cannot be made only costs the log lines.
    QDir().mkpath(QFileInfo(QString::fromStdString(logPath)).absolutePath());

    parts_ = std::make_unique<Parts>(logPath, options_.powerSupply);
    NavigationCentre& centre = parts_->centre;
    parts_->drawOnTerminal = ::isatty(STDOUT_FILENO) == 1;
    if (options_.replay) {
        centre.UseReplay();
    }
    if (!centre.FormLoad(options_.commandLine)) {
        return 1;
    }

    connect(&parts_->termination, &SignalWatcher::terminationRequested, this,
            [this] { CloseRun(); });
    connect(&parts_->timer1, &QTimer::timeout, this, [this] { OnTick(); });
    if (centre.State().Timer1Interval > 0) {
        parts_->timer1.start(centre.State().Timer1Interval);
    }

    if (options_.replay) {
        parts_->replay =
            std::make_unique<ReplaySource>(QString::fromStdString(*options_.replay), this);
        ReplaySource* replay = parts_->replay.get();
        connect(replay, &ReplaySource::lineRead, this,
                [this](const QByteArray& line) { OnDataLine(line, true); });
        connect(replay, &ReplaySource::lineDropped, this,
                [this] { parts_->centre.DebugWriteLine("Replay line too long, dropped"); });
        connect(replay, &ReplaySource::finished, this, [this](const QString& problem) {
            if (!problem.isEmpty()) {
                parts_->exitStatus = 1;
                parts_->centre.ShowMessage("Replay ended: " + problem.toStdString());
            }
            CloseRun();
        });
        if (!replay->Start()) {
            parts_->exitStatus = 1;
            parts_->centre.ShowMessage(replay->ErrorText().toStdString());
            CloseRun();
        }
    } else if (centre.SeaTalkPortWanted()) {
        StartSeaTalk();
    } else if (centre.State().DdeMode) {
        parts_->link = std::make_unique<TcpLink>(*endpoint, this);
        TcpLink* link = parts_->link.get();
        connect(link, &TcpLink::connected, this, [this] {
            parts_->centre.OnLinkConnected();
            parts_->loggedFailure.clear();
            parts_->centre.DebugWriteLine("Link to the chart plotter up: " + options_.link);
        });
        connect(link, &TcpLink::connectFailed, this, [this](const Status& failure) {
            // The socket's reason, once per change like the status below.
            if (failure.Message() != parts_->loggedFailure) {
                parts_->loggedFailure = failure.Message();
                parts_->centre.DebugWriteLine("Link to the chart plotter: " +
                                              parts_->loggedFailure);
            }
            const bool closeRun = parts_->centre.OnLinkConnectFailed();
            // Without a window the status text goes to the log, once per change: a plotter
            // that stays away would otherwise add a line ten times a second.
            if (parts_->centre.LinkStatus().text != parts_->loggedStatus) {
                parts_->loggedStatus = parts_->centre.LinkStatus().text;
                parts_->centre.DebugWriteLine("Link status: " + parts_->loggedStatus);
            }
            if (closeRun) {
                // The chart plotter was closed after data: the voyage is over.
                CloseRun();
            }
            Draw();
        });
        connect(link, &TcpLink::closed, this, [this] {
            parts_->centre.OnLinkClosed();
            parts_->loggedStatus.clear();
            parts_->centre.DebugWriteLine("Link to the chart plotter closed");
        });
        connect(link, &TcpLink::lineReceived, this,
                [this](const QByteArray& line) { OnDataLine(line, false); });
        connect(link, &TcpLink::lineDropped, this,
                [this] { parts_->centre.DebugWriteLine("Link line too long, dropped"); });
        connect(link, &TcpLink::unendedLastLine, this, [this] {
            parts_->centre.DebugWriteLine(
                "Link closed after a line without its line end; the line is taken as it is");
        });
    }
    Draw();
    return -1;
}

void HeadlessRun::StartSeaTalk() {
    const auto feed = [this](const QByteArray& bytes) {
        parts_->centre.OnSeaTalkBytes(
            std::span<const std::uint8_t>(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                          static_cast<std::size_t>(bytes.size())));
        Draw();
    };
    if (options_.seaTalkReplay) {
        parts_->seaTalkReplay = std::make_unique<SeaTalkReplayStream>(
            QString::fromStdString(*options_.seaTalkReplay), this);
        SeaTalkReplayStream* stream = parts_->seaTalkReplay.get();
        connect(stream, &SeaTalkReplayStream::bytesReceived, this, feed);
        connect(stream, &SeaTalkReplayStream::finished, this, [this](const QString& problem) {
            parts_->centre.OnSeaTalkEnd();
            if (!problem.isEmpty()) {
                parts_->exitStatus = 1;
                parts_->centre.ShowMessage("SeaTalk replay ended: " + problem.toStdString());
            }
            CloseRun();
        });
        if (!stream->Start()) {
            parts_->exitStatus = 1;
            parts_->centre.ShowMessage("SeaTalk replay cannot be read: " + *options_.seaTalkReplay);
            CloseRun();
        }
        return;
    }
    parts_->serial =
        std::make_unique<SeaTalkSerialPort>(QString::fromStdString(options_.serial), this);
    SeaTalkSerialPort* port = parts_->serial.get();
    connect(port, &SeaTalkSerialPort::bytesReceived, this, feed);
    // A message goes into the log as every message of the run does; the log lines are the rest.
    connect(port, &SeaTalkSerialPort::logLine, this,
            [this](const QString& text) { parts_->centre.DebugWriteLine(text.toStdString()); });
    connect(port, &SeaTalkSerialPort::userMessage, this,
            [this](const QString& text) { parts_->centre.ShowMessage(text.toStdString()); });
    // A port that is not there yet is tried again by the port itself; the run goes on.
    port->Start();
}

void HeadlessRun::OnTick() {
    NavigationCentre& centre = parts_->centre;
    const bool switchLinkOn = centre.Timer1_Timer();
    // Nobody is there to press the alarm window's button: an alarm the check raised is written
    // and counts as noticed now that the check is over.
    if (const auto alarm = parts_->alarm.TakeRaised()) {
        if (!alarm->empty()) {
            centre.ShowMessage(*alarm);
        }
        centre.AcknowledgeAlarm();
    }
    if (switchLinkOn && parts_->link) {
        parts_->link->Connect();
    }
    // The battery line changes between data lines; redraw only when it did.
    if (parts_->drawOnTerminal && centre.Power().StatusText() != parts_->drawnPowerStatus) {
        Draw();
    }
}

void HeadlessRun::OnDataLine(const QByteArray& line, bool replay) {
    if (parts_->closing) {
        return;
    }
    const std::string_view text(line.constData(), static_cast<std::size_t>(line.size()));
    if (replay) {
        parts_->centre.HandleReplayLine(text);
    } else {
        parts_->centre.OnLinkLine(text);
    }
    Draw();
}

void HeadlessRun::CloseRun() {
    if (parts_->closing) {
        return;
    }
    parts_->closing = true;
    // Nobody answers here: the track goes to the disk before a word goes to standard error.
    const CloseOutcome outcome = parts_->centre.CloseUnasked();
    if (outcome.unsavedRecords > 0) {
        SaveUnsaved(outcome);
        parts_->exitStatus = 1;
    }
    parts_->timer1.stop();
    if (parts_->replay) {
        parts_->replay->Stop();
    }
    if (parts_->link) {
        parts_->link->Close();
    }
    if (parts_->serial) {
        parts_->serial->Stop();
    }
    if (parts_->seaTalkReplay) {
        parts_->seaTalkReplay->Stop();
    }
    // Queued, so that a close during start-up (a replay that cannot be opened) still ends the
    // event loop that is about to start; exit() before exec() would be lost.
    const int status = parts_->exitStatus;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [status] { QCoreApplication::exit(status); },
        Qt::QueuedConnection);
}

void HeadlessRun::SaveUnsaved(const CloseOutcome& outcome) {
    const std::string dir = StateDirectory();
    QDir().mkpath(QString::fromStdString(dir));
    const std::string path =
        dir + "/unsaved-" + QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss").toStdString() +
        ".TRT";
    const std::string count = std::to_string(outcome.unsavedRecords);
    const Status saved = parts_->files.AppendDurably(path, outcome.unsavedText);
    if (saved.Ok()) {
        parts_->centre.ShowMessage("The track file cannot be written: " + count +
                                   " records were saved to " + path + " instead.");
    } else {
        parts_->centre.ShowMessage("The track file cannot be written, and " + count +
                                   " records are lost: " + saved.Message());
    }
}

void HeadlessRun::Draw() {
    if (!parts_->drawOnTerminal) {
        return;
    }
    const NavigationCentre& centre = parts_->centre;
    parts_->drawnPowerStatus = centre.Power().StatusText();
    const std::string text = RenderTerminalDisplay(
        centre.Fields(), centre.Display().Captions(), centre.LastDisplay().lastRow,
        {centre.LinkStatus().text, parts_->drawnPowerStatus});
    // Home and clear, then the whole display at once, so that it is redrawn in place.
    const std::string screen = "\x1b[H\x1b[J" + Latin1ForTerminal(text);
    std::fwrite(screen.data(), 1, screen.size(), stdout);
    std::fflush(stdout);
}

}  // namespace wakeline
