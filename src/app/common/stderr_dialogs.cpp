#include "app/common/stderr_dialogs.h"

#include <cstdio>

namespace wakeline {

void StderrDialogs::ShowMessage(const std::string& text) {
    std::fprintf(stderr, "Wakeline: %s\n", text.c_str());
    std::fflush(stderr);
}

bool StderrDialogs::AskOkCancel(const std::string& text) {
    std::fprintf(stderr, "Wakeline: %s [OK]\n", text.c_str());
    std::fflush(stderr);
    return true;
}

std::optional<std::string> StderrDialogs::AskText(const std::string& prompt,
                                                  const std::string& title) {
    std::fprintf(stderr, "Wakeline: %s: %s [Cancel]\n", title.c_str(), prompt.c_str());
    std::fflush(stderr);
    return std::nullopt;
}

}  // namespace wakeline
