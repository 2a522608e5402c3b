#include "shell/platform/headless_run.h"

#include <unistd.h>
#include <QCoreApplication>
#include <QString>
#include <cstdio>

#include "display/terminal_display.h"
#include "shell/navigation_centre.h"
#include "shell/platform/headless_power_alarm.h"
#include "shell/platform/run_platform.h"
#include "shell/platform/run_sources.h"
#include "shell/platform/signal_watcher.h"
#include "shell/platform/stderr_dialogs.h"

namespace wakeline {
namespace {

// 8-bit texts reach a UTF-8 terminal as Latin-1 characters.
std::string Latin1ForTerminal(const std::string& bytes) {
    return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()))
        .toUtf8()
        .toStdString();
}

}  // namespace

struct HeadlessRun::Parts {
    Parts(const std::string& logPath, const ProgramOptions& options)
        : machine(options),
          alarm(machine.sound.Levels()),
          centre(PlatformServices{machine.clock, machine.files, dialogs, machine.settings, frame,
                                  machine.launcher, machine.battery, alarm, machine.sound.Levels(),
                                  ThisProgram(), logPath,
                                  /*dialogsIntoLog=*/true}),
          sources(centre, options) {
        machine.ReportBatteryFailuresTo(centre);
    }

    MachineParts machine;
    StderrDialogs dialogs;
    DetachedFrame frame;
    HeadlessPowerAlarm alarm;
    NavigationCentre centre;
    RunSources sources;
    SignalWatcher termination;
    bool drawOnTerminal = false;
    std::string drawnPowerStatus;
    bool closing = false;
    int exitStatus = 0;  // 1 once the run failed
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
    parts_ = std::make_unique<Parts>(PrepareLogPath(options_.logPath), options_);
    NavigationCentre& centre = parts_->centre;
    parts_->drawOnTerminal = ::isatty(STDOUT_FILENO) == 1;
    if (options_.replay) {
        centre.UseReplay();
    }
    if (!centre.FormLoad(options_.commandLine)) {
        return 1;
    }
    parts_->machine.WatchSleepFor(centre);

    connect(&parts_->termination, &SignalWatcher::terminationRequested, this,
            [this] { CloseRun(); });
    RunSources& sources = parts_->sources;
    connect(&sources, &RunSources::changed, this, [this] { Draw(); });
    connect(&sources, &RunSources::ticked, this, [this] { OnTick(); });
    // Without a window the end of the data is the end of the run, and a chart plotter closed
    // after data is the end of the voyage: the close is answered OK.
    connect(&sources, &RunSources::sourceEnded, this, [this] { CloseRun(); });
    connect(&sources, &RunSources::linkLostAfterData, this, [this] { CloseRun(); });
    sources.Start(*endpoint);
    Draw();
    return -1;
}

void HeadlessRun::OnTick() {
    NavigationCentre& centre = parts_->centre;
    // Nobody is there to press the alarm window's button: an alarm the check raised is written
    // and counts as noticed now that the check is over.
    if (const auto alarm = parts_->alarm.TakeRaised()) {
        if (!alarm->empty()) {
            centre.ShowMessage(*alarm);
        }
        centre.AcknowledgeAlarm();
    }
    // The battery line changes between data lines; redraw only when it did.
    if (parts_->drawOnTerminal && centre.Power().StatusText() != parts_->drawnPowerStatus) {
        Draw();
    }
}

void HeadlessRun::CloseRun() {
    if (parts_->closing) {
        return;
    }
    parts_->closing = true;
    // Nobody answers here: the track goes to the disk before a word goes to standard error.
    const CloseOutcome outcome = parts_->centre.CloseUnasked();
    parts_->sources.Stop();
    int status = parts_->sources.ExitStatus();
    if (outcome.unsavedRecords > 0) {
        SaveUnsaved(outcome, parts_->machine.files, parts_->centre);
        status = 1;
    }
    // Queued, so that a close during start-up (a replay that cannot be opened) still ends the
    // event loop that is about to start; exit() before exec() would be lost.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [status] { QCoreApplication::exit(status); },
        Qt::QueuedConnection);
}

void HeadlessRun::Draw() {
    if (!parts_->drawOnTerminal || parts_->closing) {
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
