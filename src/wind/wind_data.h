#pragma once
// The wind history's buffers: a sliding window over the newest 1001 true-wind observations and
// the time-weighted average the track writer and the wind graph take from it.
// Speeds in knots, directions in degrees (0..360), times as UTC date-times.

#include <array>
#include <cstdint>

#include "base/date_time.h"

namespace wakeline {

// One observation: a raw displayed value (Samples 1) or an average of Samples raw values.
struct WindObservation {
    float Speed = 0.0f;
    float Direction = 0.0f;
    DateTime Time = 0.0;
    std::int16_t Samples = 0;
};

inline constexpr std::int16_t kWindCapacity = 1001;

// Observations oldest first at Obs[0 .. Count-1]. Slots at Count and above are stale: they keep
// whatever they held (they are saved with the rest) and are never read. Count stays in
// 0..kWindCapacity; the file decoder refuses anything else.
struct WindData {
    std::int16_t Count = 0;
    std::array<WindObservation, kWindCapacity> Obs{};
};

// The marker that asks AverageWind to take the newest observation's direction as reference.
inline constexpr float kNoReference = -999.0f;

// Empties the buffer; the slots are left as they are.
void ClearWindData(WindData& data);

// Appends one observation. A full buffer first drops its oldest observation, so Count never
// exceeds 1001.
void AddWindObservation(WindData& data, float speed, float direction, DateTime time,
                        std::int16_t samples);

// The time-weighted mean of the newest lastN observations (all of them when lastN is 0 or
// more than Count). Each observation weighs half the interval to its predecessor in the window
// plus half the interval to its successor. Directions are unwrapped around `reference` before
// averaging; a reference of kNoReference is replaced by the newest direction, and the caller's
// variable then holds it. An empty buffer gives an all-zero observation (still a valid result:
// the track writer appends it as it is); one observation is returned as it stands with
// Samples 1. The result's direction is reduced into 0..360 only when it lies outside, so a
// mean of exactly 360 stays 360.
WindObservation AverageWind(const WindData& data, std::int16_t lastN, float& reference);

}  // namespace wakeline
