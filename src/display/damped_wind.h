#pragma once
// The damped true wind shown beside the raw one when polar tables are in use: an exponential
// smoothing of each data line's wind with the weight `DampingFactor` given to the new reading
// (1 shows the raw reading, 0 freezes the damped value). Angles are smoothed along the shorter
// way round the circle.

#include <optional>

namespace wakeline {

struct DampedWind {
    float TWS = 0;  // knots
    float TWA = 0;  // degrees relative to the bow, -180..180 (exactly 180 is kept as it is)
    float TWD = 0;  // degrees true, 0..360 (exactly 360 is kept as it is)

    // Each moves its value towards the reading x by `factor` of the difference, stores it and
    // returns it. Computed in double, stored as 32-bit. Empty, with the value unchanged, when
    // the result is not a finite 32-bit value (a fault of the caller's routine).
    std::optional<float> DampTWS(double x, float factor);
    // The difference is folded into -180..180 first; the new value above 180 has 360 taken
    // off, below -180 360 added.
    std::optional<float> DampTWA(double x, float factor);
    // As DampTWA, but the new value above 360 has 360 taken off, below 0 360 added.
    std::optional<float> DampTWD(double x, float factor);
};

}  // namespace wakeline
