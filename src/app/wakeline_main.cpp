// wakeline: the navigation centre. main() only wires the platform to the run's core object.

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/common/program_options.h"
#include "app/common/signal_watcher.h"
#include "app/common/stderr_dialogs.h"
#include "shell/navigation_centre.h"
#include "shell/platform/durable_file_system.h"
#include "shell/platform/qt_settings_store.h"
#include "shell/platform/system_clock.h"
#include "wakeline_version.h"

namespace {

std::string DefaultLogPath() {
    const char* state = std::getenv("XDG_STATE_HOME");
    std::string base;
    if (state != nullptr && state[0] == '/') {
        base = state;
    } else {
        const char* home = std::getenv("HOME");
        base = std::string(home != nullptr ? home : ".") + "/.local/state";
    }
    return base + "/wakeline/WakelineDebug.txt";
}

int RunHeadless(const wakeline::ProgramOptions& options, QCoreApplication& app) {
    wakeline::SystemClock clock;
    wakeline::DurableFileSystem files;
    wakeline::StderrDialogs dialogs;
    wakeline::QtSettingsStore settings;
    wakeline::DetachedFrame frame;

    const std::string logPath = options.logPath.value_or(DefaultLogPath());
    // The log's directory is made up front; whether anything is written is the command
    // line's choice. A directory that cannot be made only costs the log lines.
    QDir().mkpath(QFileInfo(QString::fromStdString(logPath)).absolutePath());

    wakeline::ProgramInfo program;
    program.title = WAKELINE_TITLE;
    program.major = WAKELINE_VERSION_MAJOR;
    program.minor = WAKELINE_VERSION_MINOR;
    program.revision = WAKELINE_VERSION_PATCH;
    program.programDir = QCoreApplication::applicationDirPath().toStdString();

    wakeline::NavigationCentre centre(
        wakeline::PlatformServices{clock, files, dialogs, settings, frame, program, logPath});
    dialogs.AttachLog(&centre.Log());

    if (!centre.FormLoad(options.commandLine)) {
        return 1;
    }

    QTimer timer1;
    QObject::connect(&timer1, &QTimer::timeout, [&centre] { centre.Timer1_Timer(); });
    if (centre.State().Timer1Interval > 0) {
        timer1.start(centre.State().Timer1Interval);
    }

    wakeline::SignalWatcher termination;
    QObject::connect(&termination, &wakeline::SignalWatcher::terminationRequested, [&] {
        if (centre.FormUnload()) {
            app.quit();
        }
    });
    return app.exec();
}

}  // namespace

int main(int argc, char** argv) {
    wakeline::BlockTerminationSignals();
    const std::vector<std::string> words(argv + 1, argv + argc);
    const wakeline::ParsedOptions parsed = wakeline::ParseProgramOptions(words);
    if (!parsed.options) {
        std::fprintf(stderr, "wakeline: %s\n%s", parsed.error.c_str(),
                     wakeline::ProgramUsage().c_str());
        return 2;
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
    if (!options.headless) {
        std::fputs("wakeline: this build has no window yet; start it with --headless\n", stderr);
        return 2;
    }
    QCoreApplication app(argc, argv);
    return RunHeadless(options, app);
}
