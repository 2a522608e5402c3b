#include "wind/wind_data.h"

#include <algorithm>

namespace wakeline {

void ClearWindData(WindData& data) {
    data.Count = 0;
}

void AddWindObservation(WindData& data, float speed, float direction, DateTime time,
                        std::int16_t samples) {
    if (data.Count > kWindCapacity - 1) {
        std::copy(data.Obs.begin() + 1, data.Obs.begin() + data.Count, data.Obs.begin());
        --data.Count;
    }
    data.Obs[data.Count] = WindObservation{speed, direction, time, samples};
    ++data.Count;
}

WindObservation AverageWind(const WindData& data, std::int16_t lastN, float& reference) {
    if (data.Count == 1) {
        WindObservation only = data.Obs[0];
        only.Samples = 1;
        return only;
    }
    if (data.Count <= 0) {
        return WindObservation{};
    }
    const int last = data.Count - 1;
    const int first = (lastN == 0 || lastN > data.Count) ? 0 : data.Count - lastN;
    if (reference == kNoReference) {
        reference = data.Obs[last].Direction;
    }

    double prevHalf = 0.0;
    double sumWeight = 0.0;
    double sumDirection = 0.0;
    double sumSpeed = 0.0;
    for (int k = first; k <= last; ++k) {
        const double half = k < last ? (data.Obs[k + 1].Time - data.Obs[k].Time) / 2 : 0.0;
        const double weight = prevHalf + half;
        // Unwrap across north so that 350 and 10 average to 0 (or 360), not to 180.
        double d = data.Obs[k].Direction;
        if (reference <= 180.0f && d > reference + 180.0) {
            d -= 360.0;
        }
        if (reference > 180.0f && d < reference - 180.0) {
            d += 360.0;
        }
        sumWeight += weight;
        sumDirection += weight * d;
        sumSpeed += weight * data.Obs[k].Speed;
        prevHalf = half;
    }

    WindObservation result;
    if (sumWeight <= 0.0) {
        result.Speed = data.Obs[last].Speed;
        result.Direction = data.Obs[last].Direction;
    } else {
        // Rounded to the observation's 32-bit width before the range is fixed: a mean that is
        // 360 up to the last bits of a double is 360 and is kept as 360.
        float direction = static_cast<float>(sumDirection / sumWeight);
        if (direction > 360.0f) {
            direction -= 360.0f;
        }
        if (direction < 0.0f) {
            direction += 360.0f;
        }
        result.Direction = direction;
        result.Speed = static_cast<float>(sumSpeed / sumWeight);
    }
    result.Time = data.Obs[last].Time;
    result.Samples = static_cast<std::int16_t>(last - first + 1);
    return result;
}

}  // namespace wakeline
