// wakeline: the navigation centre. main() only reads the options and starts the run.

#include <QApplication>
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/command_line_options.h"
#include "app/program_options.h"
#include "shell/platform/headless_run.h"
#include "shell/platform/run_platform.h"
#include "shell/platform/signal_watcher.h"
#include "shell/window/window_run.h"
#include "wakeline_version.h"

int main(int argc, char** argv) {
    // Before any thread exists, so that every thread inherits the blocked signals, and before
    // any file is opened, so that none takes the number of a closed standard stream.
    wakeline::KeepStandardStreamsHarmless();
    wakeline::BlockTerminationSignals();
    const std::vector<std::string> words(argv + 1, argv + argc);
    const wakeline::ParsedOptions parsed = wakeline::ParseProgramOptions(words);
    if (!parsed.options) {
        return wakeline::ReportUsageError("wakeline", parsed.error);
    }
    const wakeline::ProgramOptions& options = *parsed.options;
    if (options.help) {
        std::fputs(wakeline::ProgramUsage().c_str(), stdout);
        return 0;
    }
    if (options.version) {
        std::printf("%s %s\n", WAKELINE_TITLE, WAKELINE_VERSION_TEXT);
        return 0;
    }
    if (!options.headless && wakeline::HasDisplay()) {
        QApplication app(argc, argv);
        // The run ends the program, with its exit status, when its close is through.
        QApplication::setQuitOnLastWindowClosed(false);
        wakeline::WindowRun run(options);
        // Queued, so that a close during start-up still ends the loop about to start.
        QObject::connect(
            &run, &wakeline::WindowRun::finished, &app,
            [](int status) { QCoreApplication::exit(status); }, Qt::QueuedConnection);
        const int status = run.Start();
        return status >= 0 ? status : QApplication::exec();
    }
    if (!options.headless) {
        std::fputs(
            "wakeline: no display ($WAYLAND_DISPLAY and $DISPLAY are not set): running "
            "headless, messages go to standard error\n",
            stderr);
    }
    QCoreApplication app(argc, argv);
    wakeline::HeadlessRun run(options);
    const int status = run.Start();
    return status >= 0 ? status : QCoreApplication::exec();
}
