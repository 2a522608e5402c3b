#include "seatalk/seatalk_frame.h"

#include <bit>
#include <limits>

namespace wakeline {

bool IsEvenParity(std::uint8_t b) {
    return std::popcount(b) % 2 == 0;
}

std::string HexDump(std::span<const std::uint8_t> buffer, std::int16_t n,
                    std::string_view separator) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (std::int16_t i = 0; i < n && static_cast<std::size_t>(i) < buffer.size(); ++i) {
        text += kDigits[buffer[i] >> 4];
        text += kDigits[buffer[i] & 0x0F];
        text += separator;
    }
    return text;
}

std::string TraceByte(std::uint8_t b, std::string_view marker) {
    std::string text = marker == "P" ? "\r\n" : "";
    const std::uint8_t one[] = {b};
    text += HexDump(one, 1, "");
    text += marker;
    return text;
}

std::string PadRight(std::string_view s, std::int16_t width) {
    const auto size = static_cast<std::size_t>(width < 0 ? 0 : width);
    if (s.size() > size) {
        return std::string(s.substr(0, size));
    }
    std::string text(s);
    text.append(size - s.size(), ' ');
    return text;
}

void SeaTalkReceiver::StoreByte(std::uint8_t b, ReceiveOutcome& outcome) {
    SeaTalkFrame& f = frame_;
    if (f.count > 255) {
        f.count = 0;
        return;
    }
    f.buffer[f.count] = b;
    f.count += 1;
    if (f.count == 2) {
        // Command byte, attribute byte, then 1 + low nibble data bytes.
        f.expected = static_cast<std::int16_t>((f.buffer[1] & 0x0F) + 3);
    }
    if (f.count == f.expected) {
        if (f.lengthErrors > 0) {
            f.lengthErrors = 0;
        }
        if (!outcome.report.empty()) {
            outcome.report += "\r\n";
        }
        outcome.report += PadRight(HexDump(f.buffer, f.count, " "), 30);
        outcome.report += "m:";
        outcome.report += DecodeDatagram(f.buffer, values_);
        outcome.firstByte = f.buffer[0];
        f.count = 0;
        f.expected = -1;
    } else if (f.count > f.expected) {
        // The counter stops at its largest value: a bus that sends nothing but unmarked bytes
        // for hours must neither wrap it nor leave the rejected byte in the buffer, where it
        // would become the attribute byte of a datagram that was never sent.
        if (f.lengthErrors < std::numeric_limits<std::int16_t>::max()) {
            f.lengthErrors += 1;
        }
        f.expected = -1;
        f.count = 0;
    }
}

ReceiveOutcome SeaTalkReceiver::Receive(std::span<const std::uint8_t> bytes, bool startsEvent) {
    ReceiveOutcome outcome;
    if (bytes.empty()) {
        return outcome;
    }
    std::size_t next = 0;
    if (startsEvent) {
        const std::uint8_t b = bytes[next++];
        const char* marker = " ";
        bool isCommand = false;
        if (mode_ == kSeaTalkModeSB) {
            // Without a parity error a byte with an odd number of 1 bits still starts a
            // datagram in this mode, for ports that lose the parity signal.
            if (frame_.parityError) {
                isCommand = true;
                marker = IsEvenParity(b) ? "P" : "Q";
            } else if (IsEvenParity(b)) {
                marker = "r";
            } else {
                isCommand = true;
                marker = "S";
            }
        } else if (mode_ == kSeaTalkModeSC) {
            isCommand = frame_.parityError;
            marker = isCommand ? "f" : " ";
        }
        if (trace_) {
            outcome.byteTrace += TraceByte(b, marker);
        }
        frame_.parityError = false;
        if (isCommand) {
            frame_.count = 0;
            frame_.expected = 255;
        }
        StoreByte(b, outcome);
    }
    for (; next < bytes.size(); ++next) {
        if (trace_) {
            outcome.byteTrace += TraceByte(bytes[next], "x");
        }
        StoreByte(bytes[next], outcome);
    }
    return outcome;
}

}  // namespace wakeline
