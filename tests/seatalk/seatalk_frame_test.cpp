#include "seatalk/seatalk_frame.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace wakeline {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A datagram announced by a parity error, as the port delivers a command byte.
ReceiveOutcome Marked(SeaTalkReceiver& receiver, const Bytes& bytes) {
    receiver.OnParityError();
    return receiver.OnReceive(bytes);
}

TEST(SeaTalkFrame, LengthComesFromTheAttributeNibbleOnly) {
    SeaTalkValues values;
    SeaTalkReceiver receiver(kSeaTalkModeSC, values);

    // 0x9C with attribute 0x01: (1 AND 0x0F) + 3 = 4 bytes, complete with the fourth.
    EXPECT_EQ(Marked(receiver, {0x9C, 0x01, 0x20}).report, "");
    const ReceiveOutcome fourth = receiver.OnMoreBytes(Bytes{0x00});
    EXPECT_EQ(fourth.report, "9C 01 20 00 " + std::string(18, ' ') + "m:");
    EXPECT_EQ(fourth.firstByte, 0x9C);

    // Attribute 0xF0 gives 3 bytes as 0x00 does: the high nibble never counts.
    EXPECT_EQ(Marked(receiver, {0x99, 0xF0, 0x07}).firstByte, 0x99);

    // Attribute 0x0F: 18 bytes; the dump of 54 characters is cut to 30.
    const Bytes longest = {0x99, 0x0F, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    EXPECT_EQ(Marked(receiver, longest).report, "");
    const ReceiveOutcome last = receiver.OnMoreBytes(Bytes{0x10});
    EXPECT_EQ(last.report, "99 0F 01 02 03 04 05 06 07 08 m:");
    EXPECT_EQ(receiver.Frame().lengthErrors, 0);
}

TEST(SeaTalkFrame, ModeSCStartsOnlyAtParityErrors) {
    SeaTalkValues values;
    SeaTalkReceiver receiver(kSeaTalkModeSC, values);
    receiver.SetByteTrace(true);

    // Bytes before any command byte are rejected one by one (expected starts at 0).
    EXPECT_EQ(receiver.OnReceive(Bytes{0x84, 0x42, 0x03}).report, "");
    EXPECT_EQ(receiver.Frame().lengthErrors, 3);

    // A new command byte drops the half datagram before it without counting it.
    Marked(receiver, {0x84, 0x42, 0x01});
    const ReceiveOutcome heading = Marked(receiver, {0x84, 0x42, 0x03, 0x04, 0x05});
    EXPECT_EQ(heading.byteTrace, "84f42x03x04x05x");
    EXPECT_EQ(heading.report, "84 42 03 04 05 " + std::string(15, ' ') +
                                  "m:HDG 84: 6.5 degrees - check if this is really HDG");
    EXPECT_EQ(receiver.Frame().lengthErrors, 0);

    // Without a parity error the same datagram completes nothing: after a completed one every
    // byte is rejected on its own.
    const ReceiveOutcome unmarked = receiver.OnReceive(Bytes{0x84, 0x42, 0x03, 0x04, 0x05});
    EXPECT_EQ(unmarked.report, "");
    EXPECT_EQ(unmarked.byteTrace, "84 42x03x04x05x");
    EXPECT_EQ(receiver.Frame().lengthErrors, 5);

    // Another mode than SB or SC completes nothing, even with parity errors.
    SeaTalkReceiver none(0, values);
    EXPECT_EQ(Marked(none, {0x99, 0x00, 0x07}).report, "");
}

TEST(SeaTalkFrame, ModeSBTakesOddBytesAsCommandsWithoutParityErrors) {
    SeaTalkValues values;
    SeaTalkReceiver receiver(kSeaTalkModeSB, values);
    receiver.SetByteTrace(true);

    const ReceiveOutcome odd = receiver.OnReceive(Bytes{0x01, 0x00, 0x07});  // one bit set
    EXPECT_EQ(odd.byteTrace, "01S00x07x");
    EXPECT_EQ(odd.firstByte, 0x01);

    const ReceiveOutcome even = receiver.OnReceive(Bytes{0x03, 0x00, 0x07});  // two bits set
    EXPECT_EQ(even.byteTrace, "03r00x07x");
    EXPECT_EQ(even.report, "");
    EXPECT_EQ(receiver.Frame().lengthErrors, 3);

    // With a parity error the marker tells the byte's own parity: "P" starts a trace line.
    EXPECT_EQ(Marked(receiver, {0x84, 0x00, 0x00}).byteTrace, "\r\n84P00x00x");
    EXPECT_EQ(Marked(receiver, {0x85, 0x00, 0x00}).byteTrace, "85Q00x00x");
}

TEST(SeaTalkFrame, UnmarkedBytesWithoutEndNeverCompleteADatagram) {
    // 70000 unmarked bytes in two reads: each byte is rejected on its own, the counter stops
    // at 32767 and no rejected byte is left behind to serve as an attribute byte (a letter,
    // 'A' = 0x41, would announce 4 bytes; 0xFF, the doubled byte of the marking, 18).
    for (const std::uint8_t byte : {std::uint8_t{'A'}, std::uint8_t{0xFF}}) {
        SeaTalkValues values;
        SeaTalkReceiver receiver(kSeaTalkModeSC, values);
        EXPECT_EQ(receiver.OnReceive(Bytes(40000, byte)).report, "") << +byte;
        EXPECT_EQ(receiver.OnMoreBytes(Bytes(30000, byte)).report, "") << +byte;
        EXPECT_EQ(receiver.Frame().lengthErrors, 32767) << +byte;
        EXPECT_EQ(receiver.Frame().count, 0) << +byte;
        // The next good datagram clears it.
        EXPECT_NE(Marked(receiver, {0x99, 0x00, 0x07}).report, "") << +byte;
        EXPECT_EQ(receiver.Frame().lengthErrors, 0) << +byte;
    }
}

}  // namespace
}  // namespace wakeline
