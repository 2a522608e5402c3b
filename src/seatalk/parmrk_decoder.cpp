#include "seatalk/parmrk_decoder.h"

namespace wakeline {

void ParmrkDecoder::AppendData(std::uint8_t b) {
    if (extents_.empty()) {
        // The first bytes of this read: they continue the open event, or start the stream's
        // first event when no byte came before.
        extents_.push_back({false, !eventOpen_, data_.size(), 0});
        eventOpen_ = true;
    }
    data_.push_back(b);
    ++extents_.back().size;
}

void ParmrkDecoder::StartMarked(std::uint8_t b) {
    extents_.push_back({true, true, data_.size(), 1});
    data_.push_back(b);
    eventOpen_ = true;
}

const std::vector<ReceivePiece>& ParmrkDecoder::Feed(std::span<const std::uint8_t> bytes) {
    data_.clear();
    extents_.clear();
    data_.reserve(bytes.size());
    for (const std::uint8_t b : bytes) {
        switch (pending_) {
            case Pending::None:
                if (b == 0xFF) {
                    pending_ = Pending::Escape;
                } else {
                    AppendData(b);
                }
                break;
            case Pending::Escape:
                if (b == 0xFF) {
                    AppendData(0xFF);
                    pending_ = Pending::None;
                } else if (b == 0x00) {
                    pending_ = Pending::Mark;
                } else {
                    AppendData(0xFF);
                    AppendData(b);
                    pending_ = Pending::None;
                }
                break;
            case Pending::Mark:
                StartMarked(b);
                pending_ = Pending::None;
                break;
        }
    }
    return Seal();
}

const std::vector<ReceivePiece>& ParmrkDecoder::Finish() {
    data_.clear();
    extents_.clear();
    if (pending_ == Pending::Escape) {
        AppendData(0xFF);
    }
    pending_ = Pending::None;
    return Seal();
}

const std::vector<ReceivePiece>& ParmrkDecoder::Seal() {
    // Spans are made only now: data_ no longer grows, so they stay valid.
    pieces_.clear();
    for (const Extent& extent : extents_) {
        pieces_.push_back(
            {extent.parityError, extent.startsEvent,
             std::span<const std::uint8_t>(data_.data() + extent.begin, extent.size)});
    }
    return pieces_;
}

}  // namespace wakeline
