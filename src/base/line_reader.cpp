#include "base/line_reader.h"

#include <algorithm>
#include <utility>

namespace wakeline {
namespace {

// The first CR or LF from `from`. A plain loop: find_first_of calls memchr once per byte.
std::size_t FindLineEnd(std::string_view bytes, std::size_t from) {
    for (std::size_t at = from; at < bytes.size(); ++at) {
        if (bytes[at] == '\n' || bytes[at] == '\r') {
            return at;
        }
    }
    return std::string_view::npos;
}

}  // namespace

LineReader::LineReader(LineEnds ends, std::size_t maxLineBytes)
    : ends_(ends), maxLineBytes_(maxLineBytes) {}

template <typename Emit>
void LineReader::Scan(std::string_view bytes, Emit&& emit) {
    std::size_t i = 0;
    while (i < bytes.size()) {
        if (heldCr_) {
            // The CR that ended the previous chunk: dropped before an LF, text otherwise.
            heldCr_ = false;
            if (bytes[i] == '\n') {
                EndLine(emit);
                ++i;
                continue;
            }
            Append("\r", emit);
        }
        if (afterCr_) {
            afterCr_ = false;
            if (bytes[i] == '\n') {
                ++i;
                continue;
            }
        }
        const std::size_t end = FindLineEnd(bytes, i);
        if (end == std::string_view::npos) {
            Append(bytes.substr(i), emit);
            break;
        }
        const std::string_view text = bytes.substr(i, end - i);
        const bool ends = bytes[end] == '\n' || ends_ == LineEnds::LfCrLfOrCr;
        if (ends && pending_.empty() && !dropping_ && text.size() <= maxLineBytes_) {
            // The whole line lies in this chunk: handed out without passing through the buffer.
            emit(LineEvent::Kind::Line, text);
        } else {
            Append(text, emit);
            if (ends) {
                EndLine(emit);
            }
        }
        afterCr_ = bytes[end] == '\r' && ends_ == LineEnds::LfCrLfOrCr;
        heldCr_ = bytes[end] == '\r' && ends_ == LineEnds::LfOptionalCr;
        i = end + 1;
    }
}

std::vector<LineEvent> LineReader::Feed(std::string_view bytes) {
    std::vector<LineEvent> events;
    Scan(bytes, [&events](LineEvent::Kind kind, std::string_view text) {
        events.push_back(LineEvent{kind, std::string(text)});
    });
    return events;
}

std::optional<std::string> LineReader::Finish() {
    std::optional<std::string> last;
    if (heldCr_) {
        auto ignore = [](LineEvent::Kind, std::string_view) {};
        Append("\r", ignore);
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

template <typename Emit>
void LineReader::Append(std::string_view text, Emit& emit) {
    if (dropping_ || text.empty()) {
        return;
    }
    if (pending_.size() + text.size() > maxLineBytes_) {
        dropping_ = true;
        pending_.clear();
        emit(LineEvent::Kind::TooLong, std::string_view());
        return;
    }
    const std::size_t needed = pending_.size() + text.size();
    if (needed > pending_.capacity()) {
        // Grown by hand so that the buffer never reserves more than the bound.
        pending_.reserve(std::min(maxLineBytes_, std::max(needed, 2 * pending_.capacity())));
    }
    pending_.append(text);
}

template <typename Emit>
void LineReader::EndLine(Emit& emit) {
    if (dropping_) {
        dropping_ = false;
        return;
    }
    // Handed out as a view: the pending buffer keeps its reserved room for the next line.
    emit(LineEvent::Kind::Line, std::string_view(pending_));
    pending_.clear();
}

std::vector<std::string> SplitLines(std::string_view text) {
    LineReader reader(LineEnds::LfCrLfOrCr, std::max<std::size_t>(text.size(), 1));
    std::vector<std::string> lines;
    // No line is over the bound here, so every event is a line.
    reader.Scan(text,
                [&lines](LineEvent::Kind, std::string_view line) { lines.emplace_back(line); });
    if (std::optional<std::string> last = reader.Finish()) {
        lines.push_back(std::move(*last));
    }
    return lines;
}

}  // namespace wakeline
