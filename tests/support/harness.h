#pragma once
// The outside world of a core test in one place: a clock the test sets, files in memory,
// dialogs that record, and a diagnostic log that writes its lines to a file among them.

#include <string>

#include "base/clock.h"
#include "base/diagnostic_log.h"
#include "support/fakes.h"

namespace wakeline::testing {

inline constexpr const char* kLogPath = "/log/WakelineDebug.txt";
// Every log line carries this stamp while the fake clock stands at its start time.
inline constexpr const char* kLogStamp = "15-11-2026 23:42:16 ";

struct Harness {
    Harness() { log.SetMode(kDebugLogFile); }
    // The log file's text, empty before the first line.
    std::string Log() const {
        const auto found = files.files.find(kLogPath);
        return found == files.files.end() ? "" : found->second;
    }

    FakeClock system;
    ProgramClock clock{system};
    FakeFileSystem files;
    RecordingDialogs dialogs;
    DiagnosticLog log{clock, files, dialogs, kLogPath};
};

}  // namespace wakeline::testing
