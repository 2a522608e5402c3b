#include "app/tool/bounded_line_reader.h"

namespace wakeline::tool {

BoundedLineReader::BoundedLineReader(std::FILE* in, std::size_t maxLength)
    : in_(in), maxLength_(maxLength), buffer_(64 * 1024) {}

bool BoundedLineReader::Fill() {
    filled_ = std::fread(buffer_.data(), 1, buffer_.size(), in_);
    position_ = 0;
    return filled_ != 0;
}

BoundedLineReader::Result BoundedLineReader::Next() {
    line_.clear();
    bool started = false;
    bool tooLong = false;
    const auto finish = [&] {
        return tooLong ? Result{Kind::TooLong, {}} : Result{Kind::Line, line_};
    };
    while (true) {
        if (position_ == filled_ && !Fill()) {
            return started ? finish() : Result{};
        }
        const char c = buffer_[position_++];
        if (skipLineFeed_) {
            skipLineFeed_ = false;
            if (c == '\n') {
                continue;
            }
        }
        if (c == '\n' || c == '\r') {
            skipLineFeed_ = c == '\r';
            return finish();
        }
        started = true;
        if (tooLong) {
            continue;
        }
        if (line_.size() == maxLength_) {
            tooLong = true;
            line_.clear();
            line_.shrink_to_fit();
            continue;
        }
        line_.push_back(c);
    }
}

}  // namespace wakeline::tool
