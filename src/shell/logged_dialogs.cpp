#include "shell/logged_dialogs.h"

namespace wakeline {

void LoggedDialogs::Log(const std::string& text) {
    // Only the log file: in mode 1 a log line is a message box itself.
    if (intoLog_ && log_.Mode() == kDebugLogFile) {
        log_.DebugWriteLine(text);
    }
}

void LoggedDialogs::ShowMessage(const std::string& text) {
    dialogs_.ShowMessage(text);
    Log(text);
}

bool LoggedDialogs::AskOkCancel(const std::string& text) {
    const bool ok = dialogs_.AskOkCancel(text);
    Log(text);
    return ok;
}

std::optional<std::string> LoggedDialogs::AskText(const std::string& prompt,
                                                  const std::string& title) {
    std::optional<std::string> answer = dialogs_.AskText(prompt, title);
    Log(title + ": " + prompt);
    return answer;
}

}  // namespace wakeline
