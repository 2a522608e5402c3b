#pragma once
// Storing a double into a 32-bit float the way the display's arithmetic does: a value that is
// not finite or too large for a float is an overflow, an error of the routine, never clamped.

#include <cmath>
#include <limits>
#include <optional>

namespace wakeline {

inline std::optional<float> ToSingle(double value) {
    if (!std::isfinite(value) || std::fabs(value) > std::numeric_limits<float>::max()) {
        return std::nullopt;
    }
    return static_cast<float>(value);
}

}  // namespace wakeline
