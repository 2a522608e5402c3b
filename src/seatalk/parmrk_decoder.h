#pragma once
// Turns the byte stream of a serial port read under parity marking (termios PARMRK) back into
// the two signals the SeaTalk framer works on: "a parity error" and "bytes received".
//
// The bus marks the command byte of each datagram with its ninth bit. The port is set to space
// parity, so that byte arrives with a parity error, and the kernel hands it over as the three
// bytes 0xFF 0x00 b; a data byte 0xFF is doubled to 0xFF 0xFF; every other byte comes as it is.
// A BREAK arrives as 0xFF 0x00 0x00 and a framing error is marked like a parity error: both are
// taken as a marked byte (0x00, or the byte received), since the line cannot tell them apart.
//
// Reads may end anywhere, also inside a mark. A receive event is delimited by marks alone:
// - a marked byte ends the event before it and starts a new one: a parity error, then a piece
//   that starts an event with the marked byte, followed by the unmarked bytes after it;
// - unmarked bytes before the first mark of the stream form an event of their own;
// - unmarked bytes at the start of a later read continue the event of the read before (a
//   piece that does not start an event), however the reads were cut.
// A 0xFF followed by anything but 0x00 or 0xFF (a stream not recorded under parity marking) is
// taken as the data byte 0xFF, and the byte after it is decoded afresh.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace wakeline {

// Bytes of one receive event, or the continuation of one, in the order received.
struct ReceivePiece {
    // A parity error was signalled for the first byte: the framer hears it before the bytes.
    bool parityError = false;
    // The first byte is the first of a receive event (the only byte that may be a command byte).
    // False when the bytes continue the event of an earlier piece.
    bool startsEvent = false;
    std::span<const std::uint8_t> bytes;
};

class ParmrkDecoder {
  public:
    // Decodes one read. The pieces refer to storage of the decoder and stay valid until the next
    // call of Feed or Finish. Never more pieces than marks in the read plus one.
    const std::vector<ReceivePiece>& Feed(std::span<const std::uint8_t> bytes);

    // The end of the stream: a 0xFF still waiting for its partner is delivered as a data byte;
    // a mark whose byte never came (0xFF 0x00 at the very end) is dropped.
    const std::vector<ReceivePiece>& Finish();

    // True once any byte was delivered: later unmarked bytes continue an event.
    bool EventOpen() const { return eventOpen_; }

  private:
    enum class Pending : std::uint8_t { None, Escape, Mark };

    void AppendData(std::uint8_t b);
    void StartMarked(std::uint8_t b);
    const std::vector<ReceivePiece>& Seal();

    struct Extent {
        bool parityError;
        bool startsEvent;
        std::size_t begin;
        std::size_t size;
    };

    Pending pending_ = Pending::None;
    bool eventOpen_ = false;
    std::vector<std::uint8_t> data_;
    std::vector<Extent> extents_;
    std::vector<ReceivePiece> pieces_;
};

}  // namespace wakeline
