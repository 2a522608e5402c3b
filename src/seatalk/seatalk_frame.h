#pragma once
// Assembles SeaTalk datagrams from what the serial port hears.
//
// The bus sends 9-bit characters whose ninth bit marks the command byte that starts each
// datagram. The port has 8 data bits and space parity, so a command byte arrives as a parity
// error followed by the byte. The port's two signals are fed in here as they come: a parity
// error (OnParityError), and a receive event (OnReceive: its first byte is classified, the
// others are stored as they are). Only the first byte of a receive event can start a datagram.
// The datagram's length follows from its attribute byte (low nibble + 3, so 3 to 18 bytes);
// bytes outside a datagram and datagrams longer than announced are dropped and only counted,
// so that no run of unmarked bytes, however long, completes a datagram.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "seatalk/seatalk_decoder.h"

namespace wakeline {

// SeaTalk modes of the command line: "SB" and "SC".
inline constexpr std::int16_t kSeaTalkModeSB = 1;
inline constexpr std::int16_t kSeaTalkModeSC = 2;

struct SeaTalkFrame {
    DatagramBuffer buffer{};
    std::int16_t count = 0;     // bytes stored in buffer
    std::int16_t expected = 0;  // 255 after a command byte, -1 after a completed or rejected one
    bool parityError = false;   // a parity error was signalled; cleared by the next byte read
    // Bytes and datagrams rejected since the last good one; stays at 32767 once it gets there.
    std::int16_t lengthErrors = 0;
};

// What one receive event (or one piece of it) produced.
struct ReceiveOutcome {
    // One line per completed datagram, CR LF between them: the hex dump padded or cut to 30
    // characters, "m:" and the description. Empty when no datagram was completed.
    std::string report;
    // The command byte of the last datagram completed, -1 when none was.
    std::int16_t firstByte = -1;
    // Each byte read as two hex digits and its marker (only when tracing is on).
    std::string byteTrace;
};

// The receive side of the SeaTalk port: a frame, the mode and the values it decodes into.
// `values` must outlive the receiver.
class SeaTalkReceiver {
  public:
    // `mode` 1 ("SB"): a byte with an odd number of 1 bits starts a datagram even without a
    // parity error; 2 ("SC"): only a parity error does; any other mode completes nothing.
    SeaTalkReceiver(std::int16_t mode, SeaTalkValues& values) : mode_(mode), values_(values) {}

    // The port signalled a parity error: it belongs to the first byte of the next event.
    void OnParityError() { frame_.parityError = true; }

    // A receive event: the first byte is classified by the mode, the rest are stored as they
    // are. An empty span reads nothing.
    ReceiveOutcome OnReceive(std::span<const std::uint8_t> bytes) { return Receive(bytes, true); }

    // More bytes of the event already under way (a later read that brought no mark): none of
    // them can start a datagram.
    ReceiveOutcome OnMoreBytes(std::span<const std::uint8_t> bytes) {
        return Receive(bytes, false);
    }

    // With tracing on, every outcome carries the byte trace.
    void SetByteTrace(bool on) { trace_ = on; }

    const SeaTalkFrame& Frame() const { return frame_; }
    std::int16_t Mode() const { return mode_; }

  private:
    ReceiveOutcome Receive(std::span<const std::uint8_t> bytes, bool startsEvent);
    // Step 7 of the receive event for one byte.
    void StoreByte(std::uint8_t b, ReceiveOutcome& outcome);

    std::int16_t mode_;
    SeaTalkValues& values_;
    SeaTalkFrame frame_;
    bool trace_ = false;
};

// True when the number of 1 bits among the 8 bits of `b` is even.
bool IsEvenParity(std::uint8_t b);

// Each of the first n bytes as two upper-case hex digits followed by the separator.
std::string HexDump(std::span<const std::uint8_t> buffer, std::int16_t n,
                    std::string_view separator);

// Two upper-case hex digits and the marker; a marker "P" starts a new trace line (CR LF first).
std::string TraceByte(std::uint8_t b, std::string_view marker);

// `s` padded with blanks to `width`, or its first `width` characters when longer.
std::string PadRight(std::string_view s, std::int16_t width);

}  // namespace wakeline
