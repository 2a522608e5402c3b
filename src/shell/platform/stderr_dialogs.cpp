#include "shell/platform/stderr_dialogs.h"

#include <cstdio>

namespace wakeline {

void StderrDialogs::Write(const std::string& text, const char* answer) {
    std::fprintf(stderr, "Wakeline: %s%s\n", text.c_str(), answer);
    std::fflush(stderr);
}

void StderrDialogs::ShowMessage(const std::string& text) {
    Write(text, "");
}

bool StderrDialogs::AskOkCancel(const std::string& text) {
    Write(text, " [OK]");
    return true;
}

std::optional<std::string> StderrDialogs::AskText(const std::string& prompt,
                                                  const std::string& title) {
    Write(title + ": " + prompt, " [Cancel]");
    return std::nullopt;
}

}  // namespace wakeline
