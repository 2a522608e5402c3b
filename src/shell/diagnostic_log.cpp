#include "shell/diagnostic_log.h"

#include <utility>

#include "display/number_format.h"
#include "display/text_number.h"

namespace wakeline {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
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
                line += text;
            }
            if (kind == 0 || kind == 2) {
                line += kLineEnd;
            }
            // Opened, written and closed per line: whatever the program did last is on disk
            // even when it is killed. A kind outside 0..3 still opens and closes the file.
            if (!files_.AppendToFile(path_, line)) {
                ++dropped_;
            }
            return;
        }
        case kDebugSilent:
            if (kind == 0 || kind == 1) {
                // The time is taken and not used, as the original log did in this mode.
                static_cast<void>(clock_.NowUtc());
            }
            return;
        default:
            return;
    }
}

std::string LogCleanUp(std::string_view text) {
    if (text.empty()) {
        return "";
    }
    const std::string_view integerPart = text.substr(0, text.find('.'));
    const double value = LeadingNumber(integerPart);
    // The reading's integer digits carry two implied decimals: "123" is 1.23, "45" 4.5.
    double scaled = 0;
    switch (integerPart.size()) {
        case 1:
            scaled = value;
            break;
        case 2:
            scaled = value / 10;
            break;
        case 3:
            scaled = value / 100;
            break;
        default:
            return "";
    }
    return FormatToWidth(static_cast<float>(scaled), "0.00", 0);
}

}  // namespace wakeline
