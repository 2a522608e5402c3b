#include "display/terminal_display.h"

#include <string_view>

namespace wakeline {
namespace {

constexpr std::size_t kCodeWidth = 9;

void AppendWithoutLineEnds(std::string& out, std::string_view text) {
    for (char c : text) {
        if (c != '\r' && c != '\n') {
            out.push_back(c);
        }
    }
}

}  // namespace

std::string RenderTerminalDisplay(const FieldTable& table,
                                  const std::array<std::string, kFieldCount>& captions,
                                  std::int16_t lastRow, const std::vector<std::string>& status) {
    std::string out;
    const auto rows = static_cast<std::size_t>(lastRow < 22 ? 15 : 23);
    for (std::size_t i = 0; i < rows; ++i) {
        out += table[i].Code;
        if (table[i].Code.size() < kCodeWidth) {
            out.append(kCodeWidth - table[i].Code.size(), ' ');
        }
        AppendWithoutLineEnds(out, captions[i]);
        out += '\n';
    }
    for (const std::string& text : status) {
        std::size_t start = 0;
        while (start < text.size()) {
            std::size_t end = text.find("\r\n", start);
            if (end == std::string::npos) {
                end = text.size();
            }
            if (end > start) {
                AppendWithoutLineEnds(out, std::string_view(text).substr(start, end - start));
                out += '\n';
            }
            start = end + 2;
        }
    }
    return out;
}

}  // namespace wakeline
