#pragma once
// The small-chart arithmetic the made-up voyages sail by: directions folded into 0..2 pi or
// -pi..pi, and rhumb lines over a few miles, where the earth may be taken as flat.

#include <cmath>

namespace wakeline::chart {

inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kTwoPi = 2 * kPi;
inline constexpr double kRadiansPerDegree = kPi / 180;
inline constexpr double kKnotsPerMetrePerSecond = 1.9438444924406;
inline constexpr double kSecondsPerHour = 3600;
inline constexpr double kMinutesPerDegree = 60;  // one minute of latitude is one nautical mile

// An angle in radians as a direction, 0 up to 2 pi.
inline double Direction(double radians) {
    const double folded = std::fmod(radians, kTwoPi);
    return folded < 0 ? folded + kTwoPi : folded;
}

// An angle in radians relative to the bow, -pi up to pi (starboard positive).
inline double Relative(double radians) {
    const double direction = Direction(radians);
    return direction > kPi ? direction - kTwoPi : direction;
}

struct Leg {
    double bearing;  // radians
    double miles;
};

// The rhumb line between two positions in decimal degrees: the east-west leg shrinks with the
// cosine of the mean latitude.
inline Leg RhumbLeg(double fromLat, double fromLon, double toLat, double toLon) {
    const double north = (toLat - fromLat) * kMinutesPerDegree;
    const double east =
        (toLon - fromLon) * kMinutesPerDegree * std::cos((fromLat + toLat) / 2 * kRadiansPerDegree);
    return {Direction(std::atan2(east, north)), std::hypot(north, east)};
}

}  // namespace wakeline::chart
