#pragma once
// The dialogs of a run without windows: every message goes to standard error and is answered
// OK at once. The run also puts them into its log (PlatformServices::dialogsIntoLog).

#include <string>

#include "base/user_dialogs.h"

namespace wakeline {

class StderrDialogs : public UserDialogs {
  public:
    void ShowMessage(const std::string& text) override;
    bool AskOkCancel(const std::string& text) override;  // always OK
    std::optional<std::string> AskText(const std::string& prompt,
                                       const std::string& title) override;  // always Cancel

  private:
    void Write(const std::string& text, const char* answer);
};

}  // namespace wakeline
