#pragma once
// The dialogs of a run without windows: every message goes to standard error (and to the
// diagnostic log when it writes a file) and is answered OK at once.

#include <string>

#include "base/diagnostic_log.h"
#include "base/user_dialogs.h"

namespace wakeline {

class StderrDialogs : public UserDialogs {
  public:
    // Messages are also logged while `log` writes its file; `log` must outlive this object.
    void AttachLog(DiagnosticLog* log) { log_ = log; }

    void ShowMessage(const std::string& text) override;
    bool AskOkCancel(const std::string& text) override;  // always OK
    std::optional<std::string> AskText(const std::string& prompt,
                                       const std::string& title) override;  // always Cancel

  private:
    void Write(const std::string& text, const char* answer);
    DiagnosticLog* log_ = nullptr;
};

}  // namespace wakeline
