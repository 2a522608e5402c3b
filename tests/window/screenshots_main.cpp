// wakeline_screenshots OUTDIR REPLAY COMMANDLINE: runs the navigation centre's window on a
// replayed voyage and saves PNGs of the main window at its default and its minimum width, by
// day and by night, of the help window, the tables window and the wind graph (an hour of
// oscillating wind with its fit, at night, and empty), and the battery alarm's window at
// its escalation by day and at night. scripts/screenshots.sh runs it under Xvfb.

#include <QApplication>
#include <QDir>
#include <QTimer>
#include <cmath>
#include <cstdio>

#include "display/window/main_window.h"
#include "display/window/twips.h"
#include "performance/window/tables_window.h"
#include "power/window/power_alarm_window.h"
#include "shell/navigation_centre.h"
#include "shell/window/help_window.h"
#include "shell/window/window_run.h"
#include "wind/window/wind_graph_window.h"

namespace {

bool Save(QWidget& widget, const QString& path) {
    QApplication::processEvents();
    const bool saved = widget.grab().save(path);
    std::printf("%s %s (%dx%d)\n", saved ? "saved" : "FAILED", qPrintable(path), widget.width(),
                widget.height());
    return saved;
}

// An hour of wind oscillating 12 degrees either side of 240 every 8 minutes, with a slower
// swing of the speed and a little deterministic chop, one observation every 10 seconds: what a
// sea breeze over a headland looks like.
wakeline::WindData OscillatingHour() {
    wakeline::WindData history;
    const wakeline::DateTime start = wakeline::DateTimeFromFields({2026, 6, 1, 13, 0, 0});
    unsigned chop = 12345;
    for (int i = 0; i < 360; ++i) {
        chop = chop * 1103515245U + 12345U;
        const double noise = static_cast<double>((chop >> 16) % 1000) / 1000.0 - 0.5;
        const double minutes = i / 6.0;
        const double direction = 240 + 12 * std::sin(2 * M_PI * minutes / 8) + 3 * noise;
        const double speed = 14 + 2.5 * std::sin(2 * M_PI * minutes / 23) + noise;
        wakeline::AddWindObservation(history, static_cast<float>(speed),
                                     static_cast<float>(direction), start + i * 10.0 / 86400.0, 1);
    }
    return history;
}

int SaveWindGraphs(const QDir& out, const QPalette& night) {
    int failures = 0;
    const wakeline::WindData history = OscillatingHour();
    wakeline::WindGraphWindow graph(history, wakeline::WindGraphSettings{});
    graph.show();
    graph.Fit();
    failures += Save(graph, out.filePath("wind.png")) ? 0 : 1;
    graph.setPalette(night);
    graph.SetNight(true);
    failures += Save(graph, out.filePath("wind-night.png")) ? 0 : 1;
    const wakeline::WindData empty;
    wakeline::WindGraphWindow none(empty, wakeline::WindGraphSettings{});
    none.show();
    failures += Save(none, out.filePath("wind-empty.png")) ? 0 : 1;
    return failures;
}

// The alarm window at state 1, 1 h 12 min on battery, 7 seconds open, its chime playing.
class AlarmScene : public wakeline::AlarmWindowHost, public wakeline::ChimePlayer {
  public:
    AlarmScene() {
        state_.AlarmState = 1;
        state_.DischargeStart = now_ - 72.0 / 1440.0;
    }
    const wakeline::PowerState& AlarmPowerState() const override { return state_; }
    wakeline::DateTime AlarmNow() const override { return now_; }
    void AcknowledgeAlarm() override {}
    void ShowChimeFailure(const std::string&) override {}
    wakeline::Status PlayChime() override { return {}; }

  private:
    wakeline::DateTime now_ = wakeline::DateTimeFromFields({2026, 6, 1, 21, 30, 0});
    wakeline::PowerState state_;
};

int SaveAlarmWindows(const QDir& out) {
    int failures = 0;
    AlarmScene scene;
    wakeline::NoSoundLevels levels;
    wakeline::WindowPowerAlarm alarm(levels, scene);
    alarm.SetHost(scene);
    alarm.ShowPowerAlarm(scene.AlarmPowerState(), scene.AlarmNow());
    wakeline::PowerAlarmWindow& window = *alarm.Window();
    QApplication::processEvents();  // its activation sets the message again, and the count to 0
    for (int second = 0; second < 7; ++second) {
        window.Timer1_Timer();
    }
    failures += Save(window, out.filePath("alarm-day.png")) ? 0 : 1;
    alarm.SetNight(true);
    failures += Save(window, out.filePath("alarm-night.png")) ? 0 : 1;
    window.hide();
    return failures;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: wakeline_screenshots OUTDIR REPLAY COMMANDLINE\n");
        return 2;
    }
    QApplication app(argc, argv);
    const QDir out(QString::fromLocal8Bit(argv[1]));
    wakeline::ProgramOptions options;
    options.replay = argv[2];
    options.commandLine = argv[3];
    wakeline::WindowRun run(options);
    if (run.Start() >= 0) {
        return 1;
    }
    int failures = 0;
    // A replay from a file is read at once; what it leaves on the screen is the last line.
    QTimer::singleShot(2000, [&] {
        wakeline::MainWindow& window = run.Window();
        const int wide = window.width();
        const int narrow =
            wakeline::TwipsToPixels(wakeline::DisplayLayout::kMinimumWidth, window.Dpi());
        for (const bool night : {false, true}) {
            window.SetNight(night);
            const QString when = night ? "night" : "day";
            window.resize(wide, window.height());
            failures += Save(window, out.filePath("main-" + when + ".png")) ? 0 : 1;
            window.resize(narrow, window.height());
            failures += Save(window, out.filePath("main-" + when + "-narrow.png")) ? 0 : 1;
        }
        window.SetNight(false);
        window.resize(wide, window.height());
        wakeline::HelpWindow* help = run.OpenHelp();
        failures += Save(*help, out.filePath("help.png")) ? 0 : 1;
        help->close();
        QObject::connect(&run, &wakeline::WindowRun::tablesOpened, &run,
                         [&](wakeline::TablesWindow* tables) {
                             QTimer::singleShot(500, tables, [&, tables] {
                                 failures += Save(*tables, out.filePath("tables.png")) ? 0 : 1;
                                 tables->reject();
                             });
                         });
        run.OpenTables();  // returns once the tables window has been saved and closed
        window.SetNight(true);
        const QPalette night = window.palette();
        window.SetNight(false);
        failures += SaveWindGraphs(out, night);
        failures += SaveAlarmWindows(out);
        QCoreApplication::exit(failures == 0 ? 0 : 1);
    });
    return QApplication::exec();
}
