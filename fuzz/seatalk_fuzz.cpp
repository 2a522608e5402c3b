// Feeds arbitrary bytes through the SeaTalk input: parity-mark decoding in reads of varying
// size, framing in both modes, datagram decoding and line composition; then decodes the bytes
// as one datagram and composes a line from values taken straight from the bytes (any float,
// infinities and NaN included). Nothing may crash, and the frame must stay within its buffer.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

#include "seatalk/seatalk_decoder.h"
#include "seatalk/seatalk_input.h"
#include "seatalk/seatalk_line.h"

namespace {

float FloatAt(const std::uint8_t* data, std::size_t size, std::size_t at) {
    std::uint8_t bytes[4] = {};
    for (std::size_t i = 0; i < 4 && at + i < size; ++i) {
        bytes[i] = data[at + i];
    }
    float value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace wakeline;
    if (size < 2) {
        return 0;
    }
    const auto mode = static_cast<std::int16_t>(data[0] % 3);
    const std::size_t readSize = 1 + data[1] % 64;
    const std::span<const std::uint8_t> stream(data + 2, size - 2);

    SeaTalkInput input(mode);
    for (std::size_t at = 0; at < stream.size(); at += readSize) {
        input.Feed(stream.subspan(at, std::min(readSize, stream.size() - at)), 45366.5);
        const SeaTalkFrame& frame = input.Frame();
        if (frame.count < 0 || frame.count > 255 || frame.expected > 255 ||
            frame.lengthErrors < 0) {
            std::abort();
        }
    }
    input.Finish(0);

    DatagramBuffer buffer{};
    std::memcpy(buffer.data(), stream.data(), std::min(stream.size(), buffer.size()));
    SeaTalkValues values;
    DecodeDatagram(buffer, values);
    ComposeSeaTalkLine(values, 0);

    SeaTalkValues raw;
    float* fields[] = {&raw.depth,
                       &raw.apparentWindAngle,
                       &raw.apparentWindSpeed,
                       &raw.speedThroughWater,
                       &raw.speedOverGround,
                       &raw.courseOverGround,
                       &raw.heading,
                       &raw.crossTrackError,
                       &raw.bearingToWaypoint,
                       &raw.distanceToWaypoint,
                       &raw.trueWindAngle,
                       &raw.trueWindSpeed,
                       &raw.trueWindDirection};
    std::size_t at = 2;
    for (float* field : fields) {
        *field = FloatAt(data, size, at);
        at += 4;
    }
    raw.latitude = FloatAt(data, size, at);
    raw.longitude = FloatAt(data, size, at + 4);
    raw.utcDateTime = FloatAt(data, size, at + 8);
    UpdateTrueWind(raw);
    ComposeSeaTalkLine(raw, raw.utcDateTime);
    return 0;
}
