#pragma once
// The run's dialogs: each one goes to the platform's dialogs and, where the platform asked for
// it, its text also goes into the diagnostic log while the log writes its file. A run without
// windows wants this: its messages otherwise live only on standard error, which a logger on a
// boat computer does not keep.

#include <optional>
#include <string>

#include "base/diagnostic_log.h"
#include "base/user_dialogs.h"

namespace wakeline {

class LoggedDialogs : public UserDialogs {
  public:
    // Both must outlive this object. `log` must not write through this object (it is given the
    // platform's dialogs), so that a line it cannot write is not logged again.
    LoggedDialogs(UserDialogs& dialogs, DiagnosticLog& log, bool intoLog)
        : dialogs_(dialogs), log_(log), intoLog_(intoLog) {}

    void ShowMessage(const std::string& text) override;
    bool AskOkCancel(const std::string& text) override;
    // Logged as "title: prompt".
    std::optional<std::string> AskText(const std::string& prompt,
                                       const std::string& title) override;

  private:
    void Log(const std::string& text);

    UserDialogs& dialogs_;
    DiagnosticLog& log_;
    bool intoLog_;
};

}  // namespace wakeline
