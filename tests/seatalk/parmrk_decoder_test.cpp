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

std::vector<std::string> FeedAll(ParmrkDecoder& decoder, const std::vector<Bytes>& reads) {
    std::vector<std::string> pieces;
    for (const Bytes& read : reads) {
        for (const ReceivePiece& piece : decoder.Feed(read)) {
            pieces.push_back(Describe(piece));
        }
    }
    return pieces;
}

TEST(ParmrkDecoder, MarksStartEventsAndReadsOnlyContinueThem) {
    const struct {
        const char* legend;
        std::vector<Bytes> reads;
        std::vector<std::string> pieces;
    } rows[] = {
        {"a marked byte and its datagram",
         {{0xFF, 0x00, 0x9C, 0x01, 0x20, 0x00}},
         {"PS 9C 01 20 00"}},
        {"a doubled 0xFF is one data byte",
         {{0xFF, 0x00, 0x20, 0xFF, 0xFF, 0x01}},
         {"PS 20 FF 01"}},
        {"a BREAK is a marked 0x00", {{0xFF, 0x00, 0x00, 0x05}}, {"PS 00 05"}},
        {"the mark split after 0xFF", {{0x11, 0xFF}, {0x00, 0x84, 0x42}}, {"-S 11", "PS 84 42"}},
        {"the mark split after 0xFF 0x00", {{0xFF, 0x00}, {0x84}}, {"PS 84"}},
        {"a doubled 0xFF split across reads",
         {{0xFF, 0x00, 0x20, 0xFF}, {0xFF}},
         {"PS 20", "-+ FF"}},
        {"a read without marks continues the event",
         {{0xFF, 0x00, 0x9C, 0x01}, {0x20}, {0x00}},
         {"PS 9C 01", "-+ 20", "-+ 00"}},
        {"two marks in one read are two events",
         {{0xFF, 0x00, 0x84, 0x42, 0xFF, 0x00, 0x9C, 0x01}},
         {"PS 84 42", "PS 9C 01"}},
        {"unmarked bytes at the very start form an event",
         {{0x01, 0x02}, {0x03}},
         {"-S 01 02", "-+ 03"}},
        {"0xFF before another byte is data (not a marked stream)",
         {{0xFF, 0x41, 0xFF, 0x00, 0x52}},
         {"-S FF 41", "PS 52"}},
    };
    for (const auto& row : rows) {
        ParmrkDecoder decoder;
        EXPECT_EQ(FeedAll(decoder, row.reads), row.pieces) << row.legend;
    }
}

TEST(ParmrkDecoder, FinishDeliversALastEscapeAndDropsAHalfMark) {
    ParmrkDecoder escape;
    FeedAll(escape, {{0xFF, 0x00, 0x20, 0xFF}});
    const std::vector<ReceivePiece>& last = escape.Finish();
    ASSERT_EQ(last.size(), 1u);
    EXPECT_EQ(Describe(last[0]), "-+ FF");

    ParmrkDecoder halfMark;
    FeedAll(halfMark, {{0x20, 0xFF, 0x00}});
    EXPECT_TRUE(halfMark.Finish().empty());
}

}  // namespace
}  // namespace wakeline
