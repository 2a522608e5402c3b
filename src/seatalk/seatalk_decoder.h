#pragma once
// What the instruments on the SeaTalk bus say, one datagram at a time: DecodeDatagram
// recognises a datagram by its command byte, stores the values it carries in SeaTalkValues,
// recomputes the true wind and describes the datagram in one line for the bus monitor.

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "base/date_time.h"

namespace wakeline {

// The values last decoded from the bus; all start at 0 / empty and keep their value until a
// datagram of their kind arrives again. Angles in degrees, speeds in knots, distances in
// nautical miles, depth in metres.
struct SeaTalkValues {
    float depth = 0;               // 0x00, feet x 0.3 (the instrument's own factor)
    float apparentWindAngle = 0;   // 0x10, right of the bow, 0..360
    float apparentWindSpeed = 0;   // 0x11
    float speedThroughWater = 0;   // 0x20
    float tripLog = 0;             // 0x21, 0x25
    float totalLog = 0;            // 0x22, 0x25
    float waterTemperature = 0;    // 0x27, degrees Celsius
    double latitude = 0;           // 0x50, 0x58, signed degrees
    double longitude = 0;          // 0x51, 0x58, signed degrees
    float speedOverGround = 0;     // 0x52
    float courseOverGround = 0;    // 0x53
    DateTime utcDateTime = 0;      // 0x54 sets the time of day, 0x56 the date; 0 = none yet
    float heading = 0;             // 0x84
    float crossTrackError = 0;     // 0x85, signed
    float bearingToWaypoint = 0;   // 0x85
    float distanceToWaypoint = 0;  // 0x85
    std::string waypointName;      // 0x82, four characters
    float trueWindAngle = 0;       // computed after every datagram, degrees from the bow
    float trueWindSpeed = 0;       // computed
    float trueWindDirection = 0;   // computed, a whole number of degrees, may be negative
};

// The datagram being assembled: byte 0 the command byte, byte 1 the attribute byte whose low
// nibble gives the length, then the data.
using DatagramBuffer = std::array<std::uint8_t, 256>;

// Decodes one complete datagram into `values` and returns its description, which starts with
// the datagram's label ("DBT 00: ", "AWA 10: ", ...). Only the bytes the datagram's kind uses
// are read; the length is not checked again. Unknown command bytes store nothing and give "".
// A 0x82 waypoint name that fails its complement check stores nothing and gives "". A time
// (0x54) outside 00:00:00..23:59:59 or a date (0x56) that does not exist is a fault of the
// routine: nothing is stored and the description is "error: " and the reason. The true wind is
// recomputed afterwards in every case but a fault.
std::string DecodeDatagram(const DatagramBuffer& buffer, SeaTalkValues& values);

struct TrueWind {
    float angle = 0;      // degrees from the bow, not normalised
    float speed = 0;      // knots (negative when the boat outruns the wind from astern)
    float direction = 0;  // whole degrees, the remainder by 360 with the sign of the dividend
};

// The true wind from the apparent wind (degrees right of the bow, knots) and the boat's speed
// (knots) and direction (degrees). Empty when a result is not a finite 32-bit value (only
// possible with inputs that are not finite); the caller then keeps the values it had.
std::optional<TrueWind> ComputeTrueWind(float apparentAngle, float apparentSpeed, float boatSpeed,
                                        float boatDirection);

// Recomputes the three true-wind values of `values` from the stored ones: water speed and
// heading while the speed over ground is 0, otherwise speed and course over ground.
void UpdateTrueWind(SeaTalkValues& values);

}  // namespace wakeline
