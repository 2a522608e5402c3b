#pragma once
// What the core asks of the user. The window shows dialogs; headless runs write the text to
// standard error and answer OK; tests record the texts and answer as they are told.

#include <optional>
#include <string>

namespace wakeline {

class UserDialogs {
  public:
    virtual ~UserDialogs() = default;
    // A message box with OK only and the program's title; returns when the user answered.
    virtual void ShowMessage(const std::string& text) = 0;
    // A message box with OK and Cancel; true for OK.
    virtual bool AskOkCancel(const std::string& text) = 0;
    // A one-line prompt; empty on Cancel.
    virtual std::optional<std::string> AskText(const std::string& prompt,
                                               const std::string& title) = 0;
};

}  // namespace wakeline
