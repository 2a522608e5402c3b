#include "seatalk/parmrk_decoder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace wakeline {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A piece written as "P" (parity error) or "-", then "S" (starts an event) or "+", then the
// bytes in hex: "PS 84 42".
std::string Describe(const ReceivePiece& piece) {
    std::string text = piece.parityError ? "P" : "-";
    text += piece.startsEvent ? "S" : "+";
    char hex[4];
    for (const std::uint8_t b : piece.bytes) {
        std::snprintf(hex, sizeof hex, " %02X", b);
        text += hex;
    }
    return text;
}

// Every piece of the reads, then of the end of the stream.
std::vector<std::string> FeedAll(const std::vector<Bytes>& reads) {
    ParmrkDecoder decoder;
    std::vector<std::string> pieces;
    const auto add = [&](const std::vector<ReceivePiece>& got) {
        for (const ReceivePiece& piece : got) {
            pieces.push_back(Describe(piece));
        }
    };
    for (const Bytes& read : reads) {
        add(decoder.Feed(read));
    }
    add(decoder.Finish());
    return pieces;
}

TEST(ParmrkDecoder, MarksStartEventsAndReadsOnlyContinueThem) {
    const struct {
        const char* legend;
        std::vector<Bytes> reads;
        std::vector<std::string> pieces;
    } rows[] = {
        {"marked byte and datagram", {{0xFF, 0x00, 0x9C, 0x01, 0x20, 0x00}}, {"PS 9C 01 20 00"}},
        {"doubled 0xFF is one data byte", {{0xFF, 0x00, 0x20, 0xFF, 0xFF, 0x01}}, {"PS 20 FF 01"}},
        {"a BREAK is a marked 0x00", {{0xFF, 0x00, 0x00, 0x05}}, {"PS 00 05"}},
        {"mark split after 0xFF", {{0x11, 0xFF}, {0x00, 0x84, 0x42}}, {"-S 11", "PS 84 42"}},
        {"mark split after 0xFF 0x00", {{0xFF, 0x00}, {0x84}}, {"PS 84"}},
        {"doubled 0xFF split", {{0xFF, 0x00, 0x20, 0xFF}, {0xFF}}, {"PS 20", "-+ FF"}},
        {"unmarked read continues", {{0xFF, 0x00, 0x9C, 0x01}, {0x20}}, {"PS 9C 01", "-+ 20"}},
        {"two marks, two events", {{0xFF, 0x00, 0x84, 0xFF, 0x00, 0x9C}}, {"PS 84", "PS 9C"}},
        {"unmarked bytes first form an event", {{0x01, 0x02}, {0x03}}, {"-S 01 02", "-+ 03"}},
        {"0xFF then other byte is data", {{0xFF, 0x41, 0xFF, 0x00, 0x52}}, {"-S FF 41", "PS 52"}},
        {"last 0xFF delivered at the end", {{0xFF, 0x00, 0x20, 0xFF}}, {"PS 20", "-+ FF"}},
        {"half mark at the end dropped", {{0x20, 0xFF, 0x00}}, {"-S 20"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(FeedAll(row.reads), row.pieces) << row.legend;
    }
}

}  // namespace
}  // namespace wakeline
