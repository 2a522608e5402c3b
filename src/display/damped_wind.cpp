#include "display/damped_wind.h"

#include "base/single_precision.h"

namespace wakeline {
namespace {

// The step towards x along the shorter way round: a difference of more than half a circle is
// taken the other way.
std::optional<float> StepAngle(float current, double x, float factor) {
    double d = x - current;
    if (d > 180) {
        d -= 360;
    }
    if (d < -180) {
        d += 360;
    }
    return ToSingle(current + factor * d);
}

}  // namespace

std::optional<float> DampedWind::DampTWS(double x, float factor) {
    const auto next = ToSingle((1.0 - factor) * TWS + factor * x);
    if (next) {
        TWS = *next;
    }
    return next;
}

std::optional<float> DampedWind::DampTWA(double x, float factor) {
    auto next = StepAngle(TWA, x, factor);
    if (!next) {
        return next;
    }
    // Only values beyond the half circle are folded, so a damped angle of exactly 180 stays.
    if (*next > 180) {
        *next -= 360;
    } else if (*next < -180) {
        *next += 360;
    }
    TWA = *next;
    return next;
}

std::optional<float> DampedWind::DampTWD(double x, float factor) {
    auto next = StepAngle(TWD, x, factor);
    if (!next) {
        return next;
    }
    if (*next > 360) {
        *next -= 360;
    } else if (*next < 0) {
        *next += 360;
    }
    TWD = *next;
    return next;
}

}  // namespace wakeline
