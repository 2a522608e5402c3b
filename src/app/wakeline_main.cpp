// wakeline: the navigation centre. main() only reads the options and starts the run.

#include <QCoreApplication>
#include <cstdio>
#include <string>
#include <vector>

#include "app/command_line_options.h"
#include "app/program_options.h"
#include "shell/platform/headless_run.h"
#include "shell/platform/signal_watcher.h"
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
    if (!options.headless) {
        // The words were understood; what is missing is this build's window.
        std::fputs("wakeline: this build has no window yet; start it with --headless\n", stderr);
        return wakeline::kExitFailed;
    }
    QCoreApplication app(argc, argv);
    wakeline::HeadlessRun run(options);
    const int status = run.Start();
    return status >= 0 ? status : QCoreApplication::exec();
}
