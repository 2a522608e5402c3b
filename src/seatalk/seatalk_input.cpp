#include "seatalk/seatalk_input.h"

namespace wakeline {

std::optional<std::string> SeaTalkInput::TakePortWarning() {
    if (seaTalkWarningShown_) {
        return std::nullopt;
    }
    seaTalkWarningShown_ = true;
    return std::string(kSeaTalkPortWarning);
}

std::vector<SeaTalkEvent> SeaTalkInput::Feed(std::span<const std::uint8_t> bytes, DateTime now) {
    return Handle(decoder_.Feed(bytes), now);
}

std::vector<SeaTalkEvent> SeaTalkInput::Finish(DateTime now) {
    return Handle(decoder_.Finish(), now);
}

std::vector<SeaTalkEvent> SeaTalkInput::Handle(const std::vector<ReceivePiece>& pieces,
                                               DateTime now) {
    std::vector<SeaTalkEvent> events;
    for (const ReceivePiece& piece : pieces) {
        if (piece.parityError) {
            receiver_.OnParityError();
        }
        ReceiveOutcome outcome = piece.startsEvent ? receiver_.OnReceive(piece.bytes)
                                                   : receiver_.OnMoreBytes(piece.bytes);
        if (!outcome.report.empty()) {
            SeaTalkLine composed = ComposeSeaTalkLine(values_, now);
            events.push_back({std::move(outcome.report), std::move(composed.line),
                              std::move(composed.timeStamp), values_.utcDateTime});
        }
    }
    return events;
}

}  // namespace wakeline
