#include "livedata/line_splitter.h"

#include <utility>

namespace wakeline {

LineSplitter::LineSplitter(LineEnds ends, std::size_t maxLineBytes)
    : ends_(ends), maxLineBytes_(maxLineBytes) {}

std::vector<LineEvent> LineSplitter::Feed(std::string_view bytes) {
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

std::optional<std::string> LineSplitter::Finish() {
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

void LineSplitter::Append(std::string_view text, std::vector<LineEvent>& events) {
    if (dropping_ || text.empty()) {
        return;
    }
    if (pending_.size() + text.size() > maxLineBytes_) {
        dropping_ = true;
        pending_.clear();
        events.push_back(LineEvent{LineEvent::Kind::TooLong, {}});
        return;
    }
    if (pending_.capacity() < maxLineBytes_) {
        // Reserved once, so that appending up to the bound never reallocates past it.
        pending_.reserve(maxLineBytes_);
    }
    pending_.append(text);
}

void LineSplitter::EndLine(std::vector<LineEvent>& events) {
    if (dropping_) {
        dropping_ = false;
        return;
    }
    // A copy, not a move: the pending buffer keeps its reserved room for the next line.
    events.push_back(LineEvent{LineEvent::Kind::Line, pending_});
    pending_.clear();
}

}  // namespace wakeline
