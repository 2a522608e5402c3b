#pragma once
// Navigation arithmetic and the position and angle formatters of the live display.
// Functions that can meet a floating-point fault return an empty optional: the fault ends the
// routine of the caller, nothing is clamped or defaulted.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace wakeline {

// Earth radius of the distance calculation, metres.
inline constexpr double kEarthRadiusMetres = 6.367e6;
// Radians to degrees for every shown angle.
inline constexpr double kRadiansToDegrees = 57.2957795130824;

// Milli-minutes of arc (thousandths of a minute; 60,000 per degree) to radians.
double MMtoRad(std::int32_t milliMinutes);

// Great-circle distance in metres between two positions in milli-minutes, longitude before
// latitude for each point (haversine). Empty when the arithmetic faults (rounding can push
// the haversine term above 1, whose square root of a negative number is invalid).
std::optional<float> GrCDXY(std::int32_t lon1, std::int32_t lat1, std::int32_t lon2,
                            std::int32_t lat2);

// Decimal degrees text to "DDD MM.MMM" with " N"/" S" (kind other than "lon") or " E"/" W"
// (kind "lon"). An empty text is 0; any other text that is not a decimal number is returned
// unchanged. Zero counts as south/west, on purpose: 0 as a latitude is "000 00.000 S". Empty
// when the value overflows a 32-bit float.
std::optional<std::string> DDtoDM(std::string_view text, std::string_view kind);

// Radians text to a degrees text. An empty text is 0; a text holding "," or that is not a
// decimal number is returned unchanged. The degrees are rounded to a 32-bit float first; then, with
// |fold| 180, a value above 180 and up to 360 has 360 taken off (pi shows 180, two pi shows 0).
// decimals 0 gives whole degrees, anything else two decimals. An empty side gives the signed value
// right-aligned in 4 characters; a non-empty side (its content is not used) gives the magnitude
// followed by " W" for a negative value, else " E". Empty when the degrees overflow a 32-bit float.
std::optional<std::string> FormatAngle(std::string_view text, std::int16_t fold,
                                       std::string_view side, std::int16_t decimals);

}  // namespace wakeline
