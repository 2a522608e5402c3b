#include "base/line_reader.h"

#include <algorithm>
#include <utility>

namespace wakeline {

LineReader::LineReader(LineEnds ends, std::size_t maxLineBytes)
    : ends_(ends), maxLineBytes_(maxLineBytes) {}

std::vector<LineEvent> LineReader::Feed(std::string_view bytes) {
    std::vector<LineEvent> events;
    std::size_t i = 0;
    while (i < bytes.size()) {
        if (heldCr_) {
            // The CR that ended the previous chunk: dropped before an LF, text otherwise.
            heldCr_ = false;
            if (bytes[i] == '\n') {
                EndLine(events);
                ++i;
                continue;
            }
            Append("\r", events);
        }
        if (afterCr_) {
            afterCr_ = false;
            if (bytes[i] == '\n') {
                ++i;
                continue;
            }
        }
        const std::size_t end = bytes.find_first_of("\r\n", i);
        if (end == std::string_view::npos) {
            Append(bytes.substr(i), events);
            break;
        }
        Append(bytes.substr(i, end - i), events);
        if (bytes[end] == '\n') {
            EndLine(events);
        } else if (ends_ == LineEnds::LfCrLfOrCr) {
            EndLine(events);
            afterCr_ = true;
        } else {
            heldCr_ = true;
        }
        i = end + 1;
    }
    return events;
}

std::optional<std::string> LineReader::Finish() {
    std::optional<std::string> last;
    if (heldCr_) {
        std::vector<LineEvent> ignored;
        Append("\r", ignored);
    }
    if (!dropping_ && !pending_.empty()) {
        last = pending_;
    }
    pending_.clear();
    heldCr_ = false;
    afterCr_ = false;
    dropping_ = false;
    return last;
}

void LineReader::Append(std::string_view text, std::vector<LineEvent>& events) {
    if (dropping_ || text.empty()) {
        return;
    }
    if (pending_.size() + text.size() > maxLineBytes_) {
        dropping_ = true;
        pending_.clear();
        events.push_back(LineEvent{LineEvent::Kind::TooLong, {}});
        return;
    }
    const std::size_t needed = pending_.size() + text.size();
    if (needed > pending_.capacity()) {
        // Grown by hand so that the buffer never reserves more than the bound.
        pending_.reserve(std::min(maxLineBytes_, std::max(needed, 2 * pending_.capacity())));
    }
    pending_.append(text);
}

void LineReader::EndLine(std::vector<LineEvent>& events) {
    if (dropping_) {
        dropping_ = false;
        return;
    }
    // A copy, not a move: the pending buffer keeps its reserved room for the next line.
    events.push_back(LineEvent{LineEvent::Kind::Line, pending_});
    pending_.clear();
}

std::vector<std::string> SplitLines(std::string_view text) {
    LineReader reader(LineEnds::LfCrLfOrCr, std::max<std::size_t>(text.size(), 1));
    std::vector<std::string> lines;
    for (LineEvent& event : reader.Feed(text)) {
        lines.push_back(std::move(event.text));
    }
    if (std::optional<std::string> last = reader.Finish()) {
        lines.push_back(std::move(*last));
    }
    return lines;
}

}  // namespace wakeline
