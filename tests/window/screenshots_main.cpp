// wakeline_screenshots OUTDIR REPLAY COMMANDLINE: runs the navigation centre's window on a
// replayed voyage and saves PNGs of the main window at its default and its minimum width, by
// day and by night, of the help window and of the tables window. scripts/screenshots.sh runs it
// under Xvfb.

#include <QApplication>
#include <QDir>
#include <QTimer>
#include <cstdio>

#include "display/window/main_window.h"
#include "display/window/twips.h"
#include "performance/window/tables_window.h"
#include "shell/navigation_centre.h"
#include "shell/window/help_window.h"
#include "shell/window/window_run.h"

namespace {

bool Save(QWidget& widget, const QString& path) {
    QApplication::processEvents();
    const bool saved = widget.grab().save(path);
    std::printf("%s %s (%dx%d)\n", saved ? "saved" : "FAILED", qPrintable(path), widget.width(),
                widget.height());
    return saved;
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
        QCoreApplication::exit(failures == 0 ? 0 : 1);
    });
    return QApplication::exec();
}
