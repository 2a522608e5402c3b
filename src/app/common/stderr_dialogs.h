#pragma once
// The dialogs of a run without windows: every message goes to standard error (and to the
// diagnostic log when one is attached) and is answered OK at once.

#include <string>

#include "shell/user_dialogs.h"

namespace wakeline {

class StderrDialogs : public UserDialogs {
  public:
    void ShowMessage(const std::string& text) override;
    bool AskOkCancel(const std::string& text) override;  // always OK
    std::optional<std::string> AskText(const std::string& prompt,
                                       const std::string& title) override;  // always Cancel
};

}  // namespace wakeline
