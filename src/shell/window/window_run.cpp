#include "shell/window/window_run.h"

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <cstdio>

#include "display/window/main_window.h"
#include "display/window/twips.h"
#include "performance/window/tables_window.h"
#include "power/window/power_alarm_window.h"
#include "shell/navigation_centre.h"
#include "shell/platform/run_platform.h"
#include "shell/platform/run_sources.h"
#include "shell/platform/signal_watcher.h"
#include "shell/window/help_window.h"
#include "shell/window/message_box_dialogs.h"
#include "wind/wind_graph_settings.h"
#include "wind/window/wind_graph_window.h"

namespace wakeline {
namespace {

// The main window as start-up sees it: sizes in twips by the screen's logical dots per inch.
class WindowFrame : public MainWindowFrame {
  public:
    explicit WindowFrame(MainWindow& window) : window_(window) {}
    void SetWidth(int twips) override {
        window_.resize(TwipsToPixels(twips, window_.Dpi()), window_.height());
    }
    int Width() const override { return PixelsToTwips(window_.width(), window_.Dpi()); }
    void SetHeight(int twips) override {
        window_.resize(window_.width(), TwipsToPixels(twips, window_.Dpi()));
    }
    int Height() const override { return PixelsToTwips(window_.height(), window_.Dpi()); }
    void SetCaption(const std::string& caption) override {
        window_.setWindowTitle(
            QString::fromLatin1(caption.data(), static_cast<qsizetype>(caption.size())));
    }

  private:
    MainWindow& window_;
};

// The alarm window's side of the run: the battery monitor's state, the run's clock, the
// acknowledgement, and a chime failure told as the run's messages are.
class RunAlarmHost : public AlarmWindowHost {
  public:
    explicit RunAlarmHost(NavigationCentre& centre) : centre_(centre) {}
    const PowerState& AlarmPowerState() const override { return centre_.Power().State(); }
    DateTime AlarmNow() const override { return centre_.NowUtc(); }
    void AcknowledgeAlarm() override { centre_.AcknowledgeAlarm(); }
    void ShowChimeFailure(const std::string& text) override { centre_.ShowMessage(text); }

  private:
    NavigationCentre& centre_;
};

}  // namespace

struct WindowRun::Parts {
    Parts(const std::string& logPath, const ProgramOptions& options, UserDialogs* override)
        : machine(options),
          boxes(QStringLiteral("Wakeline")),
          frame(window),
          alarm(machine.sound.Levels(), machine.sound.Chime()),
          centre(PlatformServices{machine.clock, machine.files,
                                  override != nullptr ? *override : boxes, machine.settings, frame,
                                  machine.launcher, machine.battery, alarm, machine.sound.Levels(),
                                  ThisProgram(), logPath,
                                  /*dialogsIntoLog=*/true}),
          alarmHost(centre),
          sources(centre, options) {
        machine.ReportBatteryFailuresTo(centre);
        alarm.SetHost(alarmHost);
    }

    MachineParts machine;
    MessageBoxDialogs boxes;
    MainWindow window;
    WindowFrame frame;
    WindowPowerAlarm alarm;  // frmPowerAlarm, made at the first alarm
    NavigationCentre centre;
    RunAlarmHost alarmHost;
    RunSources sources;
    SignalWatcher termination;
    QPointer<HelpWindow> help;
    QPointer<WindGraphWindow> graph;
    TablesWindow* tables = nullptr;  // while the tables window is open
    std::uint64_t appliedLayout = 0;
    bool resizing = false;
    bool asking = false;  // "ending trace function" is on the screen
    bool closed = false;
};

WindowRun::WindowRun(ProgramOptions options, UserDialogs* dialogs, QObject* parent)
    : QObject(parent), options_(std::move(options)), dialogsOverride_(dialogs) {}

WindowRun::~WindowRun() {
    // The graph goes with the main window; the run must not hear of it by then.
    if (parts_ && parts_->graph) {
        parts_->graph->disconnect(this);
    }
}

MainWindow& WindowRun::Window() {
    return parts_->window;
}

NavigationCentre& WindowRun::Centre() {
    return parts_->centre;
}

MessageBoxDialogs& WindowRun::MessageBoxes() {
    return parts_->boxes;
}

int WindowRun::Start() {
    const auto endpoint = ParseLinkEndpoint(options_.link);
    if (!endpoint) {
        std::fprintf(stderr, "wakeline: --link needs HOST:PORT, not '%s'\n", options_.link.c_str());
        return 2;
    }
    parts_ = std::make_unique<Parts>(PrepareLogPath(options_.logPath), options_, dialogsOverride_);
    NavigationCentre& centre = parts_->centre;
    MainWindow& window = parts_->window;
    window.setMinimumWidth(TwipsToPixels(DisplayLayout::kMinimumWidth, window.Dpi()));
    if (options_.replay) {
        centre.UseReplay();
    }
    parts_->resizing = true;  // start-up sizes the window itself
    const bool loaded = centre.FormLoad(options_.commandLine);
    parts_->resizing = false;
    if (!loaded) {
        parts_->boxes.WaitForOpenMessages();
        return 1;
    }
    parts_->boxes.SetParentWindow(&window);

    window.SetFields(centre.Fields());
    window.SetNight(centre.State().NightPalette);
    parts_->alarm.SetNight(centre.State().NightPalette);
    parts_->machine.WatchSleepFor(centre);
    window.SetStayOnTop(centre.State().StayOnTop);
    if (centre.State().TablesLocked) {
        window.SetCommandEnabled(CommandButton::Tab, false,
                                 "The tables are locked by the command line");
    } else {
        window.SetCommandEnabled(CommandButton::Tab, true,
                                 "The polar tables, wind corrections and damping");
    }
    window.SetCommandEnabled(CommandButton::Wind, true,
                             "The last hour of true wind, and when it will shift next");
    window.SetCloseHandler([this] { return AskToClose(); });
    connect(&window, &MainWindow::commandClicked, this,
            [this](CommandButton button) { OnCommand(static_cast<int>(button)); });
    connect(&window, &MainWindow::resized, this, [this] { OnResized(); });
    connect(&window, &MainWindow::nightToggled, this, [this](bool on) {
        parts_->centre.SetNightPalette(on);
        parts_->alarm.SetNight(on);
        if (parts_->graph) {
            parts_->graph->setPalette(parts_->window.palette());
            parts_->graph->SetNight(on);
        }
    });
    connect(&window, &MainWindow::stayOnTopToggled, this,
            [this](bool on) { parts_->centre.SetStayOnTop(on); });
    connect(&parts_->termination, &SignalWatcher::terminationRequested, this,
            [this] { CloseUnasked(); });

    RunSources& sources = parts_->sources;
    connect(&sources, &RunSources::changed, this, [this] { Refresh(); });
    connect(&sources, &RunSources::ticked, this, [this] {
        // Ten ticks a second change nothing but the battery line: the rest waits for data.
        parts_->window.ShowPowerStatus(parts_->centre.Power().StatusText());
    });
    // The window stays when the data end: the sailor closes it.
    connect(&sources, &RunSources::sourceEnded, this, [this] { Refresh(); });
    connect(&sources, &RunSources::linkLostAfterData, this, [this] { parts_->window.close(); });

    Refresh();
    window.show();
    sources.Start(*endpoint);
    return -1;
}

void WindowRun::OnCommand(int button) {
    switch (static_cast<CommandButton>(button)) {
        case CommandButton::Help:
            OpenHelp();
            break;
        case CommandButton::Log:
            parts_->centre.CmdLog();
            break;
        case CommandButton::Tab:
            OpenTables();
            break;
        case CommandButton::Wind:
            OpenWindGraph();
            break;
    }
}

void WindowRun::OpenTables() {
    // Modal: the main window waits, while the data keep coming and being recorded.
    const std::unique_ptr<TablesEditor> editor = parts_->centre.OpenTables();
    TablesWindow tables(*editor, &parts_->window);
    parts_->tables = &tables;
    Refresh();
    emit tablesOpened(&tables);
    tables.exec();
    parts_->tables = nullptr;
    const QByteArray damping = tables.DampingField()->text().toLatin1();
    parts_->centre.CloseTables(
        *editor, std::string_view(damping.constData(), static_cast<std::size_t>(damping.size())));
}

WindGraphWindow* WindowRun::OpenWindGraph() {
    NavigationCentre& centre = parts_->centre;
    if (!parts_->graph) {
        auto* graph = new WindGraphWindow(
            centre.WindHistory(), LoadWindGraphSettings(parts_->machine.settings), &parts_->window);
        parts_->graph = graph;
        graph->setPalette(parts_->window.palette());
        graph->SetNight(centre.State().NightPalette);
        // Open: every track record redraws it. Closed (it deletes itself): no more.
        centre.SetWindGraphOpen([graph] { graph->Redraw(); });
        connect(graph, &QObject::destroyed, this, [this] { parts_->centre.SetWindGraphOpen({}); });
        connect(graph, &WindGraphWindow::startChangeRequested, this, [this] {
            if (const auto start = parts_->centre.AskGraphStart(); start && parts_->graph) {
                parts_->graph->SetStart(*start);
            }
        });
        connect(graph, &WindGraphWindow::settingsChanged, this, [this] {
            const Status stored =
                StoreWindGraphSettings(parts_->machine.settings, parts_->graph->Settings());
            if (!stored.Ok()) {
                parts_->centre.DebugWriteLine("Wind graph settings not stored: " +
                                              stored.Message());
            }
        });
    }
    parts_->graph->show();
    parts_->graph->raise();
    return parts_->graph;
}

HelpWindow* WindowRun::OpenHelp() {
    if (!parts_->help) {
        parts_->help = new HelpWindow(parts_->centre.Help(), &parts_->window);
    }
    parts_->help->show();
    parts_->help->raise();
    return parts_->help;
}

void WindowRun::OnResized() {
    if (parts_->resizing || parts_->closed) {
        return;
    }
    parts_->resizing = true;
    parts_->centre.FormResize();
    parts_->resizing = false;
    Refresh();
}

void WindowRun::Refresh() {
    if (parts_->closed) {
        return;
    }
    const NavigationCentre& centre = parts_->centre;
    MainWindow& window = parts_->window;
    if (centre.Layout().Generation() != parts_->appliedLayout) {
        parts_->appliedLayout = centre.Layout().Generation();
        window.ApplyGeometry(centre.Layout().Geometry());
    }
    window.ShowCaptions(centre.Display().Captions());
    window.ShowStatus(centre.LinkStatus().text, centre.LinkStatus().toolTip,
                      centre.LinkStatus().colour);
    window.ShowPowerStatus(centre.Power().StatusText());
    if (parts_->tables != nullptr && !centre.Fields()[kFieldTws].Value.empty()) {
        const DampedWind& wind = centre.Display().Damped();
        parts_->tables->ShowLiveWind(wind.TWA, wind.TWS);
    }
}

bool WindowRun::AskToClose() {
    if (parts_->closed) {
        return true;
    }
    if (parts_->asking) {
        return false;  // the question is open already; a lost link asks only once
    }
    parts_->asking = true;
    const bool ok = parts_->centre.FormUnload();
    parts_->asking = false;
    if (!ok || parts_->closed) {
        return ok;  // Cancel: the run goes on
    }
    Finish(/*askedUser=*/true);
    return true;
}

void WindowRun::CloseUnasked() {
    if (parts_->closed) {
        return;
    }
    // The close's question is put for the log only; a box would hold the close until a click.
    parts_->boxes.AnswerOkUnasked();
    parts_->centre.CloseUnasked();
    Finish(/*askedUser=*/false);
    parts_->window.close();
}

void WindowRun::Finish(bool askedUser) {
    parts_->closed = true;
    parts_->sources.Stop();
    int status = parts_->sources.ExitStatus();
    CloseOutcome unsaved;
    for (const std::string& entry : parts_->centre.Track().PendingRecords()) {
        ++unsaved.unsavedRecords;
        unsaved.unsavedText += entry;
    }
    if (unsaved.unsavedRecords > 0) {
        SaveUnsaved(unsaved, parts_->machine.files, parts_->centre);
        status = 1;
    }
    if (parts_->help) {
        parts_->help->close();
    }
    if (PowerAlarmWindow* alarm = parts_->alarm.Window()) {
        alarm->hide();
    }
    // The sailor who closed the window reads where the records went; a signal's close has
    // nobody to wait for.
    if (askedUser && unsaved.unsavedRecords > 0) {
        parts_->boxes.SetParentWindow(nullptr);
        parts_->boxes.WaitForOpenMessages();
    }
    emit finished(status);
}

}  // namespace wakeline
