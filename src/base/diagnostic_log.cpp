#include "base/diagnostic_log.h"

#include <utility>

namespace wakeline {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

// Appends `text` with each CR LF, lone CR or lone LF written as one space.
void AppendOnOneLine(std::string& line, std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            ++i;
        }
        line += c == '\r' || c == '\n' ? ' ' : c;
    }
}

}  // namespace

DiagnosticLog::DiagnosticLog(const ProgramClock& clock, FileSystem& files, UserDialogs& dialogs,
                             std::string path)
    : clock_(clock), files_(files), dialogs_(dialogs), path_(std::move(path)) {}

void DiagnosticLog::DebugWriteLine(std::string_view text, std::int16_t kind) {
    switch (mode_) {
        case kDebugMessageBox:
            if (!IsBlank(text)) {
                dialogs_.ShowMessage(std::string(text));
            }
            return;
        case kDebugLogFile: {
            std::string line;
            if (kind == 0 || kind == 1) {
                line = FormatLogTime(clock_.NowUtc());
                line += ' ';
            }
            if (kind >= 0 && kind <= 3) {
                // One record per line: a message of several lines (a message box's text, a
                // path after a blank line) must not leave lines without a time stamp.
                AppendOnOneLine(line, text);
            }
            if (kind == 0 || kind == 2) {
                line += kLineEnd;
            }
            // Opened, written and closed per line: whatever the program did last is on disk
            // even when it is killed. A kind outside 0..3 still opens and closes the file.
            const Status written = files_.AppendToFile(path_, line);
            if (!written.Ok() && dropped_++ == 0) {
                // Said once, so that a sailor who asked for a log learns why it stays empty;
                // the run itself goes on without it.
                dialogs_.ShowMessage("Diagnostic log cannot be written, its lines are dropped: " +
                                     written.Message());
            }
            return;
        }
        case kDebugSilent:
            if (kind == 0 || kind == 1) {
                // The time is taken and not used: this mode costs a clock read and nothing else.
                static_cast<void>(clock_.NowUtc());
            }
            return;
        default:
            return;
    }
}

}  // namespace wakeline
